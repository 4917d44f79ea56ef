#include "database/drivers/text_rules.h"

#include <gtest/gtest.h>

#include <tuple>

#include "database/drivers/recently_used.h"
#include "database/drivers/sqlite_driver.h"
#include "database/tsql/types.h"
#include "failure.h"
#include "support/company_fixture.h"
#include "support/temporary_folder.h"

namespace ktl::test {
namespace {

int Sign(int order) { return (order > 0) - (order < 0); }

TEST(TextRules, LetterCaseAndTrailingBlanksCountForNothing) {
  const std::tuple<const char*, const char*, int> table[] = {
      {"asha", "ASHA", 0},   {"asha  ", "asha", 0}, {"", "   ", 0}, {" asha", "asha", -1},
      {"asha\t", "asha", 1}, {"émile", "ÉMILE", 0}, {"a", "b", -1}, {"B", "a", 1},
      {"ab", "a", 1},        {"a b", "a", 1},       {"Z", "_", 1},  {"ÿ", "ÿ ", 0},
      {"शुल्क", "शुल्क ", 0},    {"शुल्क", "शुल्", 1},      {"×", "÷", -1},  // signs between the letters
  };
  for (const auto& [a, b, order] : table) {
    EXPECT_EQ(Sign(CompareTexts(a, b)), order) << a << "|" << b;
    EXPECT_EQ(Sign(CompareTexts(b, a)), -order) << b << "|" << a;
  }
  EXPECT_EQ(FoldCase("ÀÞ×AZ[É"), "àþ×az[é");
}

TEST(TextRules, CharactersAreCountedNotBytes) {
  EXPECT_EQ(CountCharacters("Émile शु"), 8U);
  const std::tuple<std::size_t, std::size_t, const char*> parts[] = {
      {0, 2, "Ém"}, {1, 1, "m"}, {4, 9, "e"}, {5, 1, ""}, {0, 0, ""}};
  for (const auto& [first, count, part] : parts) EXPECT_EQ(Characters("Émile", first, count), part);
  const std::tuple<const char*, const char*, std::size_t, std::size_t> finds[] = {
      {"RAO", "Asha Rao", 1, 6}, {"a", "Asha", 2, 4},  {"a", "Asha", 0, 1},   {"x", "Asha", 1, 0},
      {"", "Asha", 1, 0},        {"e", "Émile", 1, 5}, {"asha", "Asha", 2, 0}};
  for (const auto& [pattern, text, start, place] : finds) {
    EXPECT_EQ(FindText(pattern, text, start), place) << pattern << " in " << text;
  }
  EXPECT_EQ(FirstCharacter("éa"), U'é');
}

TEST(TextRules, PatternsHaveWildcardsSetsAndAnEscape) {
  const std::tuple<const char*, const char*, bool> table[] = {
      {"Asha Rao", "asha%", true},
      {"Asha", "a_h_", true},
      {"Asha", "a_h", false},
      {"", "%", true},
      {"", "_", false},
      {"b", "[a-c]", true},
      {"d", "[a-c]", false},
      {"d", "[^a-c]", true},
      {"B", "[abc]", true},
      {"50%", "50[%]", true},
      {"50x", "50[%]", false},
      {"[x]", "[[]x]", true},
      {"a-b", "a[-]b", true},
      {"aaab", "%a%b", true},
      {"aaac", "%a%b", false},
      {"É", "é", true},
      {"ab", "a[", false},
      {"10%", "10!%", true},
      {"10x", "10!%", false},
      {"!", "!!", true},
  };
  for (const auto& [text, pattern, matches] : table) {
    EXPECT_EQ(MatchesPattern(text, pattern, U'!'), matches) << text << " like " << pattern;
  }
  EXPECT_TRUE(MatchesPattern("10!x", "10!%"));  // without an escape "!" is a character like others
}

TEST(TextRules, HalvesGoAwayFromZeroByTheDecimalText) {
  const std::tuple<double, int, double> table[] = {{2.675, 2, 2.68},   {-0.125, 2, -0.13}, {0.5, 0, 1},
                                                   {1249.5, -2, 1200}, {1250, -2, 1300},   {1.005, 2, 1.01},
                                                   {-2.5, 0, -3},      {1e300, 2, 1e300},  {0, 2, 0}};
  for (const auto& [value, places, rounded] : table)
    EXPECT_EQ(RoundHalfAway(value, places), rounded) << value;
}

TEST(RecentlyUsed, ThrowsOutWhatWasNotAskedForTheLongest) {
  RecentlyUsed<int> kept(2);
  kept.Keep("one", 1);
  kept.Keep("two", 2);
  ASSERT_EQ(*kept.Find("one"), 1);  // asked for last
  kept.Keep("three", 3);
  EXPECT_EQ(kept.Find("two"), nullptr);
  EXPECT_EQ(*kept.Find("one"), 1);
  EXPECT_EQ(*kept.Find("three"), 3);
}

// Statements that differ in numbers alone share one translation; what they answer must not.
TEST(StatementCache, NumbersKeepTheirMeaningInASharedText) {
  TestCompany company;
  for (int month = 24121; month <= 24123; ++month) company.Emi(17, 2, 3, month - 24120, month, 1000.5);
  const std::pair<const char*, const char*> table[] = {
      {"SELECT COUNTER FROM INS_EMIDETAIL WHERE MONTHYEAR = 24121", "1"},
      {"SELECT COUNTER FROM INS_EMIDETAIL WHERE MONTHYEAR = 24123", "3"},
      {"SELECT COUNTER FROM INS_EMIDETAIL WHERE MONTHYEAR = 24123.0", "3"},
      {"SELECT COUNT(*) FROM INS_EMIDETAIL WHERE EMIAMT = 1000.50", "3"},
      {"SELECT COUNT(*) FROM INS_EMIDETAIL WHERE EMIAMT = 1000", "0"},
      {"SELECT TOP 1 COUNTER FROM INS_EMIDETAIL WHERE MONTHYEAR > 24121 ORDER BY 1 DESC", "3"},
      {"SELECT TOP 2 COUNTER FROM INS_EMIDETAIL WHERE MONTHYEAR > 24121 ORDER BY 1 DESC", "3\n2"},
      {"SELECT COUNTER / 2 FROM INS_EMIDETAIL WHERE MONTHYEAR = 24123", "1"},
      {"SELECT COUNTER FROM INS_EMIDETAIL WHERE COUNTER / 2 = 1 ORDER BY COUNTER", "2\n3"},
      {"SELECT COUNTER FROM INS_EMIDETAIL WHERE COUNTER / 2.0 = 1", "2"},
      {"SELECT COUNTER FROM INS_EMIDETAIL WHERE REMARKS = '5' AND MONTHYEAR = 5", ""},
  };
  for (int round = 0; round < 2; ++round) {
    for (const auto& [sql, rows] : table) EXPECT_EQ(company.Rows(sql), rows) << sql;
  }
  for (const double amount : {700.0, 700.25}) {
    company.Execute("UPDATE INS_EMIDETAIL SET MDFYAMT = " + Value(amount).ToText() +
                    " WHERE MONTHYEAR = 24122");
    EXPECT_EQ(company.One("SELECT MDFYAMT FROM INS_EMIDETAIL WHERE MONTHYEAR = 24122"), Value(amount));
  }
}

TEST(StatementCache, AKeptStatementFollowsTheSchema) {
  TestCompany company;
  company.Execute("SELECT 1 AS A INTO [TMP1] FROM MAS_OPTSET");
  EXPECT_EQ(company.Rows("SELECT * FROM [TMP1]"), "1");
  company.Execute("DROP TABLE [TMP1]");
  company.Execute("SELECT 1 AS A, 2 AS B INTO [TMP1] FROM MAS_OPTSET");
  EXPECT_EQ(company.Rows("SELECT * FROM [TMP1]"), "1|2");
}

// What a column holds is known from its name alone, so that a text that meets it is read as what it is.
TEST(Types, EveryColumnOfTheSchemaIsKnownByItsDeclaration) {
  TestCompany company;
  const auto columns = company.Cn().Query(
      "SELECT TABLE_NAME, COLUMN_NAME, DATA_TYPE FROM INFORMATION_SCHEMA.COLUMNS WHERE "
      "TABLE_NAME LIKE '[A-Z][A-Z][A-Z][_]%' AND TABLE_NAME NOT LIKE 'KTL[_]%' AND TABLE_NAME NOT LIKE "
      "'SYS[_]%'");
  EXPECT_GT(columns.rows.size(), 400U);
  for (const auto& row : columns.rows) {
    const std::string table = row[0].text(), column = row[1].text(), declared = row[2].text();
    if (column == "PFEFFFROM") continue;  // a month in one table, where no literal meets it
    const tsql::Type known = tsql::TypeOfColumn(column);
    const tsql::Type wanted = declared == "DATETIME"  ? tsql::Type::Date
                              : declared == "INTEGER" ? tsql::Type::Integer
                              : declared == "REAL"    ? tsql::Type::Real
                                                      : tsql::Type::Text;
    EXPECT_EQ(known, wanted) << table << "." << column << " " << declared;
  }
}

// A driver on a file of its own, with what a company's file never has.
class OwnFile : public testing::Test {
 protected:
  SqliteDriver Driver(const char* script) {
    SqliteDatabase file(folder.path() / "own.db", SqliteDatabase::Mode::New);
    file.RunScript(script);
    return SqliteDriver(std::move(file), FileKind::LocalStore, {});
  }
  TemporaryFolder folder;
};

TEST_F(OwnFile, ACommitThatFailsLeavesTheTransactionToBeUndone) {
  SqliteDriver driver = Driver(
      "PRAGMA foreign_keys = ON; CREATE TABLE A (X INTEGER PRIMARY KEY); "
      "CREATE TABLE B (X INTEGER REFERENCES A (X) DEFERRABLE INITIALLY DEFERRED);");
  driver.Begin();
  driver.Execute("INSERT INTO B (X) VALUES (5)");
  EXPECT_EQ(FailureOf([&] { driver.Commit(); }).number(), kIntegrityError);
  EXPECT_TRUE(driver.InTransaction());
  driver.Rollback();
  EXPECT_FALSE(driver.InTransaction());
  EXPECT_TRUE(driver.Query("SELECT X FROM B", Fetch::AllRows, false).rows.empty());
  EXPECT_THROW(driver.Rollback(), DatabaseError);
}

TEST_F(OwnFile, AFullDiskIsAnErrorAndWhatWasThereStays) {
  SqliteDriver driver =
      Driver("CREATE TABLE A (X TEXT); INSERT INTO A VALUES ('kept'); PRAGMA max_page_count = 4;");
  const std::string large(20'000, 'x');
  EXPECT_NE(FailureOf([&] {
              driver.InsertRow("A", {{"X", large}});
            })
                .description()
                .find("full"),
            std::string::npos);
  driver.Begin();
  EXPECT_THROW(driver.InsertRow("A", {{"X", large}}), DatabaseError);
  if (driver.InTransaction()) driver.Rollback();
  EXPECT_EQ(driver.Query("SELECT X FROM A", Fetch::AllRows, false).rows.size(), 1U);
}

}  // namespace
}  // namespace ktl::test
