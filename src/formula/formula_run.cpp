#include "formula/formula_run.h"

#include <algorithm>
#include <utility>

#include "frame/session.h"

namespace ktl {

FormulaRun::FormulaRun(Session& session, FormulaRequest request, const std::vector<long>& employees,
                       ToldOfReckoned reckoned)
    : session_(session),
      request_(std::move(request)),
      reckoned_(std::move(reckoned)),
      detailRows_(DetailRowsOfMonth(session, employees, request_.monthYear)) {
  for (const long employee : employees)
    if (const auto row = detailRows_.find(employee); row != detailRows_.end())
      people_.push_back({employee, row->second});
}

double FormulaRun::AmountOf(long empId) {
  try {
    return Amount(empId);
  } catch (const RuntimeError& error) {
    session_.Inform(error.description());
    return 0;
  }
}

double FormulaRun::Amount(long empId) {
  const auto row = detailRows_.find(empId);
  const std::optional<long> detail =
      row != detailRows_.end() ? row->second : DetailRowOfMonth(session_, empId, request_.monthYear);
  if (!detail) return 0;
  const RunPerson person{empId, *detail};
  const std::optional<double> amount = Reckoned(person);
  return amount ? *amount : Alone(person);
}

std::optional<double> FormulaRun::Reckoned(const RunPerson& person) {
  if (!reads_) return ReckonAhead(person);
  const auto ahead = ahead_.find(person.empId);
  return ahead != ahead_.end() ? ahead->second : Together(person);
}

void FormulaRun::ReadInOrderOf(std::vector<RunPerson> people) {
  reads_ = std::make_shared<RunReads>(session_.data, std::move(people));
  together_.emplace(session_, reads_);
}

// In the order of their rows each page of a table is read once, and before the caller's writes have taken the
// place of what is read. A formula that asks anew cannot be evaluated ahead; as a rule the first one, whose
// amount this gives, shows it.
std::optional<double> FormulaRun::ReckonAhead(const RunPerson& first) {
  std::vector<RunPerson> byRow = people_;
  std::ranges::sort(byRow, {}, &RunPerson::empDetId);
  std::ranges::rotate(byRow, std::ranges::find(byRow, first.empDetId, &RunPerson::empDetId));
  ReadInOrderOf(byRow);
  std::optional<double> amountOfFirst;
  for (const RunPerson& person : byRow) {
    const std::optional<double> amount = Together(person);
    if (person.empDetId == first.empDetId) amountOfFirst = amount;
    if (reads_->HasAskedAnew()) {
      ahead_.clear();
      ReadInOrderOf(people_);
      break;
    }
    ahead_.emplace(person.empId, amount);
    if (reckoned_) reckoned_(ahead_.size());
  }
  return amountOfFirst;
}

// Nothing where it fails: it is evaluated again alone, where it is told what failed.
std::optional<double> FormulaRun::Together(const RunPerson& person) {
  request_.empId = person.empId;
  request_.empDetId = person.empDetId;
  try {
    if (reads_->TurnTo(person)) return together_->Amount(request_);
  } catch (const RuntimeError&) {
  }
  return std::nullopt;
}

double FormulaRun::Alone(const RunPerson& person) {
  request_.empId = person.empId;
  request_.empDetId = person.empDetId;
  if (!alone_) alone_.emplace(session_);
  return alone_->Amount(request_);
}

}  // namespace ktl
