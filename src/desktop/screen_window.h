#pragma once

#include <QDialog>
#include <QFrame>
#include <QLabel>
#include <QVBoxLayout>
#include <memory>

#include "desktop/form_binder.h"
#include "desktop/letters.h"
#include "desktop/status_line.h"
#include "desktop/typing_watch.h"

namespace ktl {

class Dispatcher;

// The window of one open screen: a band with its caption over its form.
class ScreenWindow final : public QDialog {
 public:
  ScreenWindow(Screen& screen, std::unique_ptr<QWidget> form, Dispatcher& dispatcher, QWidget* parent);
  ~ScreenWindow() override;

  Screen& screen() const { return screen_; }
  const FormBinder& binder() const { return *binder_; }
  void Mirror(const DeskFacts& facts);
  // Moves the focus to where a handler asked for it, and brings up the tab page that it lies on.
  void GrantFocus();
  // The person went from one widget to another.
  void FocusMoved(const QWidget* from, const QWidget* to);

  // What was typed is on the disk.
  void NoteSaved() { typing_->Forget(); }

  void reject() override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  bool eventFilter(QObject* target, QEvent* event) override;

 private:
  void Close();
  bool MayDropTyping();
  void SetUpBand();
  void SetUpStatus();
  void ShowSelection();
  void OpenHelp() const;
  void FitOnDesk();
  bool MoveOn(QWidget& from, const Binding& binding, int key);
  QWidget* NextField(const QWidget& from, bool on) const;

  Screen& screen_;
  Dispatcher& dispatcher_;
  std::unique_ptr<QWidget> form_;
  std::unique_ptr<FormBinder> binder_;
  std::unique_ptr<TypingWatch> typing_;
  Letters letters_;
  QVBoxLayout layout_{this};
  QFrame band_;
  QVBoxLayout bandLayout_{&band_};
  QLabel title_;
  QLabel subject_;  // of a child: whose and which instruction it works on
  StatusLine status_;
  std::string helpFile_;
};

}  // namespace ktl
