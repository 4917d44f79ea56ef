#include "company/server_schema.h"

#include <fmt/format.h>

#include <regex>
#include <set>

#include "database/tsql/server_check.h"
#include "runtime/text.h"
#include "sample_company.h"

namespace ktl {
namespace {

TEST(ServerSchema, TablesAreDescribedAsTheEmbeddedSchemaDeclaresThem) {
  const auto& tables = TableCatalogue();
  ASSERT_EQ(tables.size(), 76U);
  EXPECT_EQ(FindTable("NOWHERE"), nullptr);
  const TableDescription& names = *FindTable("ins_master");
  EXPECT_EQ(names.key, (std::vector<std::string>{"SITYPE", "SINAME"}));
  const struct {
    const char *table, *column;
    ColumnKind kind;
    bool required;
    const char* standard;
  } cases[] = {
      {"INS_MASTER", "SINAME", ColumnKind::Name, true, ""},
      {"INS_MASTER", "AMTLIMIT", ColumnKind::Real, false, ""},
      {"INS_MASTER", "SEPPIYN", ColumnKind::Integer, true, "0"},
      {"INS_ADVLOAN", "SIDATE", ColumnKind::Date, false, ""},
      {"INS_ADVLOAN", "REMARKS", ColumnKind::Text, false, ""},
      {"MAS_LOANINT", "LOANTYPE", ColumnKind::Name, true, "''"},
      {"MAS_EMPLOYEE", "EMPID", ColumnKind::Integer, true, ""},
  };
  for (const auto& c : cases) {
    const auto& columns = FindTable(c.table)->columns;
    const auto column = std::ranges::find(columns, c.column, &ColumnDescription::name);
    ASSERT_NE(column, columns.end()) << c.column;
    EXPECT_EQ(column->kind, c.kind) << c.column;
    EXPECT_EQ(column->required, c.required) << c.column;
    EXPECT_EQ(column->standard, c.standard) << c.column;
  }
  const auto& indexes = FindTable("INS_EMIDETAIL")->indexes;
  ASSERT_EQ(indexes.size(), 2U);
  EXPECT_EQ(indexes[1].name, "IX_EMI_MONTH");
  EXPECT_EQ(indexes[1].columns, (std::vector<std::string>{"MONTHYEAR", "SITYPE", "EMPID"}));
}

TEST(ServerSchema, EachServerGetsItsOwnTypesAndQuotes) {
  const TableDescription table{.name = "Sample",
                               .columns = {{"ID", ColumnKind::Integer, true, ""},
                                           {"Filter", ColumnKind::Name, false, "''"},
                                           {"FORMULA", ColumnKind::Name, false, ""},
                                           {"AMT", ColumnKind::Real, false, "0"},
                                           {"DOJ", ColumnKind::Date, false, ""},
                                           {"REMARKS", ColumnKind::Text, false, ""}},
                               .key = {"ID"},
                               .indexes = {{"", true, {"Filter", "AMT"}}, {"IX_DOJ", false, {"DOJ", "ID"}}}};
  EXPECT_EQ(TableStatements(ServerKind::MariaDb, table),
            (std::vector<std::string>{
                "CREATE TABLE `SAMPLE` (\n  `ID` INT NOT NULL,\n  `Filter` VARCHAR(255) NULL DEFAULT '',\n"
                "  `FORMULA` TEXT NULL,\n  `AMT` DOUBLE NULL DEFAULT 0,\n  `DOJ` DATETIME NULL,\n"
                "  `REMARKS` TEXT NULL,\n  CONSTRAINT `PK_SAMPLE` PRIMARY KEY (`ID`),\n"
                "  CONSTRAINT `UQ_SAMPLE_Filter` UNIQUE (`Filter`, `AMT`),\n  INDEX `IX_DOJ` (`DOJ`, `ID`)\n)"
                " ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_uca1400_as_ci"}));
  const auto other = TableStatements(ServerKind::SqlServer, table, "NEW_SAMPLE");
  const std::string collation = " COLLATE SQL_Latin1_General_CP1_CI_AS NULL";
  EXPECT_EQ(other, (std::vector<std::string>{
                       "CREATE TABLE [NEW_SAMPLE] (\n  [ID] INT NOT NULL,\n  [Filter] NVARCHAR(255)" +
                           collation + " DEFAULT '',\n  [FORMULA] NVARCHAR(MAX)" + collation +
                           ",\n  [AMT] FLOAT NULL DEFAULT 0,\n  [DOJ] DATETIME NULL,\n  [REMARKS] "
                           "NVARCHAR(MAX)" +
                           collation +
                           ",\n  CONSTRAINT [PK_SAMPLE] PRIMARY KEY ([ID]),\n  CONSTRAINT "
                           "[UQ_SAMPLE_Filter] UNIQUE ([Filter], [AMT])\n)",
                       "CREATE INDEX [IX_DOJ] ON [NEW_SAMPLE] ([DOJ], [ID])"}));
}

// It refuses a key over a column that may be null and an index over a text without an end, and of rows
// without a value a unique one takes but one.
TEST(ServerSchema, SqlServerTakesEveryKeyAndIndex) {
  for (const auto& table : TableCatalogue()) {
    const std::string made = TableStatements(ServerKind::SqlServer, table).front();
    const auto declared = [&](const std::string& column) {
      const auto begin = made.find("\n  [" + column + "] ");
      return begin == made.npos ? "" : made.substr(begin, made.find('\n', begin + 1) - begin);
    };
    const auto check = [&](const std::vector<std::string>& columns, bool unique) {
      for (const auto& column : columns) {
        EXPECT_EQ(declared(column).find("(MAX)"), std::string::npos) << table.name << " " << column;
        EXPECT_TRUE(!unique || declared(column).find(" NOT NULL") != std::string::npos)
            << table.name << " " << column;
      }
    };
    check(table.key, true);
    for (const auto& index : table.indexes) check(index.columns, index.unique);
  }
}

// What a routine does, as a text of statements: its parameters are variables there.
std::string BodyOf(const std::string& routine) {
  const auto begin = routine.find("\nBEGIN\n");
  if (begin == routine.npos) return routine;
  std::string text;
  static const std::regex parameter("(@[A-Z]+) ([A-Z]+)(\\(MAX\\)|\\([0-9]+\\))?");
  const std::string head = routine.substr(0, begin);
  for (std::sregex_iterator each(head.begin(), head.end(), parameter), end; each != end; ++each)
    text += "DECLARE " + (*each)[1].str() + " AS " + (*each)[2].str() + " ";
  text += routine.substr(begin + 7, routine.rfind("END") - begin - 7);
  for (const auto& [said, taken] :
       {std::pair{"SET NOCOUNT ON", ""}, {"RETURN", "SELECT"}, {"dbo.FnStrSessionUser()", "HOST_NAME()"}})
    text = ReplaceAll(text, said, taken);
  return text;
}

std::optional<std::vector<std::string>> WithChangedRows(std::string_view table) {
  return ServerColumns(table == "INSERTED" || table == "DELETED" ? "MAS_MONTHYEAR" : table);
}

TEST(ServerSchema, ObjectsOfSqlServerNameWhatIsThere) {
  tsql::ServerCheck check(WithChangedRows);
  std::set<std::string> made;
  for (const auto& statement : ObjectStatements(ServerKind::SqlServer)) {
    std::string text = std::regex_replace(statement, std::regex("--[^\n]*\n"), "");
    std::smatch name;
    ASSERT_TRUE(std::regex_search(text, name, std::regex("^\\s*CREATE OR ALTER [A-Z]+ (dbo\\.)?(\\w+)")))
        << text;
    made.insert(name[2]);
    if (name[2] == "FnStrSessionUser" || name[2] == "FillClassTable")
      continue;  // in words of the server's own
    text = BodyOf(ReplaceAll(text, "CREATE OR ALTER", "CREATE"));
    if (text.find("EXEC") != text.npos) continue;
    for (const auto& fault : check.Faults(text)) ADD_FAILURE() << text << "\n" << fault;
  }
  EXPECT_EQ(made, (std::set<std::string>{"QRYMONTH", "FnStrMonthName", "udf_getEmpLock", "FnStrSessionUser",
                                         "FillClassTable", "ClassSecurity", "ClassSecurityCloud",
                                         "UpdateAuditTrail", "KTL_MONTHLOCK", "KTL_SCHEMA"}));
}

}  // namespace
}  // namespace ktl
