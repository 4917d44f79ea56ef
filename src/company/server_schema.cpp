#include "company/server_schema.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "company/schema_texts.h"
#include "runtime/text.h"

namespace ktl {

namespace {

// Names and formulas that are searched in, but longer than a name: no index can be over them.
constexpr std::array<std::string_view, 2> kLongNames{"FORMULA", "LOANNAME"};

struct Dialect {
  std::string_view integer, real, name, text, date;
  std::string_view numbered;  // behind the type of a column that the server numbers
  std::string_view options;   // behind the columns of a table
  std::string_view clientHead,
      clientEnd;  // what the server's client wants in front, and behind each statement
  const char* const* objects;
};

constexpr Dialect kMariaDb{
    .integer = "INT",
    .real = "DOUBLE",
    .name = "VARCHAR(255)",
    .text = "TEXT",
    .date = "DATETIME",
    .numbered = " AUTO_INCREMENT",
    .options = " ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_uca1400_as_ci",
    .clientHead =
        "SET NAMES utf8mb4 COLLATE utf8mb4_uca1400_as_ci;\n"
        "SET SESSION sql_mode = 'STRICT_ALL_TABLES,NO_BACKSLASH_ESCAPES,SIMULTANEOUS_ASSIGNMENT,"
        "NO_ZERO_DATE,NO_ZERO_IN_DATE';\n"
        "DELIMITER //\n",
    .clientEnd = "\n//\n",
    .objects = &kMariadbObjectsText,
};

constexpr Dialect kSqlServer{
    .integer = "INT",
    .real = "FLOAT",
    .name = "NVARCHAR(255) COLLATE SQL_Latin1_General_CP1_CI_AS",
    .text = "NVARCHAR(MAX) COLLATE SQL_Latin1_General_CP1_CI_AS",
    .date = "DATETIME",
    .numbered = " IDENTITY(1, 1)",
    .options = "",
    .clientHead = "SET ANSI_NULLS ON\nSET QUOTED_IDENTIFIER ON\nGO\n",
    .clientEnd = "\nGO\n",
    .objects = &kSqlserverObjectsText,
};

const Dialect& DialectOf(ServerKind server) { return server == ServerKind::MariaDb ? kMariaDb : kSqlServer; }

std::string_view TypeOf(const Dialect& dialect, const ColumnDescription& column) {
  switch (column.kind) {
    case ColumnKind::Integer:
      return dialect.integer;
    case ColumnKind::Real:
      return dialect.real;
    case ColumnKind::Date:
    case ColumnKind::Moment:
      return dialect.date;
    case ColumnKind::Text:
      return dialect.text;
    case ColumnKind::Name:
      break;
  }
  const bool isLong = std::ranges::find(kLongNames, UpperCase(column.name)) != kLongNames.end();
  return isLong ? dialect.text : dialect.name;
}

std::string NameList(ServerKind server, const std::vector<std::string>& names) {
  std::vector<std::string> quoted;
  for (const auto& name : names) quoted.push_back(ServerName(server, name));
  return fmt::format("{}", fmt::join(quoted, ", "));
}

std::string ColumnText(ServerKind server, const TableDescription& table, const ColumnDescription& column) {
  const Dialect& dialect = DialectOf(server);
  return fmt::format("  {} {}{}{}{}", ServerName(server, column.name), TypeOf(dialect, column),
                     column.name == NumberedColumn(table) ? dialect.numbered : "",
                     column.required ? " NOT NULL" : " NULL",
                     column.standard.empty() ? "" : " DEFAULT " + column.standard);
}

std::string CreateTable(ServerKind server, const TableDescription& table, const std::string& name) {
  std::vector<std::string> lines;
  for (const auto& column : table.columns) lines.push_back(ColumnText(server, table, column));
  if (!table.key.empty())
    lines.push_back(fmt::format("  CONSTRAINT {} PRIMARY KEY ({})",
                                ServerName(server, "PK_" + UpperCase(table.name)),
                                NameList(server, table.key)));
  for (const auto& index : table.indexes)
    if (index.name.empty())
      lines.push_back(fmt::format(
          "  CONSTRAINT {} UNIQUE ({})",
          ServerName(server, fmt::format("UQ_{}_{}", UpperCase(table.name), index.columns.front())),
          NameList(server, index.columns)));
  // MariaDB makes them with the table in one go.
  if (server == ServerKind::MariaDb)
    for (const auto& index : table.indexes)
      if (!index.name.empty())
        lines.push_back(fmt::format("  {}INDEX {} ({})", index.unique ? "UNIQUE " : "",
                                    ServerName(server, index.name), NameList(server, index.columns)));
  return fmt::format("CREATE TABLE {} (\n{}\n){}", ServerName(server, name), fmt::join(lines, ",\n"),
                     DialectOf(server).options);
}

// The statements of a script, parted by lines with GO alone.
std::vector<std::string> SplitScript(std::string_view script) {
  std::vector<std::string> statements(1);
  for (const auto& line : Split(script, "\n")) {
    if (line == "GO") {
      statements.emplace_back();
    } else {
      statements.back() += line + "\n";
    }
  }
  std::erase_if(statements, [](const std::string& statement) {
    return statement.find_first_not_of(" \n") == statement.npos;
  });
  return statements;
}

}  // namespace

std::string ServerName(ServerKind server, std::string_view name) {
  return server == ServerKind::MariaDb ? fmt::format("`{}`", name) : fmt::format("[{}]", name);
}

std::string_view NumberedColumn(const TableDescription& table) {
  return table.name == "SEC_AUDITTRAIL" ? "AUDITID" : "";
}

std::vector<std::string> TableStatements(ServerKind server, const TableDescription& table,
                                         std::string_view name) {
  const std::string called = UpperCase(name.empty() ? table.name : std::string(name));
  std::vector<std::string> statements{CreateTable(server, table, called)};
  if (server == ServerKind::MariaDb) return statements;
  for (const auto& index : table.indexes)
    if (!index.name.empty())
      statements.push_back(fmt::format("CREATE {}INDEX {} ON {} ({})", index.unique ? "UNIQUE " : "",
                                       ServerName(server, index.name), ServerName(server, called),
                                       NameList(server, index.columns)));
  return statements;
}

std::vector<std::string> ObjectStatements(ServerKind server) {
  return SplitScript(*DialectOf(server).objects);
}

std::string ServerScript(ServerKind server) {
  const Dialect& dialect = DialectOf(server);
  std::string script(dialect.clientHead);
  const auto add = [&](const std::vector<std::string>& statements) {
    for (const auto& statement : statements) script += statement + std::string(dialect.clientEnd);
  };
  for (const auto& table : TableCatalogue()) add(TableStatements(server, table));
  add(ObjectStatements(server));
  return script;
}

}  // namespace ktl
