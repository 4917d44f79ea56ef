#include "company/row_writer.h"

#include <fmt/format.h>

#include <algorithm>

namespace ktl {

namespace {

std::string InsertStatement(const std::string& tableAndColumns) {
  std::string marks = "?";
  for (auto more = std::ranges::count(tableAndColumns, ','); more > 0; --more) marks += ", ?";
  return fmt::format("INSERT INTO {} VALUES ({})", tableAndColumns, marks);
}

}  // namespace

SqliteDatabase MakeUnjournaled(const std::string& file) {
  SqliteDatabase database(file, SqliteDatabase::Mode::New);
  database.RunScript("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA cache_size = -65536;");
  return database;
}

std::vector<std::string> FirstColumn(SqliteDatabase& database, const std::string& sql) {
  SqliteStatement rows(database.handle(), sql);
  std::vector<std::string> texts;
  while (rows.Step()) texts.push_back(rows.Column(0).TextOrEmpty());
  return texts;
}

RowWriter::RowWriter(SqliteDatabase& database, const std::string& tableAndColumns)
    : statement_(database.handle(), InsertStatement(tableAndColumns)) {}

void RowWriter::Bind(std::size_t column, const std::chrono::year_month_day& value) {
  statement_.BindText(column, fmt::format("{:04}-{:02}-{:02}", int(value.year()), unsigned(value.month()),
                                          unsigned(value.day())));
}

}  // namespace ktl
