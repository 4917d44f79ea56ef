#pragma once

#include "frame/options.h"
#include "premium/modInsGInsSSS.h"
#include "support/workstation.h"

namespace ktl {

using enum InstructionType;

// The premium screen on a company with two employees: 17 in service since 15/Jun/2024, 18 left on
// 31/Aug/2026. The months are Apr/2024 (24292) to Mar/2027 (24327); none is locked.
class PremiumScreen : public WorkstationTest {
 protected:
  PremiumScreen() {
    MakeLocalStore();
    company.Months(24292, 24327);
    company.Employee(17).Named("Asha Rao").Ref("K17").Joined("15/Jun/2024").Taxed().With("PFYN", 1);
    company.Employee(18).Named("Binod Sen").Ref("K18").Joined("01/Apr/2010").Left("31/Aug/2026");
    company.Name(3, "Life Cover");
    company.Name(4, "SSS Deposit");
    company.Name(5, "Group Cover");
    company.Name(7, "Diwali Incentive");
    company.Institution(4, "Sahyadri Life", 3);
    company.Institution(7, "Post Savings", 4);
    company.Institution(8, "Deccan General", 5);
    LoadCaptions(session);
  }

  std::string Schedule() {
    return Rows("SELECT MONTHYEAR, COUNTER, EMIAMT, MDFYAMT, INSTID FROM INS_EMIDETAIL ORDER BY MONTHYEAR");
  }
  std::string Audits() {
    return Rows("SELECT MENUNO, EMPID, ACTIONTEXT, DETAILTEXT FROM SEC_AUDITTRAIL ORDER BY AUDITID");
  }
  modInsGInsSSS& Open(InstructionType type) {
    screen = &Workstation::Open<modInsGInsSSS>(type);
    return *screen;
  }
  modInsGInsSSS& OpenOn(InstructionType type, const char* employee = "Asha Rao") {
    Open(type);
    Pick(screen->employee.cmbEmpName, employee);
    return *screen;
  }
  // All that a save asks for.
  modInsGInsSSS& Enter(InstructionType type, const char* from, const char* to, const char* amount) {
    OpenOn(type);
    EnterInto(*screen, from, to, amount);
    return *screen;
  }
  static void EnterInto(modInsGInsSSS& entry, const char* from, const char* to, const char* amount) {
    entry.cmbPolicyName.ChooseRow(0);
    if (entry.txtPolicyNo.visible) Type(entry.txtPolicyNo, "P/1");
    if (entry.cmbInstitution.visible) entry.cmbInstitution.ChooseRow(0);
    Type(entry.txtStartMonth, from);
    Type(entry.txtEndMonth, to);
    Type(entry.txtPolicyAmount, amount);
  }
  // An instruction of 17 from Apr/2026 on, a month after the other, of 500 each.
  void Stored(InstructionType type, long serial, int months) {
    const int number = NumberOf(type);
    company.Row("INS_OTHER")
        .With("EMPID", 17)
        .With("SERIALNO", serial)
        .With("SITYPE", number)
        .With("OTHNAME",
              session.data.Text(session.Sql("Select SINAME From INS_MASTER Where SITYPE = {}", type)))
        .With("OTHNO", "P/" + std::to_string(serial))
        .With("STARTMY", 24316)
        .With("ENDMY", 24316 + months - 1);
    for (int month = 0; month < months; ++month) {
      company.Emi(17, number, static_cast<int>(serial), month + 1, 24316 + month, 500)
          .With("INSTID", type == Insurance        ? 4
                          : type == Sss            ? 7
                          : type == GroupInsurance ? 8
                                                   : 0);
    }
  }
  // And its list's first line clicked.
  modInsGInsSSS& OpenOnFirst(InstructionType type) {
    OpenOn(type);
    ClickRow(screen->fpgOtherDetail, 0);
    return *screen;
  }
  void TickMonths(std::initializer_list<std::size_t> lines) {
    for (const std::size_t line : lines) TickCell(screen->fpgEMI, line, PremiumScheduleGrid::kTick, true);
  }

  modInsGInsSSS* screen = nullptr;
};

}  // namespace ktl
