#include "database/statement_log.h"

#include <fmt/format.h>

#include <algorithm>

#include "database/database_error.h"

namespace ktl {

StatementLog::StatementLog(const std::string& file) : file_(file, std::ios::app) {
  if (!file_) throw DatabaseError(fmt::format("The statement log {} cannot be written.", file));
}

void StatementLog::Write(std::chrono::microseconds time, std::int64_t rows, std::string_view text) {
  std::string line(text);
  std::ranges::replace_if(
      line, [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
  file_ << fmt::format("{}\t{}\t{}\n", time.count(), rows, line) << std::flush;
}

}  // namespace ktl
