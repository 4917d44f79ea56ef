#pragma once

#include "instructions/premium_row.h"
#include "screen/controls.h"

namespace ktl {

// What an incentive counts for.
class IncentiveFrame {
  Screen& screen_;  // the controls register with it

 public:
  // When a percentage can be typed.
  enum class Percent { OfWhatIsTicked, Always };

  IncentiveFrame(Screen& screen, Percent percent);

  Frame fmePFESI{screen_, "fmePFESI", "Counts for"};
  CheckBox chkPF{screen_, "chkPF", "PF"};
  TextBox txtPFPer{screen_, "txtPFPer"};
  CheckBox chkESI{screen_, "chkESI", "ESI"};
  TextBox txtESIPer{screen_, "txtESIPer"};
  CheckBox chkPT{screen_, "chkPT", "PT"};

  void Allow(const FundSwitches& funds);
  void Show(const PremiumRow& premium);
  void Clear() { Show({}); }
  TypedShares Typed() const;
};

}  // namespace ktl
