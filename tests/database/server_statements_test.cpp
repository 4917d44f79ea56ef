#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <set>

#include "company/company.h"
#include "company/table_catalogue.h"
#include "database/furnished.h"
#include "database/said.h"
#include "support/server_company.h"
#include "support/temporary_folder.h"

// What a server answers and what it leaves behind, beside the embedded company with the same rows.

namespace ktl::test {
namespace {

using Lines = std::vector<std::string>;

// Numbers to fifteen digits: sums may be added up in another order.
Lines Answer(Connection& cn, const std::string& sql) {
  Lines lines;
  for (const auto& row : cn.Query(sql).rows) {
    std::string line;
    for (const auto& value : row)
      line += value.IsNull() ? "NULL|"
                             : (value.IsText()   ? "'"
                                : value.IsDate() ? "@"
                                                 : "") +
                                   value.ToText() + "|";
    lines.push_back(line);
  }
  return lines;
}

Lines Sorted(Lines lines) {
  std::ranges::sort(lines);
  return lines;
}

// Rows in an order that nobody asked for are put into one.
Lines InOrder(std::string_view sql, Lines lines) {
  return sql.find(" ORDER BY ") == sql.npos ? Sorted(std::move(lines)) : lines;
}

// How many rows a change found, and what then stands in the tables that its text names.
Lines Trace(Connection& cn, const std::string& sql) {
  cn.BeginTrans();
  Lines lines{std::to_string(cn.Execute(sql))};
  for (const auto& table : TableCatalogue())
    if (sql.find(table.name) != sql.npos || table.name == "SEC_AUDITTRAIL" ||
        table.name == "SEC_MONTHLOCKHISTORY")
      for (const auto& line : Sorted(Answer(cn, "SELECT * FROM " + table.name)))
        lines.push_back(table.name + ": " + line);
  cn.RollbackTrans();
  return lines;
}

Lines Do(Connection& cn, const Said& said, const std::string& sql) {
  try {
    if (said.mode == "exists") return {cn.HasRows(sql) ? "1" : "0"};
    return said.mode == "val" || said.mode == "rs" || said.mode == "upd" ? Answer(cn, sql) : Trace(cn, sql);
  } catch (const DatabaseError&) {
    if (cn.InTransaction()) cn.RollbackTrans();
    return {"fails"};
  }
}

void ExpectSame(const Lines& embedded, const Lines& server, const std::string& what) {
  const auto [left, right] = std::ranges::mismatch(embedded, server);
  EXPECT_TRUE(embedded == server) << what << "\nembedded: " << (left == embedded.end() ? "nothing" : *left)
                                  << "\nserver:   " << (right == server.end() ? "nothing" : *right);
}

// Answers how many statements had something to answer or to change.
int CompareEverythingSaid(Connection& embedded, Connection& server,
                          const std::function<std::string(std::string)>& about) {
  // Those of other databases, and what makes objects, which nothing rolls back.
  const std::set<std::string> apart{"session-2", "session-3", "session-4",
                                    "session-8", "session-9", "allotment-3"};
  int told = 0;
  for (const auto& said : EverythingSaid()) {
    if (apart.contains(said.id)) continue;
    const std::string sql = about(said.sql);
    const Lines expected = Do(embedded, said, sql), answered = Do(server, said, sql);
    told += !expected.empty() && expected.front() != "0" && expected.front() != "fails";
    // Loans of one employee and day stand in any order in the bulk list.
    const std::string_view order = said.id == "bulk-4" ? "" : std::string_view(sql);
    ExpectSame(InOrder(order, expected), InOrder(order, answered), said.id + ": " + sql);
  }
  return told;
}

TEST(ServerStatements, AnswerAndLeaveWhatTheEmbeddedOnesDo) {
  KTL_NEEDS_SERVER();
  TestCompany company;
  Furnish(company);
  FurnishAttendance(company);
  ServerCompany server(company.Cn());
  server.Cn().Execute("dbo.ClassSecurity 0,0,0");
  EXPECT_GT(CompareEverythingSaid(company.Cn(), server.Cn(), [](std::string sql) { return sql; }), 200);
  for (Connection* cn : {&company.Cn(), &server.Cn()})
    for (const char* id : {"session-2", "session-3", "session-4", "session-2", "session-3", "session-4"})
      cn->Execute(SaidAs(id).sql);
  for (const std::string& sql :
       {SaidAs("allotment-3").sql, std::string("SELECT * FROM [vw_MAS_EMPLOYEEPC1]")})
    ExpectSame(Answer(company.Cn(), sql), Answer(server.Cn(), sql), sql);
}

// Procedures, functions, trigger and catalogue, said one after the other on both.
TEST(ServerStatements, FindTheSameObjectsOnTheServer) {
  KTL_NEEDS_SERVER();
  TestCompany company;
  Furnish(company);
  ServerCompany server(company.Cn());
  const std::string locks =
      "SELECT dbo.udf_getEmpLock(17,24120,24121), dbo.udf_getEmpLock(17,24121,DEFAULT), "
      "dbo.udf_getEmpLock(17,24122,36000), dbo.udf_getEmpLock(17,0,24132), "
      "dbo.udf_getEmpLock(17,24120,0), dbo.udf_getEmpLock(18,24121,24121)";
  for (const std::string& sql : {
           std::string("dbo.ClassSecurity 0,0,0"),
           std::string("SELECT EMPID FROM [TMPPC1]"),
           std::string("INSERT INTO SEC_CLASSEMP (USERNAME, EMPID) VALUES ('admin', 17), ('Ravi', 18)"),
           std::string("dbo.ClassSecurity 1,24132,1"),
           std::string("SELECT EMPID FROM [tmpPC1]"),
           std::string("dbo.ClassSecurityCloud 1,24132,1,RAVI"),
           std::string("SELECT EMPID FROM [TMPPC1RAVI]"),
           std::string("INSERT INTO SEC_EMPLOCK (EMPID, MONTHYEAR) VALUES (17, 24121)"),
           locks,
           std::string("UPDATE MAS_OPTSETFEATURE SET EMPLOCKYN = 1"),
           locks,
           std::string("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1 WHERE MONTHYEAR <= 24122"),
           std::string("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1, ATTLOCKYN = 1 WHERE MONTHYEAR <= 24123"),
           std::string("SELECT * FROM SEC_MONTHLOCKHISTORY"),
           std::string("UpdateAuditTrail 'O''Brien', 5, 0, 'changed', 'a::b', '' , 'ZOË'"),
           std::string("SELECT * FROM SEC_AUDITTRAIL"),
           std::string("SELECT HOST_NAME(), GETDATE()"),
           std::string("SELECT MONTHNAME, [dbo].FnStrMonthName(MONTHYEAR) FROM QryMonth"),
           std::string(
               "SELECT SC.NAME FROM SYS.TABLES ST, SYS.COLUMNS SC WHERE ST.OBJECT_ID = SC.OBJECT_ID AND "
               "ST.NAME = 'ins_master'"),
       })
    ExpectSame(Sorted(Answer(company.Cn(), sql)), Sorted(Answer(server.Cn(), sql)), sql);
  // Filling the table of a session commits nothing.
  server.Cn().BeginTrans();
  server.Cn().Execute("DELETE FROM INS_ADVLOAN");
  server.Cn().Execute("dbo.ClassSecurityCloud 0,0,0,NEW");
  server.Cn().RollbackTrans();
  EXPECT_TRUE(server.Cn().HasRows("SELECT * FROM INS_ADVLOAN"));
}

// The catalogue speaks of 2010 and of one loan; so it does of a year and a loan that the sample has.
std::string AboutTheSample(std::string sql) {
  sql = ReplaceAll(ReplaceAll(sql, "Car Loan", "House Building Loan"), "SERIALNO = 3", "SERIALNO = 1");
  std::string about;
  for (std::size_t i = 0, end = 0; i < sql.size(); i = end) {
    const std::size_t begin = std::min(sql.find_first_of("0123456789", i), sql.size());
    about.append(sql, i, begin - i);
    end = std::min(sql.find_first_not_of("0123456789", begin), sql.size());
    const std::string digits = sql.substr(begin, end - begin);
    const int number = digits.empty() || digits.size() > 5 ? 0 : std::stoi(digits);
    const int shift = number >= 24100 && number < 24200 ? 180 : number >= 2009 && number <= 2011 ? 15 : 0;
    about += number == 17 ? "5" : shift == 0 ? digits : std::to_string(number + shift);
  }
  return about;
}

TEST(ServerStatements, AnswerTheSameOfASample) {
  KTL_NEEDS_SERVER();
  TemporaryFolder folder;
  CompanyOptions options;
  options.file = folder.path() / "sample.kldb";
  CreateCompany(options);
  Connection embedded;
  embedded.SetClient({"PC1", "ADMIN", [] { return *Date::FromYmd(2025, 1, 15, 10, 30, 0); }});
  embedded.Open("Provider=SQLite;Data Source=" + options.file.string() + ";");
  ServerCompany server(embedded);
  for (Connection* cn : {&embedded, &server.Cn()}) cn->Execute("dbo.ClassSecurity 0,0,0");
  EXPECT_GT(CompareEverythingSaid(embedded, server.Cn(), AboutTheSample), 230);
}

// Values as people type them and as they never would, for the rules of the language itself.
class ManyValues {
 public:
  std::string Text(std::initializer_list<const char*> parts) {
    std::string text;
    for (int count = Below(5); count > 0; --count)
      text += *(parts.begin() + Below(static_cast<int>(parts.size())));
    return text;
  }
  double Amount() {
    const double kinds[] = {Below(2000) / 8.0,
                            Below(100000) / 1000.0,
                            Below(1000) + 0.005,
                            Below(20) + 0.5,
                            1e15 + Below(9),
                            Below(9) * 1e-7,
                            2.675,
                            123456789.125};
    return kinds[Below(8)] * (Below(2) == 0 ? -1 : 1);
  }
  int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

