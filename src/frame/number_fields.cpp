#include "frame/number_fields.h"

#include "common/amounts.h"
#include "screen/controls.h"

namespace ktl {

void TakeAmounts(std::initializer_list<TextBox*> boxes) {
  for (TextBox* box : boxes) {
    box->rightAligned = true;
    box->onKeyPress = [box](int key) { return clsGenCmn::FnIntAllowAmtOnly(key, box->Text()); };
  }
}

void TakeCounts(std::initializer_list<TextBox*> boxes) {
  for (TextBox* box : boxes) {
    box->rightAligned = true;
    box->onKeyPress = clsGenCmn::FnIntAllowNumbersOnly;
  }
}

}  // namespace ktl
