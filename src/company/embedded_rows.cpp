#include "company/embedded_rows.h"

#include <fmt/format.h>

#include <optional>
#include <set>

#include "company/company.h"
#include "company/company_error.h"
#include "company/new_file.h"
#include "company/row_writer.h"
#include "company/schema_texts.h"
#include "database/drivers/sqlite_file.h"
#include "database/stored_date.h"

namespace ktl {

namespace {

constexpr int kPatience = 60;  // seconds

std::string ColumnList(const TableDescription& table) {
  std::string list;
  for (const auto& column : table.columns)
    list += fmt::format("{}[{}]", list.empty() ? "" : ", ", column.name);
  return list;
}

void ReadRows(SqliteDatabase& database, const TableDescription& table, const RowHandler& handler) {
  // Rows were added in the order of their keys.
  SqliteStatement rows(database.handle(),
                       fmt::format("SELECT {} FROM [{}] ORDER BY rowid", ColumnList(table), table.name));
  Row row(table.columns.size());
  while (rows.Step()) {
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = AsHeld(table.columns[i].kind, rows.Column(i));
    handler(row);
  }
}

class EmbeddedSource final : public RowSource {
 public:
  explicit EmbeddedSource(const std::string& file)
      : database_(OpenSqliteFile(file, FileKind::Company, kPatience)) {
    database_.RunScript("BEGIN");
  }
  std::vector<std::string> Tables() override {
    return FirstColumn(database_, "SELECT name FROM sqlite_master WHERE type = 'table'");
  }
  std::vector<std::string> ColumnsOf(const std::string& table) override {
    return FirstColumn(database_, fmt::format("SELECT name FROM pragma_table_info('{}')", table));
  }
  void Read(const TableDescription& table, const RowHandler& handler) override {
    ReadRows(database_, table, handler);
  }

 private:
  SqliteDatabase database_;
};

class EmbeddedTarget final : public RowTarget {
 public:
  EmbeddedTarget(const std::filesystem::path& file, bool replace)
      : folder_(std::filesystem::absolute(file).parent_path()),
        file_(file, replace),
        database_(MakeUnjournaled(file_.path())),
        shown_(file.string()) {
    Writing([&] {
      database_->RunScript(kSchemaText);
      database_->RunScript("BEGIN");
    });
  }

  void Make(const TableDescription& table) override {
    made_.insert(table.name);
    table_ = table;
    std::string marks = "?";
    for (std::size_t i = 1; i < table.columns.size(); ++i) marks += ", ?";
    insert_.emplace(database_->handle(),
                    fmt::format("INSERT INTO [{}] ({}) VALUES ({})", table.name, ColumnList(table), marks));
  }

  void Add(const Row& row) override {
    Writing([&] { Insert(row); });
  }

  void Flush() override { insert_.reset(); }

  RowSum SumOf(const TableDescription& table) override {
    RowSum sum;
    ReadRows(*database_, table, [&](const Row& row) { sum.Add(row); });
    return sum;
  }

  void Keep() override {
    Writing([&] {
      for (const auto& table : TableCatalogue())
        if (!made_.contains(table.name)) database_->RunScript(fmt::format("DROP TABLE [{}]", table.name));
      database_->RunScript("COMMIT");
      FinishCompany(*database_);
    });
    database_.reset();
    CreateLocalStore(folder_);
    file_.Keep();
  }

 private:
  // A full disk is told with the file that it is full of.
  template <typename Work>
  void Writing(const Work& work) {
    try {
      work();
    } catch (const DatabaseError& error) {
      throw CompanyError(fmt::format("{}: {}", shown_, error.description()));
    }
  }

  void Insert(const Row& row) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (table_.columns[i].kind == ColumnKind::Moment && row[i].IsDate()) {
        insert_->BindText(i, (StoredDate(row[i].date()) + " 00:00:00").substr(0, 19));
      } else {
        insert_->Bind(i, row[i]);
      }
    }
    insert_->Step();
    insert_->Reset();
  }

  std::filesystem::path folder_;
  NewFile file_;
  std::optional<SqliteDatabase> database_;
  std::string shown_;
  std::optional<SqliteStatement> insert_;
  TableDescription table_;
  std::set<std::string> made_;
};

}  // namespace

std::unique_ptr<RowSource> OpenEmbeddedSource(const CompanyAddress& address) {
  return std::make_unique<EmbeddedSource>(address.file.string());
}

std::unique_ptr<RowTarget> OpenEmbeddedTarget(const CompanyAddress& address, bool replace) {
  return std::make_unique<EmbeddedTarget>(address.file, replace);
}

}  // namespace ktl
