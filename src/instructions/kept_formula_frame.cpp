#include "instructions/kept_formula_frame.h"

#include "frame/handler_guard.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/entry_lists.h"
#include "instructions/formula_frame.h"
#include "runtime/numbers.h"
#include "screen/screen.h"

namespace ktl {

KeptFormulaFrame::KeptFormulaFrame(Session& session, Screen& screen, Control& covered, const Names& names)
    : screen_(screen),
      frame(screen, names.frame, "Amount by Formula"),
      lblFormula(screen, names.label, "Formula"),
      cmbFormula(screen, names.formula),
      cmdEdit(screen, names.edit, "..."),
      cmdAccept(screen, names.accept, "&Accept"),
      cmdClose(screen, names.close, "Cl&ose"),
      session_(session),
      covered_(covered) {
  frame.Hold({lblFormula, cmbFormula, cmdEdit, cmdAccept, cmdClose});
  const HandlerGuard on(session, *this, ErrorStyle::NumberFirst);
  cmdAccept.onClick = on(&KeptFormulaFrame::cmdAccept_Click);
  cmdEdit.onClick = on(&KeptFormulaFrame::cmdEdit_Click);
  cmdClose.onClick = [this] { Show(false); };
}

void KeptFormulaFrame::FillList() { cmbFormula.SetRows(ReadFormulas(session_)); }

void KeptFormulaFrame::Show(bool shown) {
  frame.visible = shown;
  covered_.enabled = !shown;
  if (shown) screen_.SetFocus(cmbFormula);
}

void KeptFormulaFrame::Forget() {
  kept_ = {};
  cmbFormula.SetText("");
}

bool KeptFormulaFrame::Refuse(const char* text, Control& field) {
  session_.Inform(text);
  screen_.SetFocus(field);
  return false;
}

void KeptFormulaFrame::cmdAccept_Click() {
  if (FnBlnPermitted(session_, cmdAccept)) return;
  KeptFormula chosen;
  if (!cmbFormula.Text().empty()) {
    if (!cmbFormula.MatchesList()) {
      Refuse("Select proper 'Formula'.", cmbFormula);
      return;
    }
    if (!further(chosen)) return;
    chosen.name = cmbFormula.Text();
    chosen.text = session_.data.Text(session_.Sql("Select FORMULA From MAS_FORMULA Where FORMULAID = {}",
                                                  static_cast<long>(Val(cmbFormula.BoundText()))));
  }
  kept_ = std::move(chosen);
  Show(false);
  if (done) done();
}

void KeptFormulaFrame::cmdEdit_Click() {
  if (FnBlnPermitted(session_, cmdEdit)) return;
  OpenExpressionEditor(session_);
  FillList();
}

}  // namespace ktl
