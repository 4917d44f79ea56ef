#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ktl {

enum class ColumnKind {
  Integer,
  Real,
  Name,  // a text that is compared, sorted or searched for: letter case and trailing blanks do not count
  Text,  // any other text, of any length
  Date,
  Moment,  // a date that always has a time
};

struct ColumnDescription {
  std::string name;
  ColumnKind kind = ColumnKind::Integer;
  bool required = false;
  std::string standard;  // the default as a literal of the language; "" for none
};

struct IndexDescription {
  std::string name;  // "" for a UNIQUE of the table's own
  bool unique = false;
  std::vector<std::string> columns;
};

struct TableDescription {
  std::string name;
  std::vector<ColumnDescription> columns;
  std::vector<std::string> key;  // empty for a table without one
  std::vector<IndexDescription> indexes;
};

// Every table of a company as the embedded schema declares it, in its order: the one description that other
// databases' tables are made from. Views and what single statements keep for themselves are not among them.
const std::vector<TableDescription>& TableCatalogue();

// Null for a table that no company has.
const TableDescription* FindTable(std::string_view name);

// The columns of whatever a statement can name on a server: a table, a view, the system's catalogue
// ("SYS.TABLES"), what each workstation makes for itself ("TMPFILTER" and its name). Nothing for the rest.
std::optional<std::vector<std::string>> ServerColumns(std::string_view name);

}  // namespace ktl
