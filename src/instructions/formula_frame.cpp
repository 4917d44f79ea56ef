#include "instructions/formula_frame.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "formula/clsEvalFormula.h"
#include "frame/modExternal.h"
#include "frame/number_fields.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/entry_lists.h"
#include "runtime/numbers.h"

namespace ktl {

std::optional<double> AmountByFormula(Session& session, long formula, long employee, long monthYear,
                                      DetailRowRule rule) {
  const std::optional<long> detailRow = DetailRowOfMonth(session, employee, monthYear, rule);
  if (!detailRow) return std::nullopt;
  const Date first = *ParseDate("01/" + FnStrFormatMonthYear(monthYear));
  return clsEvalFormula(session).FnDblEvalFormula(formula, employee, *detailRow, monthYear, first,
                                                  first.AddMonths(1).AddDays(-1));
}

void OpenExpressionEditor(Session& session) {
  StartExternal(session, {"KTLFilter", "Kestrel Ledger - Expression Editor",
                          fmt::format("1505,{}$Kestrel Ledger - Expression Editor",
                                      Value(session.MultiLoginYN).ToText())});
}

FormulaFrame::FormulaFrame(Session& session, Screen& screen, Frame& covered, const Ways& ways)
    : screen_(screen), session_(session), covered_(covered), ways_(ways) {
  fmeFormula.Hold({lblFormula, cmbFormula, cmdAdvFormulate, cmdAccept, cmdFrmlaClose});
  const HandlerGuard on(session, *this, ways.errors);
  cmdAccept.onClick = on(&FormulaFrame::cmdAccept_Click);
  cmdAdvFormulate.onClick = on(&FormulaFrame::cmdAdvFormulate_Click);
  cmdFrmlaClose.onClick = [this] { Show(false); };
}

void FormulaFrame::FillList() { cmbFormula.SetRows(ReadFormulas(session_)); }

void FormulaFrame::Show(bool shown) {
  fmeFormula.visible = shown;
  covered_.enabled = !shown;
  if (shown) screen_.SetFocus(cmbFormula);
}

void FormulaFrame::Forget() { cmbFormula.SetText(""); }

void FormulaFrame::Close() {
  Show(false);
  if (done) done();
}

void FormulaFrame::Refuse(const char* text, Control& field) {
  session_.Inform(text);
  screen_.SetFocus(field);
}

void FormulaFrame::cmdAccept_Click() {
  if (FnBlnPermitted(session_, cmdAccept)) return;
  const std::optional<Subject> of = subject();
  if (!of) return;
  if (cmbFormula.Text().empty()) {
    if (!session_.desk.Confirm("Continue without selecting a 'Formula'?", session_.title)) return;
    Forget();
    return Close();
  }
  const std::optional<double> times = Times();
  if (!times) return;
  if (!cmbFormula.MatchesList()) return Refuse("Select proper 'Formula'.", cmbFormula);
  const auto formula = static_cast<long>(Val(cmbFormula.BoundText()));
  if (const auto amount = AmountByFormula(session_, formula, of->employee, of->monthYear, ways_.detailRow))
    accepted(*amount * *times);
  Close();
}

void FormulaFrame::cmdAdvFormulate_Click() {
  if (FnBlnPermitted(session_, cmdAdvFormulate)) return;
  OpenExpressionEditor(session_);
  FillList();
}

MonthsFormulaFrame::MonthsFormulaFrame(Session& session, Screen& screen, Frame& covered)
    : FormulaFrame(session, screen, covered, {}),
      lblMonths(screen, "lblMonths", "Number of Months"),
      txtMonths(screen, "txtMonths") {
  fmeFormula.Hold({lblMonths, txtMonths});
  TakeCounts({&txtMonths});
}

void MonthsFormulaFrame::Forget() {
  FormulaFrame::Forget();
  months_ = 0;
  txtMonths.SetText("");
}

std::optional<double> MonthsFormulaFrame::Times() {
  if (txtMonths.Text().empty()) {
    Refuse("Enter 'Number of Months'.", txtMonths);
    return std::nullopt;
  }
  months_ = clsGenCmn::FnDblTrimVal(txtMonths.Text());
  return months_;
}

}  // namespace ktl
