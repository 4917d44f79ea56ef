#include "formula/day_count_run.h"

#include <utility>

#include "frame/session.h"

namespace ktl {

DayCountRun::Counters::Counters(Session& session, std::shared_ptr<EmployeeReads> reads)
    : attendance(session, reads), settings(session, reads), period(session, settings, reads) {}

DayCounts DayCountRun::Counters::SetNODNDP(Rules rules, const DayRequest& request) {
  return rules == Rules::Attendance ? attendance.SetNODNDP(request) : period.SetNODNDP(request);
}

DayCountRun::DayCountRun(Session& session, Rules rules, std::vector<RunPerson> people)
    : rules_(rules),
      reads_(std::make_shared<RunReads>(session.data, std::move(people))),
      together_(session, reads_),
      alone_(session, std::make_shared<EmployeeReads>(session.data)) {}

DayCounts DayCountRun::SetNODNDP(const DayRequest& request) {
  try {
    if (reads_->TurnTo({request.empId, request.empDetId})) return together_.SetNODNDP(rules_, request);
  } catch (const RuntimeError&) {
    // Counted again alone, where the failure is the caller's.
  }
  return alone_.SetNODNDP(rules_, request);
}

}  // namespace ktl
