#include <gtest/gtest.h>

#include <tuple>

#include "database/connection_string.h"
#include "database/stored_date.h"
#include "database/tsql/lexer.h"
#include "failure.h"
#include "support/company_fixture.h"

// What comes in from outside the room: connection strings, dates in texts, the words of a statement.

namespace ktl::test {
namespace {

TEST(ConnectionString, SettingsAreFoundWithoutRegardToCaseAndBlanks) {
  const char* const text =
      " Provider = SQLite ;Data Source=/tmp/a b.kldb;;PWD=;Jet OLEDB:Database Password=MOLE";
  const std::pair<const char*, const char*> table[] = {{"provider", "SQLite"},
                                                       {"DATA SOURCE", "/tmp/a b.kldb"},
                                                       {"PWD", ""},
                                                       {"Jet OLEDB:Database Password", "MOLE"},
                                                       {"Source", ""},
                                                       {"", ""}};
  for (const auto& [key, value] : table) EXPECT_EQ(ConnectionSetting(text, key), value) << key;
  EXPECT_EQ(ConnectionSetting("Data Source=/tmp/वेतन.kldb", "Data Source"), "/tmp/वेतन.kldb");
  EXPECT_EQ(ConnectionSetting("", "Provider"), "");
}

TEST(StoredDate, TextOrderIsTimeOrder) {
  const Date midnight = *Date::FromYmd(2010, 4, 5), later = *Date::FromYmd(2010, 4, 5, 9, 30, 1);
  EXPECT_EQ(StoredDate(midnight), "2010-04-05");
  EXPECT_EQ(StoredDate(later), "2010-04-05 09:30:01");
  EXPECT_LT(StoredDate(midnight), StoredDate(later));
  EXPECT_LT(StoredDate(later), StoredDate(*Date::FromYmd(2010, 4, 6)));
  for (const Date& date : {midnight, later}) EXPECT_EQ(FromStoredDate(StoredDate(date)), date);
  for (const char* other : {"", "2010-4-5", "05/04/2010", "2010-04-31", "2010-04-05 9:30:01",
                            "2010-04-05 09:30", "2010-04-05 25:00:00", "2010-04-05x"}) {
    EXPECT_EQ(FromStoredDate(other), std::nullopt) << other;
  }
}

TEST(StoredDate, LiteralsComeDayFirstOrYearFirst) {
  const Date fifth = *Date::FromYmd(2010, 4, 5);
  for (const char* text : {"5/4/2010", "05-04-2010", "5/Apr/2010", "05-apr-2010", "2010-04-05", "2010/4/5"}) {
    EXPECT_EQ(ParseDateLiteral(text), fifth) << text;
  }
  EXPECT_EQ(ParseDateLiteral("2010-04-05 09:30:01"), *Date::FromYmd(2010, 4, 5, 9, 30, 1));
  for (const char* text :
       {"", "31/Feb/2010", "5/13/2010", "2010-13-01", "Apr", "17", "12:30", "5/4", "a/b/c"}) {
    EXPECT_EQ(ParseDateLiteral(text), std::nullopt) << text;
  }
}

std::string Words(std::string_view text) {
  std::string words;
  for (const tsql::Token& token : tsql::Tokenize(text)) {
    if (token.kind == tsql::TokenKind::End) break;
    words += (words.empty() ? "" : "|") + std::string(token.text);
  }
  return words;
}

TEST(Lexer, TakesATextApartAsTheServerDoes) {
  const std::pair<const char*, const char*> table[] = {
      {"SELECT [A B].X,'it''s'", "SELECT|A B|.|X|,|'it''s'"},
      {"a<=b<>c!=d>=e", "a|<=|b|<>|c|!=|d|>=|e"},
      {"EMPID=17AND 1=1", "EMPID|=|17|AND|1|=|1"},
      {"1.5 .5 2e3 1E-2 7.", "1.5|.5|2e3|1E-2|7."},
      {"@n N'text'", "@n|'text'"},
      {"A -- b\nC /* d\n e */ F", "A|C|F"},
      {"-1 - -2", "-|1|-|-|2"},
      {"", ""},
  };
  for (const auto& [text, words] : table) EXPECT_EQ(Words(text), words) << text;
  for (const char* broken : {"'open", "[open", "/* open", "a ~ b", "\x01"}) {
    EXPECT_THROW(tsql::Tokenize(broken), DatabaseError) << broken;
  }
}

// The functions that the embedded store lends to the language, where nulls and odd values meet them.
TEST(Functions, AnswerAsTheServersDo) {
  TestCompany company;
  const std::pair<const char*, const char*> table[] = {
      {"SELECT LEN(NULL), LEFT(NULL, 1), RIGHT('abc', 0), SUBSTRING('abc', 0, 2), SUBSTRING('abc', 9, 1)",
       "NULL|NULL||a|"},
      {"SELECT UPPER(NULL), UPPER('é'), LOWER('É'), LTRIM('  a '), RTRIM(' a  ') + '|'", "NULL|É|é|a | a|"},
      {"SELECT FLOOR(-2.5), CEILING(-2.5), ABS(-2.5), ROUND(NULL, 2), ABS(NULL)", "-3|-2|2.5|NULL|NULL"},
      {"SELECT YEAR('05/Apr/2010'), MONTH('2010-04-05'), DAY('5/4/2010'), YEAR(NULL)", "2010|4|5|NULL"},
      {"SELECT DATEDIFF(DAY, '28/Feb/2012', '01/Mar/2012'), DATEDIFF(MONTH, '31/Jan/2012', '01/Feb/2012'), "
       "DATEDIFF(YEAR, '31/Dec/2011', '01/Jan/2012'), DATEDIFF(DAY, '01/Mar/2012', '28/Feb/2012')",
       "2|1|1|-2"},
      {"SELECT COALESCE(NULL, NULL, 3), ISNULL(NULL, 'x'), NULLIF(1, 1), NULLIF('a', 'A ')", "3|x|NULL|NULL"},
      {"SELECT NULLIF(T.DOJ, '01/Apr/2010') FROM (SELECT '2010-04-01' AS DOJ) T", "NULL"},
      {"SELECT STR(5), STR(2.5), STR(-1)", "         5|         3|        -1"},
      {"SELECT CHARINDEX('b', 'abab', 3), CHARINDEX('x', NULL)", "4|NULL"},
      {"SELECT dbo.FnStrMonthName(24124), dbo.FnStrMonthName(24132)", "Apr/2010|Dec/2010"},
      {"SELECT CAST(NULL AS VARCHAR), CAST(2.5 AS INT), CAST('7' AS FLOAT) + 1, CAST(100.0 AS VARCHAR)",
       "NULL|2|8|100"},
  };
  for (const auto& [sql, row] : table) EXPECT_EQ(company.Rows(sql), row) << sql;
}

}  // namespace
}  // namespace ktl::test
