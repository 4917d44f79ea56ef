#include "database/tsql/server_check.h"

#include <gtest/gtest.h>

#include "company/server_schema.h"
#include "company/table_catalogue.h"
#include "database/said.h"

namespace ktl::tsql {
namespace {

std::string FaultOf(std::string_view text) {
  const auto faults = ServerCheck(ServerColumns).Faults(text);
  return faults.empty() ? "" : faults.front().substr(0, faults.front().find(", near"));
}

struct Case {
  const char *text, *fault;
};
class ServerCheckTest : public testing::TestWithParam<std::vector<Case>> {};

TEST_P(ServerCheckTest, Tells) {
  for (const auto& [text, fault] : GetParam()) EXPECT_EQ(FaultOf(text), fault) << text;
}

INSTANTIATE_TEST_SUITE_P(
    Names, ServerCheckTest,
    testing::Values(std::vector<Case>{
        {"SELECT EMPID FROM MAS_NOBODY", "there is no table MAS_NOBODY"},
        {"SELECT NOTHING FROM MAS_EMPLOYEE", "there is no column NOTHING"},
        {"SELECT E.EMPID FROM MAS_EMPLOYEE", "there is no column E.EMPID"},
        {"SELECT EMPID FROM INS_ADVLOAN A, INS_RECEIPTS B", "EMPID is ambiguous"},
        {"SELECT 1 FROM INS_ADVLOAN A, INS_OTHER A", "two tables are called A"},
        {"SELECT X.* FROM INS_ADVLOAN A", "no table for X.*"},
        {"SELECT EMPID USER FROM MAS_EMPLOYEE", "the reserved word USER is used as a name"},
        {"SELECT EMPID [USER] FROM MAS_EMPLOYEE", ""},
        {"SELECT A.EMPID, B.EMPID FROM INS_ADVLOAN A, INS_RECEIPTS B ORDER BY EMPID",
         "EMPID is ambiguous in ORDER BY"},
        {"SELECT 1 FROM MAS_EMPLOYEE E, INS_ADVLOAN A INNER JOIN INS_RECEIPTS R ON E.EMPID = R.EMPID",
         "there is no column E.EMPID"},
        {"SELECT (SELECT MAX(MONTHYEAR) FROM INS_EMIDETAIL WHERE EMPID = E.EMPID) FROM MAS_EMPLOYEE E", ""},
        {"SELECT EMPID FROM [TMPPC1] WHERE FILTERYN1 = 1", "there is no column FILTERYN1"},
        {"SELECT EMPID INTO [KEPT] FROM MAS_EMPLOYEE SELECT EMPID FROM [KEPT]", ""},
        {"INSERT INTO INS_HLOAN (EMPID, NONE) VALUES (1, 2)", "INS_HLOAN has no column NONE"},
        {"INSERT INTO INS_HLOAN (EMPID, EMPID) VALUES (1, 2)", "the column EMPID is named twice"},
        {"UPDATE INS_HLOAN SET HTYPE = 1, HTYPE = 2", "the column HTYPE is set twice"},
        {"UPDATE INS_HLOAN SET NONE = 1", "INS_HLOAN has no column NONE"},
        {"UPDATE INS_HLOAN SET HTYPE = 1 FROM INS_ADVLOAN A", "INS_HLOAN is not in its own FROM"},
        {"UPDATE INS_HLOAN SET HTYPE = 1 FROM INS_HLOAN A, INS_HLOAN B",
         "INS_HLOAN is several times in FROM"},
        {"DELETE FROM INS_HLOAN WHERE NONE = 1", "there is no column NONE"},
        {"DROP TABLE NOWHERE", "there is no NOWHERE"},
        {"ALTER TABLE INS_HLOAN ADD CONSTRAINT PK1 PRIMARY KEY (NONE)", "INS_HLOAN has no column NONE"},
        {"SELECT dbo.ISNULL(EMPID, 0) FROM MAS_EMPLOYEE", "ISNULL is called with its owner"},
        {"SELECT udf_getEmpLock(1, 2, 3)", "UDF_GETEMPLOCK is called without its owner"},
        {"SELECT IFNULL(EMPID, 0) FROM MAS_EMPLOYEE", "there is no function IFNULL"},
        {"SELECT KTL_LATERSUM(1, 2, 3)", "there is no function KTL_LATERSUM"},
        {"SET @a = 1", "@a is not declared"},
        {"SELECT @a = EMPID FROM MAS_EMPLOYEE", "@a is not declared"},
        {"SELECT @a + 1", "@a is not declared"},
        {"DECLARE @a INT DECLARE @A INT SET @a = 1", "@A is declared twice"},
        {"dbo.ClassSecurityCloud 1,2,1,", "an argument is missing"},
        {"dbo.ClassSecurity 1,2", "ClassSecurity takes 3 arguments and gets 2"},
        {"Nowhere 1", "there is no procedure Nowhere"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Shapes, ServerCheckTest,
    testing::Values(std::vector<Case>{
        {"SELECT EMPID FROM (SELECT EMPID FROM MAS_EMPLOYEE ORDER BY EMPID) T",
         "ORDER BY stands in an inner query without TOP"},
        {"SELECT EMPID FROM (SELECT TOP 1 EMPID FROM MAS_EMPLOYEE ORDER BY EMPID) T", ""},
        {"CREATE VIEW V AS SELECT EMPID FROM MAS_EMPLOYEE ORDER BY EMPID",
         "ORDER BY stands in an inner query without TOP"},
        {"SELECT 1 FROM (SELECT MAX(EMPID) FROM MAS_EMPLOYEE) T", "a column of T has no name"},
        {"SELECT 1 FROM (SELECT * FROM INS_ADVLOAN A, INS_RECEIPTS B) T", "T has two columns EMPID"},
        {"SELECT 1 WHERE 1 IN (SELECT EMPID, SITYPE FROM INS_ADVLOAN)",
         "an inner query that gives a value has not one column"},
        {"SELECT EMPID, SITYPE FROM INS_ADVLOAN GROUP BY EMPID",
         "SITYPE is neither grouped nor in an aggregate"},
        {"SELECT EMPID, SUM(ACTAMT) FROM INS_ADVLOAN", "EMPID is neither grouped nor in an aggregate"},
        {"SELECT * FROM INS_ADVLOAN GROUP BY EMPID", "* stands beside what is grouped or summed"},
        {"SELECT ISNULL(INTAMT, 0), SUM(ACTAMT) FROM INS_ADVLOAN GROUP BY ISNULL(INTAMT, 0)", ""},
        {"SELECT EMPID FROM INS_ADVLOAN GROUP BY EMPID ORDER BY SITYPE",
         "SITYPE is neither grouped nor in an aggregate"},
        {"SELECT EMPID FROM INS_ADVLOAN GROUP BY EMPID HAVING INTAMT > 0",
         "INTAMT is neither grouped nor in an aggregate"},
        {"SELECT (SELECT E.EMPNAME FROM MAS_EMPLOYEE E WHERE E.EMPID = A.SERIALNO) FROM INS_ADVLOAN A GROUP BY "
         "EMPID",
         "SERIALNO is neither grouped nor in an aggregate"},
        {"SELECT 1 FROM INS_ADVLOAN GROUP BY SUM(ACTAMT)", "an aggregate stands in GROUP BY"},
        {"SELECT 1 FROM INS_ADVLOAN GROUP BY 1", "what is grouped by holds no column"},
        {"SELECT EMPID FROM INS_ADVLOAN WHERE SUM(ACTAMT) > 1", "an aggregate stands in WHERE"},
        {"UPDATE INS_ADVLOAN SET ACTAMT = SUM(INTAMT)", "an aggregate stands in SET"},
        {"SELECT SUM(MAX(ACTAMT)) FROM INS_ADVLOAN", "an aggregate holds an aggregate"},
        {"SELECT SUM((SELECT 1)) FROM INS_ADVLOAN", "an aggregate holds an inner query"},
        {"SELECT DISTINCT EMPID FROM INS_ADVLOAN ORDER BY SITYPE",
         "DISTINCT rows are in an order that is not listed"},
        {"SELECT EMPID FROM INS_ADVLOAN UNION SELECT EMPID, SITYPE FROM INS_OTHER",
         "UNION joins 1 columns with 2"},
        {"SELECT EMPID FROM INS_ADVLOAN UNION SELECT EMPID FROM INS_OTHER ORDER BY SITYPE",
         "the order of a UNION is not one of its columns"},
        {"SELECT EMPID FROM MAS_EMPLOYEE ORDER BY EMPNAME, EMPID, empname DESC",
         "the order names the same twice"},
        {"SELECT EMPID FROM INS_ADVLOAN UNION SELECT EMPID FROM INS_OTHER ORDER BY EMPID, EMPID",
         "the order names the same twice"},
        {"SELECT EMPID FROM MAS_EMPLOYEE ORDER BY 'EMPID'", "a constant stands in ORDER BY"},
        {"SELECT EMPID FROM MAS_EMPLOYEE ORDER BY 2", "the order names a column that is not listed"},
        {"SELECT * FROM MAS_EMPLOYEE ORDER BY 2", ""},
        {"INSERT INTO INS_HLOAN (EMPID, HTYPE) VALUES (1)", "2 columns get 1 values"},
        {"INSERT INTO SEC_EMPLOCK SELECT EMPID, SITYPE FROM INS_ADVLOAN", "3 columns get 2 values"},
        {"DECLARE @a INT SELECT @a = EMPID, SITYPE FROM INS_ADVLOAN",
         "a SELECT that sets a variable also answers rows"},
        {"DROP VIEW QRYMONTH CREATE VIEW V AS SELECT EMPID FROM MAS_EMPLOYEE",
         "CREATE VIEW must be a text of its own"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Values, ServerCheckTest,
    testing::Values(std::vector<Case>{
        {"SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPID", "a value stands where a condition must be"},
        {"SELECT 1 WHERE (EMPID = 1) = 2", "a condition stands where a value must be"},
        {"SELECT CASE WHEN EMPID THEN 1 END FROM MAS_EMPLOYEE", "a value stands where a condition must be"},
        {"SELECT EMPNAME + EMPID FROM MAS_EMPLOYEE", "a text and a number meet in a sum"},
        {"SELECT 'Emp ' + CAST(EMPID AS VARCHAR) FROM MAS_EMPLOYEE", ""},
        {"SELECT CASE WHEN EMPID = 1 THEN EMPID ELSE 'none' END FROM MAS_EMPLOYEE",
         "a text and a number meet in CASE"},
        {"SELECT ISNULL(EMPID, 'none') FROM MAS_EMPLOYEE", "a text and a number meet in ISNULL"},
        {"SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPID IN (1, 'one')",
         "a text and a number meet in a comparison"},
        {"SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPID = '17'", ""},
        {"SELECT EMPID FROM MAS_EMPLOYEE UNION SELECT REFNO FROM MAS_EMPLOYEE",
         "a text and a number meet in UNION"},
        {"SELECT EMPID FROM MAS_EMPLOYEE WHERE REFNO = 17", "a text and a number meet in a comparison"},
        {"SELECT INTID FROM MAS_LOANINT WHERE FINANCIALYEAR = 2010", ""},
        {"SELECT EMPID FROM MAS_EMPLOYEE WHERE DOJ <= '01/05/2010'",
         "a date is in a form of its own in a comparison"},
        {"SELECT EMPID FROM MAS_EMPLOYEE WHERE '2010-31-01' BETWEEN DOJ AND DOL",
         "a date is in a form of its own in a comparison"},
        {"SELECT EMPID FROM MAS_EMPLOYEE WHERE DOJ BETWEEN '01/May/2010' AND '2010/05/31 10:30:00' OR DOL = ''",
         ""},
        {"UPDATE INS_ADVLOAN SET SIDATE = '01-05-2010'", "a date is in a form of its own in what is written"},
        {"INSERT INTO INS_ADVLOAN (EMPID, ACTAMT) VALUES (17, 'much')",
         "a text and a number meet in what is written"},
        {"UPDATE INS_ADVLOAN SET REMARKS = '01-05-2010', ACTAMT = '12.50'", ""},
        {"SELECT EMPNAME - REFNO FROM MAS_EMPLOYEE", "what is no number is reckoned with"},
        {"SELECT DOJ * 2 FROM MAS_EMPLOYEE", "what is no number is reckoned with"},
        {"SELECT -EMPNAME FROM MAS_EMPLOYEE", "what is no number is reckoned with"},
        {"SELECT DOL - DOJ FROM MAS_EMPLOYEE", ""},
        {"SELECT SUM(DOJ) FROM MAS_EMPLOYEE", "a date is summed"},
        {"SELECT CASE WHEN EMPID = 1 THEN NULL ELSE NULL END FROM MAS_EMPLOYEE",
         "a CASE gives nothing but NULL"},
        {"SELECT SUM(EMPNAME) FROM MAS_EMPLOYEE", "a text is summed"},
        {"SELECT ACTAMT % 12 FROM INS_ADVLOAN", "a remainder is taken of an amount"},
        {"SELECT EMPID COLLATE SQL_Latin1_General_CP1_CI_AS FROM MAS_EMPLOYEE",
         "COLLATE follows what is no text"},
        {"SELECT SUBSTRING(EMPID, 1, 2) FROM MAS_EMPLOYEE", "SUBSTRING takes no number"},
        {"SELECT CAST(EMPID AS NUMBER) FROM MAS_EMPLOYEE", "the type NUMBER is unknown"},
        {"SELECT ROW_NUMBER() FROM MAS_EMPLOYEE", "ROW_NUMBER and OVER do not go together"},
        {"SELECT ISNULL(EMPID) FROM MAS_EMPLOYEE", "ISNULL gets 1 arguments"},
    }));

TEST(ServerCheckTexts, NamesAreNoLongerThanTheServerTakes) {
  const std::string name(128, 'x');
  EXPECT_EQ(FaultOf("SELECT EMPID [" + name + "] FROM MAS_EMPLOYEE"), "");
  EXPECT_EQ(FaultOf("SELECT EMPID [" + name + "x] FROM MAS_EMPLOYEE"),
            "a name is longer than 128 characters");
}

TEST(ServerCheckTexts, EveryStatementOfTheProgramIsTaken) {
  ServerCheck check(ServerColumns);
  for (const auto& said : test::EverythingSaid()) {
    if (said.sql.find("ITSETTING") != said.sql.npos) continue;  // of the local store
    for (const auto& fault : check.Faults(said.sql)) ADD_FAILURE() << said.id << ": " << fault;
  }
}

}  // namespace
}  // namespace ktl::tsql
