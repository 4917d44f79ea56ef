#pragma once

#include <chrono>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

namespace ktl {

// Every statement as it was said, one a line: microseconds, rows, text, with tabs between them. Rows are -1
// for a statement that failed; line breaks in the text become blanks.
class StatementLog {
 public:
  // Adds to the file. Throws DatabaseError when it cannot be written.
  explicit StatementLog(const std::string& file);

  void Write(std::chrono::microseconds time, std::int64_t rows, std::string_view text);

 private:
  std::ofstream file_;
};

}  // namespace ktl