 private:
  std::minstd_rand random_{7};
};

void AddManyValues(TestCompany& company) {
  ManyValues many;
  for (int i = 1; i <= 150; ++i) {
    const Value none = Null{};
    const Date day =
        Date::FromYmd(1990 + many.Below(40), 1 + many.Below(12), 1 + many.Below(28))->AddDays(many.Below(5));
    const auto text = [&] {
      return many.Text(
          {"a", "A", "b", "é", "É", "e", " ", "-", "%", "_", "[", "]", "1", "10", "\\", "'", "क", "", "ß"});
    };
    company.Employee(i)
        .Named(text().c_str())
        .With("REFNO", many.Below(9) == 0 ? none : Value(text()))
        .With("SEX", many.Text({"Asha", "asha", "B", "b", " ", "2", "10", "Zoe", "zoe "}))
        .With("DOJ", day)
        .With("DOL", many.Below(2) == 0 ? none : Value(day.AddDays(many.Below(900))));
    company.Row("INS_RECEIPTS")
        .With("EMPID", i)
        .With("SERIALNO", many.Below(40) - 20)
        .With("SITYPE", many.Below(4))
        .With("COUNTER", i)
        .With("RCPTAMT", many.Below(9) == 0 ? none : Value(many.Amount()))
        .With("RCPTINTAMT", many.Amount());
    company.Row("MAS_LOANINT")
        .With("INTID", i)
        .With("FINANCIALYEAR", many.Text({"2010", "2010 ", "0", "x", ""}));
  }
}

TEST(ServerStatements, FollowTheRulesOfTheLanguage) {
  KTL_NEEDS_SERVER();
  TestCompany company;
  AddManyValues(company);
  ServerCompany server(company.Cn());
  for (
      const char* sql : {
          // Texts: letter case, trailing blanks, accents, empty ones, order.
          "SELECT A.EMPID, B.EMPID FROM MAS_EMPLOYEE A, MAS_EMPLOYEE B WHERE A.EMPNAME = B.REFNO",
          "SELECT A.EMPID, B.EMPID FROM MAS_EMPLOYEE A, MAS_EMPLOYEE B WHERE UPPER(A.EMPNAME) <> LOWER(B.REFNO)",
          "SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPNAME IN ('A', 'é ', '') OR REFNO COLLATE SQL_Latin1_General_CP1_CI_AS = 'E'",
          "SELECT MIN(EMPID), COUNT(*) FROM MAS_EMPLOYEE GROUP BY EMPNAME",
          "SELECT COUNT(DISTINCT EMPNAME), COUNT(DISTINCT REFNO + SEX) FROM MAS_EMPLOYEE",
          "SELECT EMPID, SEX FROM MAS_EMPLOYEE ORDER BY SEX, EMPID",
          "SELECT EMPID FROM MAS_EMPLOYEE WHERE SEX > 'asha' AND SEX BETWEEN '1' AND 'B'",
          "SELECT EMPID, CASE EMPNAME WHEN REFNO THEN 1 WHEN 'A' THEN 2 END, NULLIF(EMPNAME, REFNO), EMPNAME + REFNO FROM MAS_EMPLOYEE",
          "SELECT EMPID, LEN(EMPNAME), LEFT(EMPNAME, 2), RIGHT(EMPNAME, 2), LTRIM(EMPNAME), RTRIM(EMPNAME), UPPER(EMPNAME), "
          "LOWER(EMPNAME), ISNULL(REFNO, '') FROM MAS_EMPLOYEE",
          "SELECT EMPID, SUBSTRING(EMPNAME, EMPID % 5 - 1, EMPID % 4), CAST(EMPNAME AS VARCHAR(2)) FROM MAS_EMPLOYEE",
          "SELECT EMPID, CHARINDEX(REFNO, EMPNAME), CHARINDEX('A', EMPNAME, 2), CHARINDEX(' ', EMPNAME), CHARINDEX('1', UPPER(EMPID)) "
          "FROM MAS_EMPLOYEE",
          "SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPNAME LIKE '%a%' AND EMPNAME NOT LIKE '_'",
          "SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPNAME LIKE '[a-c]%' OR EMPNAME LIKE '%[^a1 ]'",
          "SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPNAME LIKE '%[%]%' OR REFNO LIKE '%[_]%' OR REFNO LIKE 'a[[]%'",
          "SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPNAME LIKE 'é%' OR EMPNAME LIKE '% ' OR REFNO LIKE '%\\%' OR REFNO LIKE '%!_%' ESCAPE '!'",
          "SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPID LIKE '1_' OR EMPNAME LIKE ''",
          "SELECT INTID FROM MAS_LOANINT WHERE FINANCIALYEAR = 2010 OR FINANCIALYEAR IN (0, 20102010)",
          // Numbers: rounding, whole ones, nulls.
          "SELECT EMPID, ROUND(RCPTAMT, 2), ROUND(RCPTAMT, 0), ROUND(RCPTINTAMT, 3), ROUND(SERIALNO, 2) FROM INS_RECEIPTS",
          "SELECT EMPID, CAST(RCPTAMT AS INT), CAST(RCPTAMT AS MONEY), CONVERT(NUMERIC, RCPTINTAMT) / 2, FLOOR(RCPTAMT), CEILING(RCPTAMT), "
          "ABS(RCPTINTAMT) FROM INS_RECEIPTS",
          "SELECT EMPID, SERIALNO / 7, SERIALNO % 7, -SERIALNO / 7, SERIALNO / 2.0, SERIALNO / NULLIF(SITYPE, 0), SERIALNO / 0 FROM INS_RECEIPTS",
          "SELECT EMPID, RCPTAMT / 3, RCPTAMT * 0.095 / 12, RCPTAMT + RCPTINTAMT, 50 / 100, 50.00 / 100, STR(RCPTINTAMT), "
          "CAST(SERIALNO AS VARCHAR) + '/' FROM INS_RECEIPTS",
          "SELECT SITYPE, SUM(SERIALNO), MAX(RCPTAMT), MIN(RCPTAMT), COUNT(RCPTAMT), SUM(SERIALNO) / 4 FROM INS_RECEIPTS GROUP BY SITYPE",
          "SELECT EMPID FROM INS_RECEIPTS WHERE RCPTAMT <> RCPTINTAMT AND ISNULL(RCPTAMT, 0) < 2.675 AND RCPTAMT NOT IN (2.5, NULL)",
          "SELECT EMPID FROM INS_RECEIPTS WHERE NOT RCPTAMT IS NULL AND SERIALNO NOT IN (SELECT SITYPE FROM INS_RECEIPTS)",
          "SELECT SUM(RCPTAMT), MAX(EMPID) FROM INS_RECEIPTS WHERE EMPID < 0",
          // Dates.
          "SELECT EMPID, YEAR(DOJ) * 12 + MONTH(DOJ), DAY(DOL), DATEDIFF(DAY, DOJ, DOL), DATEDIFF(MONTH, DOJ, DOL), "
          "DATEDIFF(YEAR, DOJ, '01/May/2010'), ISNULL(DOL, '31/Dec/2099') FROM MAS_EMPLOYEE",
          "SELECT EMPID, DOJ FROM MAS_EMPLOYEE WHERE DOJ BETWEEN '01/Apr/1995' AND '2010-06-30' AND ISNULL(DOL, '2099/12/31') > '1/2/2000'",
          "SELECT MAX(DOL), MIN(DOJ), COUNT(DOL) FROM MAS_EMPLOYEE WHERE DOL IS NOT NULL",
      })
    ExpectSame(InOrder(sql, Answer(company.Cn(), sql)), InOrder(sql, Answer(server.Cn(), sql)), sql);
}

}  // namespace
}  // namespace ktl::test
