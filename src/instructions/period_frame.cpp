#include "instructions/period_frame.h"

namespace ktl {

PeriodFrame::PeriodFrame(Screen& screen) : screen_(screen) {
  fmePeriod.Hold({optMonthly, optQuarterly, optHalfYearly, optYearly});
}

PremiumPeriod PeriodFrame::Chosen() const {
  if (!fmePeriod.visible) return PremiumPeriod::Monthly;
  if (optQuarterly.Value()) return PremiumPeriod::Quarterly;
  if (optHalfYearly.Value()) return PremiumPeriod::HalfYearly;
  return optYearly.Value() ? PremiumPeriod::Yearly : PremiumPeriod::Monthly;
}

void PeriodFrame::Show(PremiumPeriod period) {
  optMonthly.SetValue(period == PremiumPeriod::Monthly);
  optQuarterly.SetValue(period == PremiumPeriod::Quarterly);
  optHalfYearly.SetValue(period == PremiumPeriod::HalfYearly);
  optYearly.SetValue(period == PremiumPeriod::Yearly);
}

}  // namespace ktl
