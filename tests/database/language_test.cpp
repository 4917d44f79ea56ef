#include <gtest/gtest.h>

#include <string>

#include "failure.h"
#include "support/company_fixture.h"

namespace ktl::test {
namespace {

TEST(Language, ExpressionsAnswerAsTheServerDoes) {
  TestCompany company;
  company.Employee(17).Named("Asha Rao ").Joined("01/Apr/2010");
  company.Employee(18).Named("ÉMILE").Joined("31/Mar/2010").Left("30/Jun/2012");
  const std::pair<const char*, const char*> table[] = {
      // "+" joins texts and adds numbers, also where only the rows can tell.
      {"SELECT 'a' + 'b' + CAST(1 + 2 AS VARCHAR)", "ab3"},
      {"SELECT A.X + A.Y FROM (SELECT 'a' AS X, 'b' AS Y) A", "ab"},
      {"SELECT A.X + A.Y FROM (SELECT 1 AS X, 2.5 AS Y) A", "3.5"},
      {"SELECT '4' + 1", "5"},
      {"SELECT 'a' + NULL", "NULL"},
      // Whole numbers divide to whole numbers.
      {"SELECT 50 / 100, 50.00 / 100, CONVERT(NUMERIC, 1) / 2, -7 % 3", "0|0.5|0.5|-1"},
      {"SELECT ROUND(2.675, 2), ROUND(-0.125, 2), ROUND(5, 2), ROUND(1249.5, -2), ROUND(0.5, 0)",
       "2.68|-0.13|5|1200|1"},
      // Letter case and trailing blanks count for nothing, in columns and in expressions.
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPNAME = 'ASHA RAO'", "17"},
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE UPPER(EMPNAME) = 'émile  '", "18"},
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE LEFT(EMPNAME, 4) IN ('x', 'asha')", "17"},
      {"SELECT COUNT(*) FROM (SELECT DISTINCT EMPNAME AS X FROM MAS_EMPLOYEE) A, (SELECT DISTINCT EMPNAME + ' ' "
       "AS X FROM MAS_EMPLOYEE) B WHERE A.X = B.X",
       "2"},
      {"SELECT CASE LEFT('Abc', 1) WHEN 'a' THEN 'same' ELSE 'other' END", "same"},
      {"SELECT COUNT(*) FROM (SELECT 'a' AS X UNION SELECT 'A ' AS X) T", "1"},
      {"SELECT DISTINCT LEFT(T.X, 1) FROM (SELECT 'ab' AS X UNION ALL SELECT 'AC' AS X) T", "a"},
      {"SELECT T.X FROM (SELECT 'b' AS X UNION ALL SELECT 'C' AS X UNION ALL SELECT 'a' AS X) T ORDER BY "
       "LOWER(T.X)",
       "a\nb\nC"},
      // Dates in every form a text has them, on either side.
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE DOJ = '1/Apr/2010'", "17"},
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE DOJ < '2010-04-01'", "18"},
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE DOJ IN ('31/03/2010', '2010/05/01')", "18"},
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE '30/Jun/2012' BETWEEN DOJ AND DOL", "18"},
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE ISNULL(DOL, '31/Dec/2099') > '01-Jul-2012'", "17"},
      {"SELECT MAX(DOJ), ISNULL(MIN(DOL), '01/Jan/2000') FROM MAS_EMPLOYEE", "01/04/2010|30/06/2012"},
      {"SELECT YEAR(DOJ) * 12 + MONTH(DOJ), DAY(DOJ), DATEDIFF(DAY, DOJ, '01/May/2010') FROM MAS_EMPLOYEE "
       "WHERE EMPID = 17",
       "24124|1|30"},
      {"SELECT REFNO FROM MAS_EMPLOYEE WHERE EMPNAME = '01/Apr/2010'", ""},
      // A text against a number.
      {"SELECT COUNT(*) FROM MAS_EMPLOYEE WHERE RIGHT(REFNO, 2) = 17 AND RIGHT(REFNO, 2) BETWEEN 16 AND 17",
       "1"},
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE ISNULL(EMPID, 0) = '17'", "17"},
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPID LIKE '%7%' OR EMPNAME LIKE 'é[k-m]_LE'", "17\n18"},
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE REFNO LIKE 'r1[^7]' OR REFNO LIKE '!%%' ESCAPE '!'", "18"},
      {"SELECT CHARINDEX('RAO', EMPNAME), CHARINDEX('a', EMPNAME, 2), CHARINDEX('', EMPNAME) FROM "
       "MAS_EMPLOYEE WHERE EMPID = 17",
       "6|4|0"},
      {"SELECT SUBSTRING('Émile', 1, 2), RIGHT('abc', 9), LEN('ab  '), STR(5)", "Ém|abc|2|         5"},
      {"SELECT TOP 1 EMPID FROM MAS_EMPLOYEE ORDER BY EMPID DESC", "18"},
      {"SELECT TOP 1 EMPID FROM MAS_EMPLOYEE WHERE EMPID=17AND 1=1 UNION ALL SELECT 99", "17\n99"},
      {"SELECT E.EMPID FROM MAS_EMPLOYEE E, MAS_EMPLOYEE F WHERE E.EMPID = F.EMPID ORDER BY EMPID", "17\n18"},
      {"DECLARE @n AS INT SET @n = 1 SELECT @n = @n + EMPID FROM MAS_EMPLOYEE IF @n > 30 SELECT @n ELSE "
       "SELECT 0",
       "36"},
      {"SELECT 'it''s -- {no} [comment] ?' /* but this is */ -- and this", "it's -- {no} [comment] ?"},
      {"SELECT NAME FROM SYS.TABLES WHERE NAME = 'ins_master'", "INS_MASTER"},
      {"SELECT HOST_NAME()", "PC1"},
  };
  for (const auto& [sql, rows] : table) EXPECT_EQ(company.Rows(sql), rows) << sql;
}

TEST(Language, WhatCannotBeReadIsRefusedWithItsPlace) {
  TestCompany company;
  std::string sum = "SELECT 1", negation = "SELECT ";
  for (int i = 0; i < 10000; ++i) sum += " + 1", negation += "NOT ";
  const std::pair<std::string, const char*> table[] = {
      {"SELECT *\nFROM\n  WHERE A = 1",
       "line 3, column 3: \"WHERE\" where a name is expected, near \"SELECT * FROM   WHERE A = 1\""},
      {"SELECT EMPID FROM MAS_EMPLOYEE LIMIT 5", "\"5\" where a statement is expected"},
      {"SELECT (1 + 2", "the end where \")\" is expected"},
      {"SELECT 'abc", "the text is not closed"},
      {"SELECT a || b FROM t", "line 1, column 10: the character is unknown"},
      {"SELECT IFNULL(1, 0)", "the function \"IFNULL\" is unknown"},
      {"SELECT ISNULL(1)", "the number of arguments of \"ISNULL\" is wrong"},
      {"SELECT dbo.udf_getEmpLock(17,,)", "\",\" where a value is expected"},
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE DOJ = '31/Feb/2010'", "the text is no date"},
      {"SELECT DOJ + 30 FROM MAS_EMPLOYEE", "no arithmetic with dates is known"},
      {"SELECT X = 1 FROM T", "a condition where a column is expected"},
      {"SELECT A.B.C FROM T", "where a statement is expected"},
      {"SELECT CAST(1 AS XML)", "the type \"XML\" is unknown"},
      {"SELECT 1e999", "the number is too large"},
      {"UPDATE T SET A = 1 FROM T LEFT JOIN U ON T.X = U.X", "an outer join in UPDATE"},
      {"", "the end where a statement is expected"},
      {"SELECT " + std::string(10000, '(') + "1" + std::string(10000, ')'), "nested too deeply"},
      {sum, "nested too deeply"},
      {negation + "1", "nested too deeply"},
      {"SELECT '" + std::string(1'000'000, 'x') + "'", "too long"},
  };
  for (const auto& [sql, reason] : table) {
    const std::string told = FailureOf([&] { company.Cn().Query(sql); }).description();
    EXPECT_NE(told.find(reason), std::string::npos) << sql.substr(0, 80) << ": " << told;
  }
}

}  // namespace
}  // namespace ktl::test
