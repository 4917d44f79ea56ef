#include "company/server_schema.h"

#include <fmt/format.h>

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
                "  CONSTRAINT `UQ_SAMPLE_Filter` UNIQUE (`Filter`, `AMT`)\n)"
                " ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_uca1400_as_ci",
                "CREATE INDEX `IX_DOJ` ON `SAMPLE` (`DOJ`, `ID`)"}));
  const auto other = TableStatements(ServerKind::SqlServer, table, "NEW_SAMPLE");
  const std::string collation = " COLLATE SQL_Latin1_General_CP1_CI_AS NULL";
  EXPECT_EQ(other, (std::vector<std::string>{
                       "CREATE TABLE [NEW_SAMPLE] (\n  [ID] INT NOT NULL,\n  [Filter] NVARCHAR(255)" +
                           collation + " DEFAULT '',\n  [FORMULA] NVARCHAR(MAX)" + collation +
                           ",\n  [AMT] FLOAT NULL DEFAULT 0,\n  [DOJ] DATETIME NULL,\n  [REMARKS] "
                           "NVARCHAR(MAX)" +
                           collation +
                           ",\n  CONSTRAINT [PK_NEW_SAMPLE] PRIMARY KEY ([ID]),\n  CONSTRAINT "
                           "[UQ_NEW_SAMPLE_Filter] UNIQUE ([Filter], [AMT])\n)",
                       "CREATE INDEX [IX_DOJ] ON [NEW_SAMPLE] ([DOJ], [ID])"}));
}

}  // namespace
}  // namespace ktl
