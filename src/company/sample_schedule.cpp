#include "company/sample_schedule.h"

#include <algorithm>
#include <cmath>

#include "company/sample_masters.h"

namespace ktl {

double RoundTwo(double amount) { return std::floor(amount * 100 + 0.5 + 1e-7) / 100; }

namespace {

void Fill(SampleInstalment& row, const SampleTerms& terms, double principal, double balance) {
  row.amount = principal;
  switch (terms.origin) {
    case SampleOrigin::Flat:
      row.actualPrincipal = row.modifiedPrincipal = principal;
      break;
    case SampleOrigin::Reducing:
      row.interest = RoundTwo(balance * terms.percent / 100);
      row.amount = principal + *row.interest;
      break;
    case SampleOrigin::Batch:
      break;
    case SampleOrigin::Apart:
      row.actualPrincipal = row.modifiedPrincipal = principal;
      row.actualInterest = row.modifiedInterest = RoundTwo(balance * terms.percent / 1200);
      row.amount = principal + *row.actualInterest;
      break;
  }
  row.modified = row.amount;
}

}  // namespace

std::vector<SampleInstalment> MakeSchedule(const SampleTerms& terms) {
  std::vector<SampleInstalment> rows;
  double balance = terms.total;
  while (balance > 0) {
    SampleInstalment row;
    row.counter = static_cast<int>(rows.size()) + 1;
    row.month = terms.firstMonth + static_cast<int>(rows.size());
    row.institution = terms.institution;
    Fill(row, terms, std::min(balance, terms.instalment), balance);
    rows.push_back(std::move(row));
    balance -= terms.instalment;
  }
  return rows;
}

void TotalInterest(SampleInstruction& instruction) {
  const bool reducing = NameRules(instruction.type, instruction.name).reducing;
  for (auto& row : instruction.rows) {
    if (reducing && row.modifiedInterest) row.interest = row.modifiedInterest;
    const auto& interest = row.modifiedInterest ? row.modifiedInterest : row.interest;
    if (interest) instruction.interest = instruction.interest.value_or(0) + *interest;
  }
  if (instruction.interest) instruction.interest = RoundTwo(*instruction.interest);
}

}  // namespace ktl
