#pragma once

#include <functional>
#include <optional>

#include "formula/detail_rows.h"
#include "frame/handler_guard.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// Of the employee in that month, by the detail row that holds then; nothing when there is none.
std::optional<double> AmountByFormula(Session& session, long formula, long employee, long monthYear,
                                      DetailRowRule rule = DetailRowRule::LatestMonth);

// The editor of the company's formulas; lists of them are to be read again afterwards.
void OpenExpressionEditor(Session& session);

// The frame in which an amount is computed by a formula. What it covers cannot be used while it is open.
class FormulaFrame {
  Screen& screen_;  // the controls register with it

 public:
  // What the entries of advances and of premiums do differently.
  struct Ways {
    ErrorStyle errors = ErrorStyle::NumberFirst;
    DetailRowRule detailRow = DetailRowRule::LatestMonth;
  };
  FormulaFrame(Session& session, Screen& screen, Frame& covered, const Ways& ways);
  virtual ~FormulaFrame() = default;

  Frame fmeFormula{screen_, "fmeFormula", "Amount by Formula"};
  Label lblFormula{screen_, "lblFormula", "Formula"};
  ComboBox cmbFormula{screen_, "cmbFormula"};
  Button cmdAdvFormulate{screen_, "cmdAdvFormulate", "..."};
  Button cmdAccept{screen_, "cmdAccept", "&Accept"};
  Button cmdFrmlaClose{screen_, "cmdFrmlaClose", "Cl&ose"};

  struct Subject {
    long employee = 0;
    long monthYear = 0;
  };
  std::function<std::optional<Subject>()> subject;  // nothing when the screen has refused
  std::function<void(double amount)> accepted;
  std::function<void()> done;  // after an answer that closes the frame

  void FillList();
  void Show(bool shown);
  virtual void Forget();  // what is chosen and what has been accepted

 protected:
  void Refuse(const char* text, Control& field);
  // What the amount of the formula is multiplied by; nothing when the frame has refused.
  virtual std::optional<double> Times() { return 1; }

 private:
  void cmdAccept_Click();
  void cmdAdvFormulate_Click();
  void Close();

  Session& session_;
  Frame& covered_;
  const Ways ways_;
};

// With the number of months that an advance or a loan is given for: the amount is that of all of them.
class MonthsFormulaFrame final : public FormulaFrame {
 public:
  MonthsFormulaFrame(Session& session, Screen& screen, Frame& covered);

  Label lblMonths;
  TextBox txtMonths;

  void Forget() override;
  // A number of months has been accepted; it counts even when the formula is refused.
  bool HasMonths() const { return months_ != 0; }

 private:
  std::optional<double> Times() override;

  double months_ = 0;
};

}  // namespace ktl
