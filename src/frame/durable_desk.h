#pragma once

#include <functional>
#include <string>

#include "screen/desk.h"

namespace ktl {

class Connection;
class WritingTurn;

// The desk as the screens see it: what was written before a person is told or asked something is on the disk
// before he reads it. Of an error he is told in any case. Throws DatabaseError when the disk fails.
class DurableDesk final : public Desk {
 public:
  DurableDesk(Desk& desk, Connection& cn) : desk_(desk), cn_(cn) {}

  std::function<void(Screen&)> onShow;  // what every screen gets before it is loaded

  Answer MsgBox(const MessageBox& box) override;
  void ShowModal(Screen& screen) override {
    if (onShow) onShow(screen);
    desk_.ShowModal(screen);
  }
  void Refresh() override { desk_.Refresh(); }
  void SetBusy(bool busy) override { desk_.SetBusy(busy); }
  void NoteSaved() override;
  void TellWritten(const std::string& text, const std::string& file, const std::string& title) override;
  void NotePlace(const Workplace& place) override { desk_.NotePlace(place); }
  void NoteStatus(const std::string& text) override { desk_.NoteStatus(text); }
  bool KeepWaiting(std::chrono::milliseconds waited, bool mayGiveUp) override {
    return desk_.KeepWaiting(waited, mayGiveUp);
  }
  void NoteProgress(const std::string& words, int percent) override { desk_.NoteProgress(words, percent); }

  void Flush();

  WritingTurn* turn = nullptr;  // under way

 private:
  Desk& desk_;
  Connection& cn_;
};

}  // namespace ktl
