#pragma once

#include <memory>
#include <vector>

#include "formula/clsNODNDP.h"
#include "formula/clsNODNDPCALC.h"
#include "formula/run_reads.h"

namespace ktl {

// The days of many employees. For as long as it lives the masters are as they were read first, and the
// employees as they were when the block of them that is at work was read. Counts and failures are those of
// clsNODNDP, or under advanced leave of clsNODNDPCALC, for each alone.
class DayCountRun final {
 public:
  enum class Rules { Attendance, AdvancedLeave };

  // The people in the order in which they will be asked for.
  DayCountRun(Session& session, Rules rules, std::vector<RunPerson> people);

  DayCounts SetNODNDP(const DayRequest& request);

 private:
  struct Counters {
    Counters(Session& session, std::shared_ptr<EmployeeReads> reads);
    DayCounts SetNODNDP(Rules rules, const DayRequest& request);

    clsNODNDP attendance;
    modAttSetting settings;
    clsNODNDPCALC period;
  };

  Rules rules_;
  std::shared_ptr<RunReads> reads_;
  Counters together_;
  Counters alone_;
};

}  // namespace ktl
