#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "database/recordset.h"
#include "failure.h"
#include "support/company_fixture.h"

// What runs as one: batches of statements, transactions, two programs that write in turn.

namespace ktl::test {
namespace {

TEST(Batches, CountTheRowsThatTheyChangeOrRead) {
  TestCompany company;
  for (int employee = 1; employee <= 4; ++employee) company.Employee(employee);
  const std::pair<const char*, std::int64_t> table[] = {
      {"UPDATE MAS_EMPLOYEE SET EMPNAME = 'a' WHERE EMPID < 3", 2},
      {"UPDATE MAS_EMPLOYEE SET EMPNAME = 'a' WHERE EMPID = 9", 0},
      {"DELETE FROM MAS_EMPLOYEE WHERE EMPID = 4 UPDATE MAS_EMPLOYEE SET EMPNAME = 'b'", 4},
      {"SELECT EMPID FROM MAS_EMPLOYEE", 3},
      {"INSERT INTO MAS_EMPLOYEE (EMPID, EMPNAME) VALUES (5, 'c'), (6, 'd')", 2},
      {"INSERT INTO INS_MASTER (SITYPE, SINAME) SELECT 1, EMPNAME FROM MAS_EMPLOYEE WHERE EMPID > 4", 2},
      {"IF EXISTS (SELECT * FROM MAS_EMPLOYEE WHERE EMPID = 6) DELETE FROM MAS_EMPLOYEE WHERE EMPID > 4", 2},
      {"IF 1 = 2 DELETE FROM MAS_EMPLOYEE ELSE UPDATE MAS_EMPLOYEE SET EMPNAME = 'e' WHERE EMPID = 1", 1},
      {"DROP TABLE IF EXISTS #KEPT SELECT EMPID INTO #KEPT FROM MAS_EMPLOYEE INSERT INTO #KEPT (EMPID) VALUES (9)",
       1},
      {"DROP TABLE IF EXISTS #KEPT SELECT EMPID INTO #KEPT FROM MAS_EMPLOYEE WHERE EMPID = 1", 0},
      {"UPDATE MAS_EMPLOYEE SET EMPNAME = 'e' WHERE EMPID IN (SELECT EMPID FROM #KEPT)", 1},
      {"DECLARE @n INT SET @n = 2 DELETE FROM MAS_EMPLOYEE WHERE EMPID = @n", 1},
  };
  for (const auto& [sql, rows] : table) EXPECT_EQ(company.Execute(sql), rows) << sql;
  EXPECT_EQ(company.Rows("SELECT EMPID, EMPNAME FROM MAS_EMPLOYEE ORDER BY EMPID"), "1|e\n3|b");
  Connection other;  // what begins with "#" is the connection's own
  other.Open(company.ConnectionString());
  EXPECT_THROW(other.Execute("SELECT * FROM #KEPT"), DatabaseError);
}

TEST(Batches, AnswerWithTheRowsOfTheirFirstQuery) {
  TestCompany company;
  company.Employee(7);
  EXPECT_EQ(company.Rows("UPDATE MAS_EMPLOYEE SET EMPNAME = 'x' SELECT EMPNAME FROM MAS_EMPLOYEE SELECT 2"),
            "x");
  EXPECT_EQ(company.Rows("IF 1 = 1 SELECT 1 ELSE SELECT 2"), "1");
  EXPECT_EQ(company.Rows("UPDATE MAS_EMPLOYEE SET EMPNAME = 'y'"), "");
  // A batch that fails half-way has done its first half, as on the server without a transaction.
  EXPECT_THROW(company.Execute("UPDATE MAS_EMPLOYEE SET EMPNAME = 'z' DELETE FROM NOWHERE"), DatabaseError);
  EXPECT_EQ(company.Rows("SELECT EMPNAME FROM MAS_EMPLOYEE"), "z");
}

TEST(Transactions, EndOnceHoweverTheyEnd) {
  TestCompany company;
  Connection& cn = company.Cn();
  const auto people = [&] { return company.Rows("SELECT COUNT(*) FROM MAS_EMPLOYEE"); };
  {
    Transaction taken(cn);
    company.Employee(1);
    taken.Rollback();
    EXPECT_FALSE(cn.InTransaction());
    company.Employee(2);  // outside of it
  }
  EXPECT_EQ(people(), "1");
  EXPECT_THROW(
      {
        Transaction failing(cn);
        company.Employee(3);
        company.Employee(3);
      },
      DatabaseError);
  EXPECT_FALSE(cn.InTransaction());
  EXPECT_EQ(people(), "1");
  {
    Transaction lost(cn);
    company.Employee(4);
    cn.Close();  // what was not committed goes with the connection
  }
  cn.Open(company.ConnectionString());
  EXPECT_EQ(people(), "1");
  EXPECT_THROW(cn.RollbackTrans(), DatabaseError);
}

TEST(Transactions, AWriterWaitsForTheOtherOne) {
  TestCompany company;
  company.Employee(1);
  company.Cn().BeginTrans();
  company.Execute("UPDATE MAS_EMPLOYEE SET EMPNAME = 'first'");
  std::thread writer([&] {
    Connection other;
    other.SetCommandTimeout(20);
    other.Open(company.ConnectionString());
    other.Execute("UPDATE MAS_EMPLOYEE SET EMPNAME = EMPNAME + ', second'");
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  company.Cn().CommitTrans();
  writer.join();
  EXPECT_EQ(company.Rows("SELECT EMPNAME FROM MAS_EMPLOYEE"), "first, second");
}

}  // namespace
}  // namespace ktl::test
