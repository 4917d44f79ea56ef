#include "recovery_fixture.h"

#include <fmt/format.h>

#include <numeric>

#include "instructions/instruction_statements.h"
#include "runtime/numbers.h"

namespace ktl {

SmallParent::SmallParent(Session& session, InstructionKey instruction, bool apart)
    : key(instruction), reducing(apart), session_(session) {
  RefreshDetail();
  RefreshEMI();
}

void SmallParent::RefreshDetail() {
  const auto sum = [this](const char* column, const char* table) {
    return session_.data.Number(session_.Sql("SELECT SUM({}) FROM {} WHERE {}", Statement(column),
                                             Statement(table), WhereInstruction(key)));
  };
  totals_ = {.amount = sum("ACTAMT", "INS_ADVLOAN"),
             .interest = sum("INTAMT", "INS_ADVLOAN"),
             .emi = sum("MDFYAMT", "INS_EMIDETAIL"),
             .recovered = sum("EMIRECVYN * MDFYAMT", "INS_EMIDETAIL"),
             .receipts = sum("RCPTAMT", "INS_RECEIPTS")};
}

void SmallParent::RefreshEMI() {
  recovered_.clear();
  Recordset rs(session_.Cn, session_.Sql("SELECT MONTHYEAR FROM INS_EMIDETAIL WHERE EMIRECVYN = 1 AND {}",
                                         WhereInstruction(key)));
  for (; !rs.Eof(); rs.MoveNext()) recovered_.insert(rs[0].ToLong());
}

long SmallParent::FnLngGetCounter() {
  ++countersAsked;
  return NextCounter(session_, key);
}

RecoveryTest::RecoveryTest() {
  company.Months(kApr2024, kApr2024 + 35);
  company.Employee(17).Named("Asha Rao").Ref("K17");
  company.Institution(5, "Deccan Bank", 2);
  for (int month = kApr2024; month < kApr2024 + 24; ++month) company.Salary(17, month, 0, 0);
}

void RecoveryTest::AddInstruction(InstructionType type, double total) {
  if (type == InstructionType::Loan) {
    company.Loan(17, 1, "Car Loan", total);
  } else if (type == InstructionType::Advance) {
    company.Advance(17, 1, "Car Loan", total);
  } else {
    company.Row("INS_OTHER")
        .With("EMPID", 17)
        .With("SERIALNO", 1)
        .With("SITYPE", NumberOf(type))
        .With("OTHNAME", "Policy");
  }
}

SmallParent& RecoveryTest::Instruction(InstructionType type, const std::vector<double>& amounts) {
  AddInstruction(type, std::accumulate(amounts.begin(), amounts.end(), 0.0));
  int counter = 0;
  for (const double amount : amounts) {
    company.Emi(17, NumberOf(type), 1, counter + 1, kApr2024 + counter, amount)
        .With("INSTID", HasInstitution(type) ? 5 : 0);
    ++counter;
  }
  parent = std::make_unique<SmallParent>(session, InstructionKey{17, type, 1}, false);
  return *parent;
}

SmallParent& RecoveryTest::Reducing(const std::vector<double>& principals, double interest) {
  Instruction(InstructionType::Loan, principals);
  company.Execute(
      fmt::format("UPDATE INS_EMIDETAIL SET ACTPRNAMT = MDFYAMT, MDFPRNAMT = MDFYAMT, ACTINTAMT = {0}, "
                  "MDFINTAMT = {0}, EMIAMT = EMIAMT + {0}, MDFYAMT = MDFYAMT + {0}",
                  interest));
  company.Execute(
      fmt::format("UPDATE INS_ADVLOAN SET INTAMT = {}", interest * static_cast<double>(principals.size())));
  parent = std::make_unique<SmallParent>(session, InstructionKey{17, InstructionType::Loan, 1}, true);
  return *parent;
}

SmallParent& RecoveryTest::ReducingAsMade(const std::vector<double>& principals, double interest) {
  Reducing(principals, interest);
  TakeComponentsAway();
  return *parent;
}

void RecoveryTest::TakeComponentsAway() {
  company.Execute(
      "UPDATE INS_EMIDETAIL SET INTAMT = MDFINTAMT, ACTPRNAMT = NULL, ACTINTAMT = NULL, MDFPRNAMT = NULL, "
      "MDFINTAMT = NULL");
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

}  // namespace ktl
