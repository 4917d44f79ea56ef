#include "formula/formula_run.h"

#include <utility>

#include "frame/session.h"

namespace ktl {
namespace {

std::shared_ptr<RunReads> ReadsOf(Session& session, const std::vector<long>& employees,
                                  const std::unordered_map<long, long>& detailRows) {
  std::vector<RunPerson> people;
  for (const long employee : employees)
    if (const auto row = detailRows.find(employee); row != detailRows.end())
      people.push_back({employee, row->second});
  return std::make_shared<RunReads>(session.data, std::move(people));
}

}  // namespace

FormulaRun::FormulaRun(Session& session, FormulaRequest request, const std::vector<long>& employees)
    : session_(session),
      request_(std::move(request)),
      detailRows_(DetailRowsOfMonth(session, employees, request_.monthYear)),
      reads_(ReadsOf(session, employees, detailRows_)),
      together_(session, reads_) {}

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
  request_.empId = empId;
  request_.empDetId = *detail;
  try {
    if (reads_->TurnTo({empId, *detail})) return together_.Amount(request_);
  } catch (const RuntimeError&) {
    // Evaluated again alone, where it is told what failed.
  }
  if (!alone_) alone_.emplace(session_);
  return alone_->Amount(request_);
}

}  // namespace ktl
