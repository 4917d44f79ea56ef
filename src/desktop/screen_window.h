#pragma once

#include <QDialog>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <memory>

#include "desktop/form_binder.h"
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
  void Mirror();
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
  void FitOnDesk();
  bool MoveOn(QWidget& from, const Binding& binding, int key);
  QWidget* NextField(const QWidget& from, bool on) const;

  Screen& screen_;
  Dispatcher& dispatcher_;
  std::unique_ptr<QWidget> form_;
  std::unique_ptr<FormBinder> binder_;
  std::unique_ptr<TypingWatch> typing_;
  QVBoxLayout layout_{this};
  QFrame band_;
  QHBoxLayout bandLayout_{&band_};
  QLabel title_;
};

}  // namespace ktl
