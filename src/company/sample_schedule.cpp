#include "company/sample_schedule.h"

#include <algorithm>
#include <cmath>

#include "company/sample_masters.h"

namespace ktl {

double RoundTwo(double amount) { return std::floor(amount * 100 + 0.5 + 1e-7) / 100; }

namespace {

void Fill(Instalment& row, const ScheduleTerms& terms, double principal, double balance) {
  row.amount = principal;
  switch (terms.origin) {
    case Origin::Flat:
      row.actualPrincipal = row.modifiedPrincipal = principal;
      break;
    case Origin::Reducing:
      row.interest = RoundTwo(balance * terms.percent / 100);
      row.amount = principal + *row.interest;
      break;
    case Origin::Batch:
      break;
    case Origin::Apart:
      row.actualPrincipal = row.modifiedPrincipal = principal;
      row.actualInterest = row.modifiedInterest = RoundTwo(balance * terms.percent / 1200);
      row.amount = principal + *row.actualInterest;
      break;
  }
  row.modified = row.amount;
}

}  // namespace

std::vector<Instalment> MakeSchedule(const ScheduleTerms& terms) {
  std::vector<Instalment> rows;
  double balance = terms.total;
  while (balance > 0) {
    Instalment row;
    row.counter = static_cast<int>(rows.size()) + 1;
    row.month = terms.firstMonth + static_cast<int>(rows.size());
    row.institution = terms.institution;
    Fill(row, terms, std::min(balance, terms.instalment), balance);
    rows.push_back(std::move(row));
    balance -= terms.instalment;
  }
  return rows;
}

void TotalInterest(Instruction& instruction) {
  const bool reducing = NameRules(instruction.type, instruction.name).reducing;
  for (auto& row : instruction.rows) {
    if (reducing && row.modifiedInterest) row.interest = row.modifiedInterest;
    const auto& interest = row.modifiedInterest ? row.modifiedInterest : row.interest;
    if (interest) instruction.interest = instruction.interest.value_or(0) + *interest;
  }
  if (instruction.interest) instruction.interest = RoundTwo(*instruction.interest);
}

}  // namespace ktl
