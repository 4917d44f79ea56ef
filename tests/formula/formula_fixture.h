#pragma once

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "common/month_year.h"
#include "formula/clsEvalFormula.h"
#include "frame/options.h"
#include "frame/session.h"
#include "support/company_fixture.h"
#include "support/fake_machine.h"
#include "support/scripted_desk.h"

namespace ktl::test {

// A session on a company's file.
class Office {
 public:
  explicit Office(const std::string& connectionString) : session(machine.machine(), desk) {
    session.Cn.Open(connectionString);
    session.hostName = "PC1";
    LoadCaptions(session);
    LoadOptionSet(session);
  }

  FakeMachine machine;
  ScriptedDesk desk;
  Session session;
};

inline Date Day(const char* text) { return *ParseDate(text); }
inline long Month(const char* text) { return clsDateHandle::FnLngFindMonthValue(text); }
inline DayRange MonthOf(const char* text) {
  const Date first = Day((std::string("01/") + text).c_str());
  return {first, first.AddMonths(1).AddDays(-1)};
}

// Before the rows of weekly days off by date, and of leave by date.
inline constexpr const char* kRotation =
    "INSERT INTO ATT_WKLYROT (EMPID, ATTHEADID, WEEKDATE, FIRSTHALFYN, SECONDHALFYN) VALUES ";
inline constexpr const char* kLeave =
    "INSERT INTO ATT_DETAIL (EMPID, LEVDATE, LEVID, FIRSTHALFYN, SECONDHALFYN) VALUES ";

// Employee 17 with detail row 5 on head 1 of branch 1. The first of April 2010 is a Thursday, so that the
// Sundays are the 4th, 11th, 18th and 25th and the Saturdays the days before them.
class DayTest : public testing::Test {
 protected:
  DayTest() {
    company.Employee(17).Named("Meera Rao").Joined("01/Jun/2005").With("SALCALCFROM", "01/Apr/2008");
    company.Execute(
        "INSERT INTO MAS_EMPLOYEEDET (EMPDETID, EMPID, EFFFROMDATE, BRANCHID, ATTHEADID, STRUCTID) "
        "VALUES (5, 17, '01/Apr/2008', 1, 1, 1)");
    company.Execute(
        "INSERT INTO MAS_ATTHEAD (ATTHEADID, ATTHEADNAME, ATTNTIGHTYN, ATTNTYPE, NODFORCALC) "
        "VALUES (1, 'General', 1, 2, 2)");
    company.Execute(
        "INSERT INTO ATT_DEFINITION (LEVID, LEVSHORT, LEAVEYN, AFFECTSALARYYN) VALUES "
        "(1, 'LOP', 1, 1), (2, 'TR', 1, 0), (3, 'OD', 1, 0), (4, 'CL', 1, 0), (7, 'ML', 1, 1), "
        "(8, 'WFH', 0, 0)");
  }

  // Statements without a result, with ";" after each but the last.
  void Run(const std::string& statements) {
    for (const auto& statement : Split(statements, ";"))
      if (!Trim(statement).empty()) company.Execute(statement);
  }

  TestCompany company;
};

}  // namespace ktl::test
