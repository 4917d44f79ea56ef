#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "frame/options.h"
#include "frame/session.h"
#include "runtime/numbers.h"
#include "screen/person.h"
#include "screen/screen.h"
#include "start/connect.h"
#include "start/startup.h"
#include "support/company_fixture.h"
#include "support/fake_machine.h"
#include "support/scripted_desk.h"

namespace ktl {

using Texts = std::vector<std::string>;

inline constexpr int kApr2026 = 24316;
inline constexpr const char* kGone =
    "Row cannot be located for updating. Some values may have been changed since it was last read.";

// A company of the years from Apr/2025 to Mar/2027. The rate of 2026 is 9 in a hundred, of "Own Loan" 12:
// 0.75 and 1 a month. 2025 has none.
class BenefitTest : public testing::Test {
 protected:
  BenefitTest() {
    machine.settings.Set("Settings", "DBType", "SQL");
    machine.settings.Set("Settings", "User", "RAVI");
    company.Months(kApr2026 - 12, kApr2026 + 11);
    company.Name(2, "Vehicle Loan").SeparateInterest().Benefit();
    company.Name(2, "Own Loan").SeparateInterest().Benefit();
    company.Name(1, "Welfare").SeparateInterest().Benefit();
    company.Name(2, "Plain Loan").SeparateInterest();
    company.Execute("UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 1, INTFRLNRULE = NULL");
    Rate(1, "2026", 9);
    Rate(2, "2026", 12, "Owned", "#$#Own Loan#$##$#Gone Loan#$#");
    OpenConnection(session, company.ConnectionString());
    LoadOptionSet(session);
    session.hostName = "PC1";
    RegisterScreens(session);
  }

  void Rate(int id, const char* year, double rate, const char* remarks = "", const char* names = "") {
    company.Row("MAS_LOANINT")
        .With("INTID", id)
        .With("FINANCIALYEAR", year)
        .With("INTEREST", rate)
        .With("LOANTYPE", remarks)
        .With("LOANNAME", names);
  }
  void Employee(int employee, bool taxed = true) {
    company.Employee(employee)
        .Named(fmt::format("Person {}", employee).c_str())
        .Ref(fmt::format("R{}", employee).c_str())
        .Taxed(taxed);
    for (const int year : {2026, 2027}) {
      const int assessment = employee * 10 + year - 2020;
      company.Row("COM_CLIENTDET")
          .With("ASSTRANID", assessment)
          .With("CLIENTID", employee)
          .With("ASSYEAR", year);
      company.Row("INC_MAIN").With("ASSTRANID", assessment).With("BENAMT", 5).With("BENAMT2", 7);
    }
  }
  // A month a principal, from Apr/2026 unless said; interest of nothing.
  void Loan(int employee, const std::vector<double>& principals, const char* name = "Vehicle Loan",
            int serial = 1, int first = kApr2026) {
    const int type = std::string(name) == "Welfare" ? 1 : 2;
    if (type == 1)
      company.Advance(employee, serial, name, 1000);
    else
      company.Loan(employee, serial, name, 1000);
    for (int month = 0; month < static_cast<int>(principals.size()); ++month) {
      const double principal = principals[static_cast<std::size_t>(month)];
      company.Emi(employee, type, serial, month + 1, first + month, principal)
          .With("MDFPRNAMT", principal)
          .With("MDFINTAMT", 0);
    }
  }
  void Charge(int employee, const std::string& months, double interest) {
    company.Execute(fmt::format("UPDATE INS_EMIDETAIL SET MDFINTAMT = {} WHERE EMPID = {} AND MONTHYEAR {}",
                                interest, employee, months));
  }
  // The stored benefits, an employee a line: opening, principal, interest, benchmark, edited, original.
  std::string Stored(const std::string& condition = "FINANCIALYEAR = '2026'") {
    return company.Rows(
        "SELECT EMPID, OPBAL, MDFYPRNAMT, MDFYINTAMT, SBIINT, EDITEDINT, ORIGINALINT FROM MAS_LOANINTUPDATE "
        "WHERE " +
        condition + " ORDER BY EMPID");
  }
  std::string LastAudit() {
    return company.Rows(
        "SELECT TOP 1 MENUNO, EMPID, ACTIONTEXT, DETAILTEXT FROM SEC_AUDITTRAIL ORDER BY AUDITID DESC");
  }
  template <typename ScreenType, typename... Arguments>
  ScreenType& Open(const Arguments&... arguments) {
    auto opened = std::make_unique<ScreenType>(session, arguments...);
    ScreenType& result = *opened;
    screen = std::move(opened);
    RunAndGrantFocus(*screen, [this] { screen->Load(); });
    return result;
  }
  // The texts of a grid, cells with "|" between them, a row an element.
  static Texts Lines(const Grid& grid, std::size_t from = 0) {
    Texts lines;
    for (const GridRow& row : grid.rows) {
      std::string line;
      for (std::size_t column = from; column < row.cells.size(); ++column)
        line += (column == from ? "" : "|") + row.cells[column].text;
      lines.push_back(line);
    }
    return lines;
  }

  test::TestCompany company;
  FakeMachine machine;
  struct : ScriptedDesk {
    int saved = 0;
    void NoteSaved() override { ++saved; }
  } desk;
  Session session{machine.machine(), desk};
  std::unique_ptr<Screen> screen;
};

}  // namespace ktl
