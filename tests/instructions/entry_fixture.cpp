#include "entry_fixture.h"

namespace ktl {

EntryScreen::EntryScreen() {
  company.Months(24292, 24327);
  company.Employee(17).Named("Asha Rao").Ref("K17").Joined("01/Apr/2010").Taxed();
  company.Employee(18).Named("Binod Sen").Ref("K18").Joined("01/Apr/2010").Left("31/Aug/2026");
  company.Name(1, "Salary Advance");
  company.Name(1, "Medical Advance").Reducing(1);
  company.Name(1, "Festival Advance").With("INTRRATE", 5.0).With("EMIRECCNT", 6).With("ALLOWLIMIT", 1);
  company.Name(1, "Welfare Advance").SeparateInterest();
  company.Name(2, "Car Loan").With("TDSYN", 1);
  company.Institution(5, "Deccan Bank", 2);
  company.Institution(6, "Kaveri Finance", 2);
}

std::string EntryScreen::Schedule(long serial) {
  return Rows(
      "SELECT MONTHYEAR, COUNTER, EMIAMT, MDFYAMT FROM INS_EMIDETAIL WHERE EMPID = 17 AND SERIALNO = " +
      std::to_string(serial) + " ORDER BY MONTHYEAR");
}

modAdvLoan& EntryScreen::Open(InstructionType type) {
  screen = &Workstation::Open<modAdvLoan>(type);
  return *screen;
}

modAdvLoan& EntryScreen::OpenOn(InstructionType type, const char* employee) {
  Open(type);
  Pick(screen->employee.cmbEmpName, employee);
  return *screen;
}

modAdvLoan& EntryScreen::OpenOnFirst(InstructionType type) {
  OpenOn(type);
  ClickRow(screen->fpgAdvLoan, 0);
  return *screen;
}

modAdvLoan& EntryScreen::BeginNew(InstructionType type, const char* name, const char* date,
                                  const char* amount) {
  OpenOn(type);
  Click(screen->cmdNew);
  Pick(screen->cmbALName, name);
  Type(screen->txtAdvDate, date);
  Type(screen->txtAdvAmount, amount);
  return *screen;
}

modAdvLoan& EntryScreen::EnterAdvance() {
  BeginNew(Advance, "Salary Advance", "15/09/2026", "10000");
  Type(screen->recovery.txtInstlAmt, "1000");
  Type(screen->recovery.txtRecvrFrom, "Oct/2026");
  return *screen;
}

modAdvLoan& EntryScreen::EnterLoan() {
  BeginNew(Loan, "Car Loan", "15/09/2026", "3000");
  Pick(screen->cmbInstitution, "Deccan Bank");
  Type(screen->txtLoanAccNo, "ACC/1");
  Type(screen->recovery.txtInstlAmt, "1000");
  Type(screen->recovery.txtRecvrFrom, "Oct/2026");
  return *screen;
}

}  // namespace ktl
