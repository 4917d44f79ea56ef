#pragma once

#include <functional>
#include <string>

#include "instructions/allotment.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// The frame in which a formula is chosen that each of many employees gets his amount by. Nothing is evaluated
// here. What it covers cannot be used while it is open.
class KeptFormulaFrame {
  Screen& screen_;  // the controls register with it

 public:
  struct Names {
    const char *frame, *label, *formula, *edit, *accept, *close;
  };
  KeptFormulaFrame(Session& session, Screen& screen, Control& covered, const Names& names);

  Frame frame;
  Label lblFormula;
  ComboBox cmbFormula;
  Button cmdEdit;
  Button cmdAccept;
  Button cmdClose;

  std::function<bool(KeptFormula& kept)> further;  // what else is asked for; false when it was refused
  std::function<void()> done;                      // after an answer that closes the frame

  const KeptFormula& Kept() const { return kept_; }
  void FillList();
  void Show(bool shown);
  void Forget();
  // False always.
  bool Refuse(const char* text, Control& field);

 private:
  void cmdAccept_Click();
  void cmdEdit_Click();

  Session& session_;
  Control& covered_;
  KeptFormula kept_;
};

}  // namespace ktl
