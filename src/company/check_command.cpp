#include "company/check_command.h"

#include <fmt/format.h>

#include <fstream>
#include <iostream>
#include <set>
#include <unordered_set>

#include "company/company_error.h"
#include "company/table_catalogue.h"
#include "database/database_error.h"
#include "database/tsql/lexer.h"
#include "database/tsql/server_check.h"
#include "runtime/text.h"

namespace ktl {

namespace {

std::string ShapeOf(std::string_view text) {
  std::string shape;
  try {
    for (const auto& token : tsql::Tokenize(text)) {
      const bool literal = token.kind == tsql::TokenKind::Number || token.kind == tsql::TokenKind::Text;
      shape += literal ? "?" : UpperCase(token.text);
      shape += ' ';
    }
  } catch (const DatabaseError&) {
    return std::string(text);
  }
  return shape;
}

// "" for a statement that failed.
std::string TextOf(const std::string& line) {
  const auto parts = Split(line, "\t");
  if (parts.size() != 3) return line;
  return parts[1] == "-1" ? "" : parts[2];
}

class Checking final {
 public:
  explicit Checking(std::ostream& out) : out_(out) {}

  void Read(std::istream& in) {
    for (std::string line; std::getline(in, line);) {
      const std::string text = TextOf(line);
      if (!text.empty() && texts_.insert(text).second) Check(text);
    }
  }
  bool Finish() {
    out_ << fmt::format("{} statements, {} shapes, {} that SQL Server would refuse.\n", texts_.size(),
                        shapes_.size(), refused_.size());
    return refused_.empty();
  }

 private:
  void Check(const std::string& text) {
    const std::string shape = ShapeOf(text);
    shapes_.insert(shape);
    const auto faults = check_.Faults(text);
    if (faults.empty() || !refused_.insert(shape).second) return;
    out_ << text << '\n';
    for (const auto& fault : faults) out_ << "  " << fault << '\n';
  }

  std::ostream& out_;
  tsql::ServerCheck check_{ServerColumns};
  std::unordered_set<std::string> texts_, shapes_, refused_;
};

}  // namespace

bool CheckStatements(const std::vector<std::string>& files, std::ostream& out) {
  Checking checking(out);
  if (files.empty()) checking.Read(std::cin);
  for (const auto& name : files) {
    std::ifstream file(name);
    if (!file) throw CompanyError(name + ": cannot be read");
    checking.Read(file);
  }
  return checking.Finish();
}

}  // namespace ktl
