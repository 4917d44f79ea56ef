#include "database/tsql/writer.h"

#include <gtest/gtest.h>

#include "database/drivers/mariadb_writer.h"
#include "database/drivers/sqlite_writer.h"
#include "failure.h"

namespace ktl::test {
namespace {

using tsql::Program;

std::string Written(const Program& program, const std::string& indent = "") {
  std::string text;
  for (const auto& step : program) {
    text += (text.empty() ? "" : "\n") + indent + step.sql;
    if (!step.then.empty()) text += "\n" + Written(step.then, indent + "+ ");
    if (!step.otherwise.empty()) text += "\n" + Written(step.otherwise, indent + "- ");
  }
  return text;
}

#define COMPARER " COLLATE SQL_Latin1_General_CP1_CI_AS"

// Every construct of the language in the embedded dialect.
TEST(EmbeddedDialect, EachConstruct) {
  const std::pair<const char*, const char*> table[] = {
      // A limit stands behind the order, and inside a union only round its own part.
      {"SELECT TOP 3 EMPID FROM MAS_EMPLOYEE ORDER BY EMPNAME DESC",
       "SELECT [EMPID] FROM [MAS_EMPLOYEE] ORDER BY [EMPNAME] DESC LIMIT 3"},
      {"SELECT A AS N FROM T UNION ALL SELECT TOP 1 A FROM U",
       "SELECT [A] AS [N] FROM [T] UNION ALL SELECT * FROM (SELECT [A] FROM [U] LIMIT 1) AS [LIMITED]"},
      {"SELECT EMPNAME FROM T UNION SELECT REMARKS FROM U",
       "SELECT [EMPNAME] FROM [T] UNION SELECT [REMARKS]" COMPARER " FROM [U]"},
      // A text that is not declared with the comparer gets it where rows are told apart or put in order.
      {"SELECT DISTINCT EMPNAME, REMARKS FROM T",
       "SELECT DISTINCT [EMPNAME], [REMARKS]" COMPARER " FROM [T]"},
      {"SELECT REMARKS FROM T GROUP BY REMARKS HAVING COUNT(*) > 1 ORDER BY REMARKS",
       "SELECT [REMARKS] FROM [T] GROUP BY [REMARKS]" COMPARER
       " HAVING COUNT(*) > 1 ORDER BY [REMARKS]" COMPARER},
      {"SELECT A FROM T WHERE UPPER(EMPNAME) = 'X'",
       "SELECT [A] FROM [T] WHERE KL_UPPER([EMPNAME])" COMPARER " = 'X'"},
      {"SELECT A FROM T WHERE EMPNAME = 'X'", "SELECT [A] FROM [T] WHERE [EMPNAME] = 'X'"},
      {"SELECT A FROM T WHERE EMPNAME COLLATE Latin1_General_CI_AS = 'x'",
       "SELECT [A] FROM [T] WHERE ([EMPNAME] COLLATE Latin1_General_CI_AS) = 'x'"},
      // Joins, derived tables, owners, catalogues. A qualified column keeps its own name.
      {"SELECT E.EMPID FROM dbo.T AS E LEFT JOIN U A ON A.EMPID = E.EMPID WHERE A.EMPID IS NULL",
       "SELECT [E].[EMPID] AS [EMPID] FROM [T] AS [E] LEFT JOIN [U] AS [A] ON [A].[EMPID] = [E].[EMPID] "
       "WHERE "
       "[A].[EMPID] IS NULL"},
      {"SELECT * FROM T E, (SELECT EMPID FROM U) V CROSS JOIN W",
       "SELECT * FROM [T] AS [E], (SELECT [EMPID] FROM [U]) AS [V] CROSS JOIN [W]"},
      {"SELECT * FROM T INNER JOIN U ON T.A = U.A RIGHT JOIN V ON V.A = U.A FULL JOIN W ON W.A = V.A",
       "SELECT * FROM [T] JOIN [U] ON [T].[A] = [U].[A] RIGHT JOIN [V] ON [V].[A] = [U].[A] FULL JOIN [W] ON "
       "[W].[A] = [V].[A]"},
      {"SELECT NAME FROM SYS.TABLES WHERE NAME = 'X'", "SELECT [NAME] FROM [SYS_TABLES] WHERE [NAME] = 'X'"},
      // Conversions by what is converted.
      {"SELECT CAST(EMPID AS VARCHAR) + '/' + CAST(SERIALNO AS VARCHAR(10))",
       "SELECT ((CAST([EMPID] AS TEXT)) || '/') || (CAST([SERIALNO] AS TEXT))"},
      {"SELECT CAST(ACTAMT AS VARCHAR), CAST('12' AS INT), CAST(EMPID AS FLOAT)",
       "SELECT KL_TEXT([ACTAMT]), CAST('12' AS INTEGER), CAST([EMPID] AS REAL)"},
      {"SELECT CAST(ACTAMT AS NUMERIC(10,2)), CONVERT(MONEY, ACTAMT), CONVERT(NUMERIC, ACTAMT)",
       "SELECT CAST(KL_ROUND([ACTAMT], 2) AS REAL), CAST(KL_ROUND([ACTAMT], 4) AS REAL), "
       "CAST(KL_ROUND([ACTAMT], 0) AS REAL)"},
      {"SELECT A FROM T WHERE RIGHT(REFNO, 2) = 17",
       "SELECT [A] FROM [T] WHERE CAST(KL_RIGHT([REFNO], 2) AS NUMERIC) = 17"},
      {"SELECT T.X + T.Y, 1 + 2, 'a' + 'b'", "SELECT KL_ADD([T].[X], [T].[Y]), 1 + 2, 'a' || 'b'"},
      {"SELECT EMPID / 12, -EMPID % 5, (1 + 2) * 3", "SELECT [EMPID] / 12, (-[EMPID]) % 5, (1 + 2) * 3"},
      // A text that meets a date is one.
      {"SELECT A FROM T WHERE DOJ BETWEEN '01/Apr/2010' AND '2010-06-30' AND DOL IN ('1/2/2011')",
       "SELECT [A] FROM [T] WHERE [DOJ] BETWEEN '2010-04-01' AND '2010-06-30' AND [DOL] IN ('2011-02-01')"},
      {"SELECT ISNULL(DOL, '31/Dec/2099'), DATEDIFF(DAY, DOJ, '01/May/2010'), CAST('01/Apr/2010' AS "
       "DATETIME)",
       "SELECT IFNULL([DOL], '2099-12-31'), KL_DATEDIFF('DAY', [DOJ], '2010-05-01'), '2010-04-01'"},
      {"SELECT EMPNAME FROM T WHERE EMPNAME = '01/Apr/2010'",
       "SELECT [EMPNAME] FROM [T] WHERE [EMPNAME] = '01/Apr/2010'"},
      // Conditions.
      {"SELECT A FROM T WHERE NOT (A = 1 OR B <> 2) AND C NOT IN (3, 4) AND EXISTS (SELECT 1 FROM U)",
       "SELECT [A] FROM [T] WHERE (NOT ([A] = 1 OR [B] <> 2)) AND [C] NOT IN (3, 4) AND EXISTS (SELECT 1 "
       "FROM [U])"},
      {"SELECT A FROM T WHERE EMPNAME LIKE '%a[b-d]%' AND REFNO NOT LIKE '10!%' ESCAPE '!'",
       "SELECT [A] FROM [T] WHERE [EMPNAME] LIKE '%a[b-d]%' AND [REFNO] NOT LIKE '10!%' ESCAPE '!'"},
      {"SELECT CASE WHEN A > 1 THEN 'a' ELSE 'b' END, CASE A WHEN 1 THEN 2 END",
       "SELECT CASE WHEN [A] > 1 THEN 'a' ELSE 'b' END, CASE [A] WHEN 1 THEN 2 END"},
      // Functions.
      {"SELECT SUM(A), COUNT(DISTINCT B), MAX([COUNTER]), ROW_NUMBER() OVER (ORDER BY SINAME) AS N",
       "SELECT SUM([A]), COUNT(DISTINCT [B]), MAX([COUNTER]), ROW_NUMBER() OVER ( ORDER BY [SINAME]) AS [N]"},
      {"SELECT dbo.udf_getEmpLock(1, 24121, DEFAULT), HOST_NAME(), GETDATE()",
       "SELECT KL_EMPLOCK(1, 24121, NULL), KL_HOST_NAME(), KL_NOW()"},
      {"SELECT LEN(A), LTRIM(RTRIM(A)), STR(A), FLOOR(2.5), CEILING(A), ABS(-1), ROUND(A, 2), NULLIF(A, 0)",
       "SELECT KL_LEN([A]), ltrim(rtrim([A])), KL_STR([A]), KL_FLOOR(2.5), KL_CEILING([A]), abs(-1), "
       "KL_ROUND([A], 2), NULLIF([A], 0)"},
      // Changes. The table to be updated is not named again in FROM; conditions of joins join the others.
      {"INSERT INTO INS_RECEIPTS (EMPID, RCPTDATE) VALUES (1, '01/Apr/2010'), (2, NULL)",
       "INSERT INTO [INS_RECEIPTS] ([EMPID], [RCPTDATE]) VALUES (1, '2010-04-01'), (2, NULL)"},
      {"INSERT INTO T SELECT * FROM U", "INSERT INTO [T] SELECT * FROM [U]"},
      {"UPDATE T SET A = 1, SIDATE = '01/Apr/2010' WHERE B = 2",
       "UPDATE [T] SET [A] = 1, [SIDATE] = '2010-04-01' WHERE [B] = 2"},
      {"UPDATE T SET A = V.S FROM T X, (SELECT B, SUM(C) AS S FROM U GROUP BY B) V WHERE X.B = V.B",
       "UPDATE [T] AS [X] SET [A] = [V].[S] FROM (SELECT [B], SUM([C]) AS [S] FROM [U] GROUP BY [B]) AS [V] "
       "WHERE "
       "[X].[B] = [V].[B]"},
      {"UPDATE X SET A = 0 FROM T X INNER JOIN U ON U.B = X.B WHERE U.C = 1 OR U.C = 2",
       "UPDATE [T] AS [X] SET [A] = 0 FROM [U] WHERE [U].[B] = [X].[B] AND ([U].[C] = 1 OR [U].[C] = 2)"},
      {"DELETE FROM T WHERE SIDATE < '01/Apr/2010'", "DELETE FROM [T] WHERE [SIDATE] < '2010-04-01'"},
      {"SELECT EMPID, 1 AS F INTO [X 1] FROM T", "CREATE TABLE [X 1] AS SELECT [EMPID], 1 AS [F] FROM [T]"},
      {"ALTER TABLE [X 1] ADD CONSTRAINT [PK 1] PRIMARY KEY (A, B)",
       "CREATE UNIQUE INDEX [PK 1] ON [X 1] ([A], [B])"},
      {"CREATE VIEW [v 1] AS SELECT E.*, 1 AS N FROM T E",
       "CREATE VIEW [v 1] AS SELECT [E].*, 1 AS [N] FROM [T] AS [E]"},
      {"DROP VIEW [v 1] DROP TABLE T", "DROP VIEW [v 1]\nDROP TABLE [T]"},
      // Batches.
      {"DECLARE @n AS INT SET @n = 1 SELECT @n = @n + A FROM T",
       "SELECT KL_SET('@n', NULL)\nSELECT KL_SET('@n', 1)\nSELECT KL_SET('@n', KL_GET('@n') + [A]) FROM [T]"},
      {"IF EXISTS (SELECT * FROM T) DROP TABLE T ELSE BEGIN SELECT 1 SELECT 2 END",
       "SELECT CASE WHEN EXISTS (SELECT * FROM [T]) THEN 1 ELSE 0 END\n+ DROP TABLE [T]\n- SELECT 1\n- "
       "SELECT 2"},
  };
  for (const auto& [said, embedded] : table) {
    EXPECT_EQ(Written(SqliteWriter(said).Translate()), embedded) << said;
  }
}

TEST(EmbeddedDialect, AnUpdatableQueryAnswersItsKeyInFront) {
  const Program program = SqliteWriter("SELECT * FROM T WHERE A = 1 ORDER BY B").Translate(true);
  EXPECT_EQ(Written(program), "SELECT rowid, * FROM [T] WHERE [A] = 1 ORDER BY [B]");
  EXPECT_EQ(program.front().baseTable, "T");
  for (const char* other :
       {"SELECT A FROM T", "SELECT * FROM T, U", "SELECT DISTINCT * FROM T", "SELECT TOP 1 * FROM T",
        "SELECT * FROM T UNION SELECT * FROM U", "SELECT * FROM (SELECT * FROM T) U",
        "SELECT * FROM T GROUP BY A", "DELETE FROM T", "SELECT * FROM T SELECT * FROM T"}) {
    const std::string told = FailureOf([&] { SqliteWriter(other).Translate(true); }).description();
    EXPECT_NE(told.find("only a SELECT * over one table can be updated"), std::string::npos) << other;
  }
}

TEST(EmbeddedDialect, DatesAreToldByColumnFromBothEndsOfAResult) {
  const Program program = SqliteWriter("SELECT DOJ, EMPID, E.*, DOL FROM MAS_EMPLOYEE E").Translate();
  const tsql::Step& step = program.front();
  EXPECT_EQ(step.datesFromFront, (std::vector<bool>{true, false}));
  EXPECT_EQ(step.datesFromBack, std::vector<bool>{true});
  EXPECT_TRUE(step.TellsDate(0, 9) && step.TellsDate(8, 9));
  EXPECT_FALSE(step.TellsDate(1, 9) || step.TellsDate(4, 9));
}

// What differs from the embedded dialect.
TEST(MariaDbDialect, EachConstruct) {
  const std::pair<const char*, const char*> table[] = {
      // Tables and what stands for them in upper case, columns as they are spelled.
      {"SELECT e.EmpId, [Loan amt] FROM dbo.mas_Employee e WHERE E.lockyn = 0",
       "SELECT `E`.`EmpId` AS `EmpId`, `Loan amt` FROM `MAS_EMPLOYEE` AS `E` WHERE `E`.`lockyn` = 0"},
      {"SELECT NAME FROM sys.tables", "SELECT `NAME` FROM `SYS_TABLES`"},
      {"SELECT A INTO [x`1] FROM T", "CREATE TABLE `X``1` AS SELECT `A` FROM `T`"},
      {"CREATE VIEW [v 1] AS SELECT E.* FROM t E", "CREATE VIEW `V 1` AS SELECT `E`.* FROM `T` AS `E`"},
      {"SELECT A FROM T UNION SELECT TOP 1 A FROM u",
       "SELECT `A` FROM `T` UNION SELECT * FROM (SELECT `A` FROM `U` LIMIT 1) AS `LIMITED` ORDER BY 1"},
      {"SELECT A, * FROM (SELECT B FROM T) V CROSS JOIN u",
       "SELECT `A`, `V`.*, `U`.* FROM (SELECT `B` FROM `T`) AS `V` CROSS JOIN `U`"},
      // Limits behind IN.
      {"SELECT A FROM T WHERE A IN (SELECT TOP 1 B FROM U WHERE U.A = T.A)",
       "SELECT `A` FROM `T` WHERE `A` = (SELECT `B` FROM `U` WHERE `U`.`A` = `T`.`A` LIMIT 1)"},
      {"SELECT A FROM T WHERE A NOT IN (SELECT TOP 1 B FROM U)",
       "SELECT `A` FROM `T` WHERE `A` NOT IN (SELECT * FROM (SELECT `B` FROM `U` LIMIT 1) AS `LIMITED`)"},
      // Numbers: decimals are doubles, whole ones divide as such, a text column is met as a text.
      {"SELECT 50.00 / 100 * ETOTAL, EMPID / 12, A / 12",
       "SELECT (50.00E0 / 100) * `ETOTAL`, `EMPID` DIV 12, (0E0 + `A`) / 12"},
      {"SELECT A FROM T WHERE FINANCIALYEAR = 2010 AND FINANCIALYEAR IN (2011) AND FINANCIALYEAR > 2009",
       "SELECT `A` FROM `T` WHERE `FINANCIALYEAR` = '2010' AND `FINANCIALYEAR` IN ('2011') AND "
       "CAST(`FINANCIALYEAR` AS DOUBLE) > 2009"},
      {"SELECT CAST(EMPID AS INT), CAST(ACTAMT AS INT), CAST(ACTAMT AS MONEY), ROUND(ACTAMT, 2), ROUND(EMPID, "
       "2)",
       "SELECT CAST(`EMPID` AS SIGNED), CAST(TRUNCATE(`ACTAMT`, 0) AS SIGNED), (ROUND(CAST(`ACTAMT` AS "
       "DECIMAL(60, "
       "20)), 4) + 0E0), (ROUND(CAST(`ACTAMT` AS DECIMAL(60, 20)), 2) + 0E0), ROUND(`EMPID`, 2)"},
      // Texts.
      {"SELECT 'a' + EMPNAME + CAST(EMPID AS VARCHAR(5)), X + 'b'",
       "SELECT CONCAT('a', `EMPNAME`, CAST(`EMPID` AS CHAR)), CONCAT(`X`, 'b')"},
      {"SELECT A FROM T WHERE UPPER(REMARKS) = 'X' AND REFNO COLLATE SQL_Latin1_General_CP1_CI_AS = 'r'",
       "SELECT `A` FROM `T` WHERE UPPER(`REMARKS`) = 'X' AND (`REFNO` COLLATE utf8mb4_uca1400_as_ci) = 'r'"},
      {"SELECT CHARINDEX('#' + A, SINAME), CHARINDEX(A, SINAME), CHARINDEX('', SINAME, 2), LEN(A)",
       "SELECT LOCATE(CONCAT('#', `A`), `SINAME`), (LOCATE(`A`, `SINAME`) * (CHAR_LENGTH(`A`) > 0)), "
       "(LOCATE('', `SINAME`, GREATEST(2, 1)) * (CHAR_LENGTH('') > 0)), CHAR_LENGTH(RTRIM(`A`))"},
      {"SELECT SUBSTRING(SINAME, 2, 3), SUBSTRING(SINAME, -A, 3)",
       "SELECT SUBSTRING(`SINAME`, 2, 3), SUBSTRING(`SINAME`, GREATEST(-`A`, 1), 3 + LEAST(-`A` - 1, 0))"},
      // A set of one character is that character; other sets take an expression.
      {"SELECT A FROM T WHERE A LIKE '%x%' AND A LIKE '*[[]x[%]\\' AND A NOT LIKE '[^a-f.]_%' AND A LIKE B",
       "SELECT `A` FROM `T` WHERE `A` LIKE '%x%' AND `A` LIKE '*[x\\%\\\\' ESCAPE '\\' AND `A` NOT REGEXP "
       "'\\A(?s)[^a-f\\.]..*\\z' AND `A` LIKE `B` ESCAPE '\x01'"},
      {"SELECT A FROM T WHERE A LIKE '10!%' ESCAPE '!'",
       "SELECT `A` FROM `T` WHERE `A` LIKE '10\\%' ESCAPE '\\'"},
      // Dates.
      {"SELECT ISNULL(DOL, '31/Dec/2099'), DATEDIFF(DAY, DOJ, '01/May/2010'), DATEDIFF(MONTH, DOJ, DOL)",
       "SELECT IFNULL(`DOL`, TIMESTAMP'2099-12-31 00:00:00'), DATEDIFF(TIMESTAMP'2010-05-01 00:00:00', "
       "`DOJ`), (YEAR(`DOL`) * 12 + MONTH(`DOL`) - YEAR(`DOJ`) * 12 - MONTH(`DOJ`))"},
      {"SELECT dbo.udf_getEmpLock(1, 24121, DEFAULT), HOST_NAME(), [dbo].FnStrMonthName(MONTHYEAR)",
       "SELECT udf_getEmpLock(1, 24121, NULL), @KTL_HOST, FnStrMonthName(`MONTHYEAR`)"},
      // What is distinct of a whole table is worked out of its distinct columns; such rows are not grouped.
      {"SELECT DISTINCT A, B % 12 + a AS N FROM t X ORDER BY A",
       "SELECT DISTINCT `A`, (`B` % 12) + `a` AS `N` FROM (SELECT DISTINCT `A`, `B` FROM `T` AS `X`) AS `X` ORDER BY "
       "`A`"},
      {"SELECT DISTINCT A, B FROM T", "SELECT DISTINCT `A`, `B` FROM `T`"},
      {"SELECT DISTINCT A, (SELECT MAX(C) FROM U) FROM T GROUP BY A, B",
       "SELECT DISTINCT `A`, (SELECT MAX(`C`) FROM `U`) FROM `T`"},
      {"SELECT DISTINCT A, ISNULL(SUM(C), 0) FROM T GROUP BY A, B",
       "SELECT DISTINCT `A`, IFNULL(SUM(`C`), 0) FROM `T` GROUP BY `A`, `B`"},
      {"SELECT A, * FROM T x CROSS JOIN U", "SELECT `A`, `X`.*, `U`.* FROM `T` AS `X` CROSS JOIN `U`"},
      // Changes.
      {"UPDATE T SET A = V.S FROM T x, (SELECT B, SUM(C) AS S FROM U GROUP BY B) V WHERE X.B = V.B",
       "UPDATE `T` AS `X`, (SELECT `B`, SUM(`C`) AS `S` FROM `U` GROUP BY `B`) AS `V` SET `X`.`A` = "
       "`V`.`S` WHERE `X`.`B` = `V`.`B`"},
      {"UPDATE T SET A = U.A FROM U WHERE U.B = T.B",
       "UPDATE `T`, `U` SET `T`.`A` = `U`.`A` WHERE `U`.`B` = `T`.`B`"},
      {"UPDATE T SET A = 1 WHERE B NOT IN (SELECT C FROM (SELECT C FROM U) V GROUP BY C HAVING MAX(D) <= 0)",
       "UPDATE `T` SET `A` = 1 WHERE `B` NOT IN (SELECT * FROM (SELECT `C` FROM (SELECT `C` FROM `U`) AS `V` "
       "GROUP BY `C` HAVING MAX(`D`) <= 0) AS `LIMITED`)"},
      {"UPDATE T SET A = 1 WHERE B IN (SELECT C FROM U WHERE U.D = T.D GROUP BY C)",
       "UPDATE `T` SET `A` = 1 WHERE `B` IN (SELECT `C` FROM `U` WHERE `U`.`D` = `T`.`D` GROUP BY `C`)"},
      {"UPDATE T SET A = 1 FROM T SE WHERE B = 2", "UPDATE `T` AS `SE` SET `A` = 1 WHERE `B` = 2"},
      {"ALTER TABLE t ADD CONSTRAINT PK PRIMARY KEY (A)",
       "ALTER TABLE `T` ADD CONSTRAINT `PK` PRIMARY KEY (`A`)"},
      // Batches and procedures.
      {"DECLARE @n AS INT SET @n = 1 SELECT @n = @n + A FROM T",
       "SELECT @n := NULL\nSELECT @n := 1\nSELECT @n := @n + `A` FROM `T`"},
      {"UpdateAuditTrail 'O''BRIEN', 19, Ravi, NULL",
       "CALL `UpdateAuditTrail`('O''BRIEN', '19', 'Ravi', NULL)"},
  };
  for (const auto& [said, written] : table)
    EXPECT_EQ(Written(MariaDbWriter(said).Translate()), written) << said;
}

TEST(MariaDbDialect, AsksForSharedNumbersInTheOrderInWhichTheyStand) {
  const auto program =
      MariaDbWriter("UPDATE T SET A = ?1 FROM T X, (SELECT B FROM U WHERE C = ?2.) V WHERE REFNO = ?3")
          .Translate(false, 3);
  EXPECT_EQ(program.front().sql,
            "UPDATE `T` AS `X`, (SELECT `B` FROM `U` WHERE `C` = ?) AS `V` SET `X`.`A` = ? WHERE `REFNO` = "
            "CAST(? AS CHAR)");
  EXPECT_EQ(program.front().parameters, (std::vector<int>{2, 1, 3}));
}

TEST(MariaDbDialect, RefusesWhatItCannotSay) {
  const std::pair<const char*, const char*> table[] = {
      {"SELECT T.X + T.Y FROM T", "CAST"},
      {"SELECT A FROM T FULL JOIN U ON U.A = T.A", "FULL JOIN"},
      {"SELECT KTL_LATERSUM(A, 1, 2)", "\"KTL_LATERSUM\""},
      {"SELECT @a = 1", "\"@a\""},
      {"DECLARE @a INT SELECT @b", "\"@b\""},
  };
  for (const auto& [said, why] : table) {
    const std::string told = FailureOf([&] { MariaDbWriter(said).Translate(); }).description();
    EXPECT_NE(told.find(why), std::string::npos) << told;
  }
}

}  // namespace
}  // namespace ktl::test
