#include "company/sql_command.h"

#include <fmt/format.h>

#include <ostream>

#include "company/company_address.h"
#include "company/company_error.h"
#include "database/connection.h"
#include "database/recordset.h"

namespace ktl {
namespace {

constexpr std::string_view kNull = "NULL";

// A cell stays one cell of one line.
std::string Cell(const Value& value) {
  if (value.IsNull()) return std::string(kNull);
  std::string text = value.ToText();
  for (char& c : text) {
    if (c == '\t' || c == '\n' || c == '\r') c = ' ';
  }
  return text;
}

}  // namespace

void OpenCompany(Connection& connection, const std::string& company) {
  const CompanyAddress address = AddressOf(company);
  try {
    connection.Open(address.connectionString);
  } catch (const DatabaseError& error) {
    throw CompanyError(error.description());
  }
}

void RunStatement(Connection& connection, std::string_view text, std::ostream& out) {
  Recordset rows(connection, text);
  const auto& fields = rows.Fields();
  if (fields.empty()) return;
  for (std::size_t i = 0; i < fields.size(); ++i) out << (i ? "\t" : "") << fields[i];
  out << '\n';
  for (; !rows.Eof(); rows.MoveNext()) {
    for (std::size_t i = 0; i < fields.size(); ++i) out << (i ? "\t" : "") << Cell(rows[i]);
    out << '\n';
  }
}

}  // namespace ktl
