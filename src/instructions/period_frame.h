#pragma once

#include "instructions/premium_schedule.h"
#include "screen/controls.h"

namespace ktl {

// How often the amount is due.
class PeriodFrame {
  Screen& screen_;  // the controls register with it

 public:
  explicit PeriodFrame(Screen& screen);

  Frame fmePeriod{screen_, "fmePeriod", "Premium Payment"};
  OptionButton optMonthly{screen_, "optMonthly", "fmePeriod", "Monthly"};
  OptionButton optQuarterly{screen_, "optQuarterly", "fmePeriod", "Quarterly"};
  OptionButton optHalfYearly{screen_, "optHalfYearly", "fmePeriod", "Half Yearly"};
  OptionButton optYearly{screen_, "optYearly", "fmePeriod", "Yearly"};

  PremiumPeriod Chosen() const;  // every month while the frame is hidden
  void Show(PremiumPeriod period);
  void Clear() { Show(PremiumPeriod::Monthly); }
};

}  // namespace ktl
