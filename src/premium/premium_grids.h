#pragma once

#include <set>
#include <string>
#include <vector>

#include "premium/premium_data.h"
#include "screen/grid_list.h"

namespace ktl {

inline constexpr Colour kPaymentDoneColour = 0xC0FFC0;

// An employee's premiums of one type.
class PremiumGrid {
 public:
  // The last five but the remarks are shown of incentives only.
  enum Column : std::size_t {
    kSerial,
    kName,
    kNumber,
    kStartMonth,
    kEndMonth,
    kPf,
    kPfPercent,
    kEsi,
    kEsiPercent,
    kPt,
    kRemarks
  };

  explicit PremiumGrid(Grid& grid) : grid_(grid), list_(grid) {}

  void Describe(InstructionType type, const std::string& caption);
  void Show(std::vector<PremiumListRow> rows, long serial);
  // The instruction of the serial number becomes the active line; 0 for none.
  void Mark(long serial);
  const PremiumListRow* Active() const { return list_.Active(); }

 private:
  Grid& grid_;
  GridList<PremiumListRow> list_;
};

// The schedule of one of them.
class PremiumScheduleGrid {
 public:
  enum Column : std::size_t { kTick, kCounter, kMonth, kActualAmount, kModifiedAmount, kInstitution };

  explicit PremiumScheduleGrid(Grid& grid) : grid_(grid), list_(grid) {}

  void Describe(InstructionType type);
  void Lock(bool locked) { grid_.columns[kTick].locked = locked; }
  void Show(std::vector<ScheduleMonth> months);
  void TickAll(bool ticked);
  void Tick(const std::set<long>& months);  // these besides those that are ticked

  const std::vector<ScheduleMonth>& Months() const { return list_.Rows(); }
  std::vector<ScheduleMonth> Ticked() const;
  std::set<long> PaidMonths() const;

 private:
  Grid& grid_;
  GridList<ScheduleMonth> list_;
};

}  // namespace ktl
