#include "company/table_catalogue.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <map>

#include "company/row_writer.h"
#include "company/schema_texts.h"
#include "runtime/text.h"

namespace ktl {

namespace {

ColumnKind KindOf(SqliteDatabase& database, const std::string& table, const std::string& column,
                  const std::string& type) {
  if (type == "INTEGER") return ColumnKind::Integer;
  if (type == "REAL") return ColumnKind::Real;
  if (type == "DATETIME")
    return column == "LOGDATE" || column == "CHANGEDDATE" ? ColumnKind::Moment : ColumnKind::Date;
  const char* comparer = nullptr;
  CheckSqlite(sqlite3_table_column_metadata(database.handle(), nullptr, table.c_str(), column.c_str(),
                                            nullptr, &comparer, nullptr, nullptr, nullptr),
              database.handle());
  return EqualsNoCase(comparer, "NOCASE") ? ColumnKind::Name : ColumnKind::Text;
}

void ReadColumns(SqliteDatabase& database, TableDescription& table) {
  SqliteStatement columns(database.handle(), fmt::format("PRAGMA table_info([{}])", table.name));
  std::map<std::int64_t, std::string> key;
  while (columns.Step()) {
    const std::string name = columns.Column(1).ToText();
    if (const std::int64_t place = columns.Integer(5); place > 0) key[place] = name;
    table.columns.push_back({name, KindOf(database, table.name, name, columns.Column(2).ToText()),
                             columns.Integer(3) != 0 || columns.Integer(5) != 0,
                             columns.Column(4).TextOrEmpty()});
  }
  for (const auto& [place, name] : key) table.key.push_back(name);
}

void ReadIndexes(SqliteDatabase& database, TableDescription& table) {
  SqliteStatement indexes(
      database.handle(),
      fmt::format(
          "SELECT name, [unique], origin FROM pragma_index_list('{}') WHERE origin <> 'pk' AND NOT partial ORDER BY "
          "seq DESC",
          table.name));
  while (indexes.Step()) {
    const std::string name = indexes.Column(0).ToText();
    table.indexes.push_back(
        {indexes.Column(2).ToText() == "u" ? "" : name, indexes.Integer(1) != 0,
         FirstColumn(database,
                     fmt::format("SELECT name FROM pragma_index_info('{}') ORDER BY seqno", name))});
  }
}

std::vector<TableDescription> ReadCatalogue() {
  SqliteDatabase database(":memory:", SqliteDatabase::Mode::New);
  database.RunScript(kSchemaText);
  std::vector<TableDescription> tables;
  for (const auto& name :
       FirstColumn(database, "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid")) {
    TableDescription& table = tables.emplace_back();
    table.name = name;
    ReadColumns(database, table);
    ReadIndexes(database, table);
  }
  return tables;
}

std::vector<std::string> NamesOf(const TableDescription& table) {
  std::vector<std::string> names;
  for (const auto& column : table.columns) names.push_back(column.name);
  return names;
}

struct Named {
  std::string_view name;
  std::vector<std::string> columns;
};

const std::vector<Named>& Views() {
  static const std::vector<Named> views{
      {"QRYMONTH", {"MONTHYEAR", "MONTHNAME"}},
      {"SYS.TABLES", {"OBJECT_ID", "NAME"}},
      {"SYS.VIEWS", {"OBJECT_ID", "NAME"}},
      {"SYS.COLUMNS", {"OBJECT_ID", "COLUMN_ID", "NAME"}},
      {"INFORMATION_SCHEMA.COLUMNS", {"TABLE_NAME", "COLUMN_NAME", "ORDINAL_POSITION", "DATA_TYPE"}}};
  return views;
}

// What workstations make: the name goes on with that of the machine. The longer beginning first.
const std::vector<Named>& WorkstationTables() {
  static const std::vector<Named> tables = [] {
    auto filtered = NamesOf(*FindTable("MAS_EMPLOYEE"));
    filtered.insert(filtered.end(), {"FILTERYN1", "REPTYN1"});
    return std::vector<Named>{{"VW_MAS_EMPLOYEE", std::move(filtered)},
                              {"TMPFILTER", {"EMPID", "FILTERYN1", "REPTYN1"}},
                              {"TMP", {"EMPID"}}};
  }();
  return tables;
}

}  // namespace

const std::vector<TableDescription>& TableCatalogue() {
  static const std::vector<TableDescription> tables = ReadCatalogue();
  return tables;
}

const TableDescription* FindTable(std::string_view name) {
  const auto& tables = TableCatalogue();
  const auto found = std::ranges::find_if(
      tables, [&](const TableDescription& table) { return EqualsNoCase(table.name, name); });
  return found == tables.end() ? nullptr : &*found;
}

std::optional<std::vector<std::string>> ServerColumns(std::string_view name) {
  if (const TableDescription* table = FindTable(name)) return NamesOf(*table);
  const std::string wanted = UpperCase(name);
  for (const auto& view : Views())
    if (wanted == view.name) return view.columns;
  for (const auto& table : WorkstationTables())
    if (wanted.starts_with(table.name)) return table.columns;
  return std::nullopt;
}

}  // namespace ktl
