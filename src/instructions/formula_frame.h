#pragma once

#include <functional>
#include <optional>

#include "screen/controls.h"

namespace ktl {

struct Session;

// Of the employee in that month, by the detail row that holds then; nothing when there is none.
std::optional<double> AmountByFormula(Session& session, long formula, long employee, long monthYear);

// The editor of the company's formulas; lists of them are to be read again afterwards.
void OpenExpressionEditor(Session& session);

// The frame in which an amount is computed by a formula. What it covers cannot be used while it is open.
class FormulaFrame {
  Screen& screen_;  // the controls register with it

 public:
  FormulaFrame(Session& session, Screen& screen, Frame& covered);

  Frame fmeFormula{screen_, "fmeFormula", "Amount by Formula"};
  Label lblFormula{screen_, "lblFormula", "Formula"};
  ComboBox cmbFormula{screen_, "cmbFormula"};
  Button cmdAdvFormulate{screen_, "cmdAdvFormulate", "..."};
  Label lblMonths{screen_, "lblMonths", "Number of Months"};
  TextBox txtMonths{screen_, "txtMonths"};
  Button cmdAccept{screen_, "cmdAccept", "&Accept"};
  Button cmdFrmlaClose{screen_, "cmdFrmlaClose", "Cl&ose"};

  struct Subject {
    long employee = 0;
    long monthYear = 0;
  };
  std::function<std::optional<Subject>()> subject;  // nothing when the screen has refused
  std::function<void(double amount)> accepted;      // for all months together
  std::function<void()> done;                       // after an answer that closes the frame

  void FillList();
  void Show(bool shown);
  void Forget();  // what is chosen and what has been accepted
  // A number of months has been accepted; it counts even when the formula is refused.
  bool HasMonths() const { return months_ != 0; }

 private:
  void cmdAccept_Click();
  void cmdAdvFormulate_Click();
  void Close();
  void Refuse(const char* text, Control& field);

  Session& session_;
  Frame& covered_;
  double months_ = 0;
};

}  // namespace ktl
