#include "company/sample_schedule.h"

#include <cmath>

#include "company/sample_masters.h"
#include "instructions/schedule.h"

namespace ktl {

namespace {

// To two places, halves to even, as the interest editor does.
double RoundTwo(double amount) { return std::nearbyint(amount * 100) / 100; }

void SetApart(SampleInstalment& row, double interest) {
  row.actualInterest = row.modifiedInterest = interest;
  row.amount = row.modified = *row.actualPrincipal + interest;
}

SampleInstalment MakeRow(const ScheduleRow& scheduled, const SampleTerms& terms) {
  SampleInstalment row;
  row.month = static_cast<int>(scheduled.monthYear);
  row.counter = static_cast<int>(scheduled.counter);
  row.amount = row.modified = scheduled.emiAmount;
  row.interest = scheduled.interest;
  row.institution = terms.institution;
  if (terms.origin == SampleOrigin::Flat || terms.origin == SampleOrigin::Apart) {
    row.actualPrincipal = row.modifiedPrincipal = scheduled.emiAmount;
  }
  return row;
}

}  // namespace

std::vector<SampleInstalment> MakeSchedule(const SampleTerms& terms) {
  ScheduleTerms scheduleTerms;
  scheduleTerms.total = terms.total;
  scheduleTerms.firstMonth = terms.firstMonth;
  scheduleTerms.instalment = terms.instalment;
  if (terms.origin == SampleOrigin::Reducing) scheduleTerms.reducingRate = terms.percent;

  std::vector<SampleInstalment> rows;
  double balance = terms.total;
  for (const auto& scheduled : GenerateSchedule(scheduleTerms)) {
    rows.push_back(MakeRow(scheduled, terms));
    if (terms.origin == SampleOrigin::Apart) {
      SetApart(rows.back(), RoundTwo(balance * terms.percent / 1200));
      balance -= scheduled.emiAmount;
    }
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
}

}  // namespace ktl
