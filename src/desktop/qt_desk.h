#pragma once

#include <string>
#include <vector>

#include "desktop/dispatcher.h"
#include "desktop/forms.h"
#include "screen/desk.h"

class QWidget;

namespace ktl {

class ScreenWindow;

// Thrown out of ShowModal when the picture that was asked for is written.
struct PictureTaken {};

// The person at windows. Needs a QApplication; one at a time.
class QtDesk final : public Desk {
 public:
  explicit QtDesk(const Forms& forms = ProgramForms());
  ~QtDesk() override;

  // The first screen that opens is saved as a picture, and the program ends then.
  void TakePicture(std::string file) { pictureFile_ = std::move(file); }

  Answer MsgBox(const MessageBox& box) override;
  void ShowModal(Screen& screen) override;
  void Refresh() override;
  void SetBusy(bool busy) override;

 private:
  void BringUpToDate();
  void Mirror();
  void GrantFocus();
  void FocusMoved(QWidget* from, QWidget* to);
  void PlanPicture(ScreenWindow& window);
  QWidget* Top() const;

  const Forms& forms_;
  Dispatcher dispatcher_;
  std::vector<ScreenWindow*> open_;  // innermost last
  std::string pictureFile_;
  bool busy_ = false;
};

}  // namespace ktl
