#pragma once

#include <memory>
#include <string>
#include <vector>

#include "frame/pickers.h"
#include "screen/controls.h"
#include "screen/screen.h"

namespace ktl {

// Chooses a month of the company for a field of another screen.
class frmSelMonth final : public Screen {
 public:
  frmSelMonth(Session& session, PickerField field);

  ListBox lstYear{*this, "lstYear"};
  std::vector<std::unique_ptr<Label>> lblMonth;  // lblMonth_1 "Jan" to lblMonth_12 "Dec"
  Label lblClose{*this, "lblClose", "Close"};

  void Form_Load() override;

  void lstYear_Click();
  void lblMonth_Click(std::size_t month);  // from 0

  void LoadYear();
  void LoadMonths();
  void Monthdisable();
  std::string fetchmonthname(std::size_t month) const;  // "Apr"
  std::string fetchmonthyear(std::size_t month) const;  // "Apr/2010"

 private:
  void FocusOnMonth();

  Session& session_;
  const PickerField field_;
};

}  // namespace ktl
