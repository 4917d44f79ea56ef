#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktop/dispatcher.h"
#include "desktop/forms.h"
#include "desktop/status_line.h"
#include "screen/desk.h"

class QWidget;

namespace ktl {

class ScreenWindow;
class WaitingBox;

// Thrown out of ShowModal when the picture that was asked for is written.
struct PictureTaken {};

// The person at windows. Needs a QApplication; one at a time.
class QtDesk final : public Desk {
 public:
  explicit QtDesk(const Forms& forms = ProgramForms());
  ~QtDesk() override;

  // Does one thing on the screen; false when nothing is left to do.
  using Act = std::function<bool(Screen& screen)>;
  // The screen that is open when the acts are done is saved as a picture, and the program ends then. Boxes
  // take their default answers meanwhile: nobody sits before a picture.
  void TakePicture(
      std::string file, Act act = [](Screen&) { return false; });

  // When the descriptor can be read somebody has asked the program to end: what is open goes without a
  // question, and ShowModal throws ProgramFailure.
  void EndOn(int descriptor);

  Answer MsgBox(const MessageBox& box) override;
  void ShowModal(Screen& screen) override;
  void NoteSaved() override;
  void NotePlace(const Workplace& place) override { facts_.place = place; }
  void NoteStatus(const std::string& text) override;
  void TellWritten(const std::string& text, const std::string& file, const std::string& title) override;
  void Refresh() override;
  void SetBusy(bool busy) override;
  bool KeepWaiting(std::chrono::milliseconds waited, bool mayGiveUp) override;

 private:
  void BringUpToDate();
  void Mirror();
  void GrantFocus();
  void FocusMoved(QWidget* from, QWidget* to);
  void PlacePicker(ScreenWindow& window);
  void PlanPicture(ScreenWindow& window);
  void SavePicture(ScreenWindow& window);
  QWidget* Top() const;

  const Forms& forms_;
  Dispatcher dispatcher_;
  DeskFacts facts_;
  std::vector<ScreenWindow*> open_;  // innermost last
  std::string pictureFile_;
  Act act_;
  bool busy_ = false;
  std::unique_ptr<WaitingBox> waiting_;
};

}  // namespace ktl
