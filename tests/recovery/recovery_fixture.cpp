#include "recovery_fixture.h"

#include <fmt/format.h>

#include <numeric>

#include "frame/options.h"
#include "instructions/instruction_statements.h"
#include "instructions/instruction_type.h"
#include "instructions/modAdvLoan.h"
#include "runtime/numbers.h"
#include "start/connect.h"

namespace ktl {

SmallParent::SmallParent(Session& session, InstructionKey key, bool reducing)
    : Screen("parent"), key(key), reducing(reducing), session_(session) {
  overview.columns.resize(modAdvLoan::kListRemarks + 1);
  emi.columns.resize(modAdvLoan::kEmiInstitution + 1);
  RefreshDetail();
  RefreshEMI();
}

void SmallParent::RefreshDetail() {
  overview.Clear();
  const auto sum = [this](const std::string& column, const char* table) {
    const std::string sql = "SELECT SUM(" + column + ") FROM " + table + " WHERE " + WhereInstruction(key);
    return NumberText(session_.data.FnVarGetDbValue(sql, 0).ToDouble());
  };
  overview.AddRow();
  overview.At(0, modAdvLoan::kListSerial).text = std::to_string(key.serial);
  overview.At(0, modAdvLoan::kListAmount).text = sum("ACTAMT", "INS_ADVLOAN");
  overview.At(0, modAdvLoan::kListInterest).text = sum("INTAMT", "INS_ADVLOAN");
  overview.At(0, modAdvLoan::kListEmi).text = sum("MDFYAMT", "INS_EMIDETAIL");
  overview.At(0, modAdvLoan::kListReceipts).text = sum("RCPTAMT", "INS_RECEIPTS");
  overview.At(0, modAdvLoan::kListRecovered).text = sum("EMIRECVYN * MDFYAMT", "INS_EMIDETAIL");
}

void SmallParent::RefreshEMI() {
  emi.Clear();
  Recordset rs(session_.Cn,
               "SELECT EMIRECVYN FROM INS_EMIDETAIL WHERE " + WhereInstruction(key) + " ORDER BY MONTHYEAR");
  for (; !rs.Eof(); rs.MoveNext())
    emi.At(emi.AddRow(), modAdvLoan::kEmiRecovered).text = rs[0].NumberOr0() == 1 ? "1" : "0";
}

long SmallParent::FnLngGetCounter() {
  ++countersAsked;
  return NextCounter(session_, key);
}

RecoveryTest::RecoveryTest() {
  machine.settings.Set("Settings", "DBType", "SQL");
  machine.settings.Set("Settings", "User", "RAVI");
  company.Months(kApr2024, kApr2024 + 35);
  company.Employee(17).Named("Asha Rao");
  company.Institution(5, "Deccan Bank", 2);
  OpenConnection(session, company.ConnectionString());
  LoadOptionSet(session);
  session.options.STARTMONTHYEAR = kApr2024;
  for (int month = kApr2024; month < kApr2024 + 24; ++month) company.Salary(17, month, 0, 0);
}

void RecoveryTest::AddInstruction(int siType, double total) {
  session.SIType = siType;
  session.FormCode = 1500 + siType;
  if (siType == 2) company.Loan(17, 1, "Car Loan", total);
  if (siType == 1) company.Advance(17, 1, "Car Loan", total);
  if (siType > 2)
    company.Row("INS_OTHER")
        .With("EMPID", 17)
        .With("SERIALNO", 1)
        .With("SITYPE", siType)
        .With("OTHNAME", "Policy");
}

SmallParent& RecoveryTest::Instruction(int siType, const std::vector<double>& amounts) {
  AddInstruction(siType, std::accumulate(amounts.begin(), amounts.end(), 0.0));
  int counter = 0;
  for (const double amount : amounts) {
    company.Emi(17, siType, 1, counter + 1, kApr2024 + counter, amount)
        .With("INSTID", HasInstitution(siType) ? 5 : 0);
    ++counter;
  }
  parent = std::make_unique<SmallParent>(session, InstructionKey{17, siType, 1}, false);
  return *parent;
}

SmallParent& RecoveryTest::Reducing(const std::vector<double>& principals, double interest) {
  Instruction(2, principals);
  company.Execute(
      fmt::format("UPDATE INS_EMIDETAIL SET ACTPRNAMT = MDFYAMT, MDFPRNAMT = MDFYAMT, ACTINTAMT = {0}, "
                  "MDFINTAMT = {0}, EMIAMT = EMIAMT + {0}, MDFYAMT = MDFYAMT + {0}",
                  interest));
  company.Execute(
      fmt::format("UPDATE INS_ADVLOAN SET INTAMT = {}", interest * static_cast<double>(principals.size())));
  parent = std::make_unique<SmallParent>(session, InstructionKey{17, 2, 1}, true);
  return *parent;
}

void RecoveryTest::Clear() {
  for (const char* table : {"INS_EMIDETAIL", "INS_ADVLOAN", "INS_RECEIPTS"})
    company.Execute(std::string("DELETE FROM ") + table);
  company.Execute("UPDATE SLC_SALARYCALC_E SET EDITMODEYN = 0");
}

void RecoveryTest::Recovered(int month) {
  company.Execute(fmt::format("UPDATE INS_EMIDETAIL SET EMIRECVYN = 1 WHERE MONTHYEAR = {}", month));
  parent->RefreshEMI();
}

std::string RecoveryTest::Amounts(const std::string& column) {
  std::string text;
  Recordset rs(company.Cn(), "SELECT " + column + " FROM INS_EMIDETAIL ORDER BY MONTHYEAR");
  for (; !rs.Eof(); rs.MoveNext()) text += (text.empty() ? "" : " ") + NumberText(rs[0].NumberOr0());
  return text;
}

std::string RecoveryTest::Flagged() {
  std::string text;
  Recordset rs(company.Cn(),
               "SELECT MONTHYEAR FROM SLC_SALARYCALC_E WHERE EDITMODEYN = 1 ORDER BY MONTHYEAR");
  for (; !rs.Eof(); rs.MoveNext())
    text += (text.empty() ? "" : " ") + std::to_string(rs[0].ToLong() - kApr2024);
  return text;
}

std::string RecoveryTest::LastAudit() {
  return company.Rows(
      "SELECT TOP 1 MENUNO, EMPID, ACTIONTEXT, DETAILTEXT FROM SEC_AUDITTRAIL ORDER BY AUDITID DESC");
}

}  // namespace ktl
