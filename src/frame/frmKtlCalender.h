#pragma once

#include <memory>
#include <vector>

#include "frame/pickers.h"
#include "runtime/date.h"
#include "screen/controls.h"
#include "screen/screen.h"

namespace ktl {

// Chooses a date for a field of another screen.
class frmKtlCalender final : public Screen {
 public:
  frmKtlCalender(Session& session, PickerField field);

  ComboBox cmbMonth{*this, "cmbMonth"};
  ComboBox cmbYear{*this, "cmbYear"};
  Label lblsunday{*this, "lblsunday", "Sun"};
  Label lblMonday{*this, "lblMonday", "Mon"};
  Label lblTuesday{*this, "lblTuesday", "Tue"};
  Label lblWednesday{*this, "lblWednesday", "Wed"};
  Label lblThrusday{*this, "lblThrusday", "Thu"};
  Label lblFriday{*this, "lblFriday", "Fri"};
  Label lblSaturday{*this, "lblSaturday", "Sat"};
  std::vector<std::unique_ptr<Label>> lblDate;  // lblDate_1 to lblDate_42, row by row
  Label lbltoady{*this, "lbltoady", "Today Date"};
  Label lblclose{*this, "lblclose", "Close"};

  void Form_Load() override;

  void lblDate_Click(std::size_t cell);  // from 0
  void lbltoady_Click();

  void LoadMonthYear(const Date& around);  // the lists, and that month chosen in them
  void loadCalender();
  void ClearAll();
  void FillDatesNew();  // of the month that was chosen
  void filldates(long monthYear);

 private:
  long ChosenMonth() const;  // 0 while the lists show none

  Session& session_;
  const PickerField field_;
  Date shown_;  // marked: what stood in the field, else today
  bool loading_ = false;
};

}  // namespace ktl
