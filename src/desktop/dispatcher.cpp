#include "desktop/dispatcher.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "runtime/errors.h"

namespace ktl {

Dispatcher::Dispatcher(Handler bringUpToDate) : bringUpToDate_(std::move(bringUpToDate)) {
  qApp->installEventFilter(this);
}

void Dispatcher::Run(const Handler& handler) {
  if (failure_ || waits_) return;
  const Handler keep = handler;  // it may replace itself while it runs
  try {
    RunWaiting();
    if (keep) keep();
    RunWaiting();
    bringUpToDate_();
  } catch (const RuntimeError& error) {
    const std::string number = std::to_string(error.number());
    Fail(std::make_exception_ptr(ProgramFailure(error.description() + " (" + number + ")")));
  } catch (...) {
    Fail(std::current_exception());
  }
}

// Nothing may be thrown through Qt's event loop: Exec throws it again.
void Dispatcher::Fail(std::exception_ptr failure) {
  failure_ = std::move(failure);
  if (!dialogs_.empty()) dialogs_.back()->done(QDialog::Rejected);
}

void Dispatcher::Later(const Screen& screen, Handler handler) {
  if (!handler) return;
  waiting_.push_back({&screen, dialogs_.size(), std::move(handler)});
  QTimer::singleShot(0, this, [this] { Settle(); });
}

bool Dispatcher::Settle() {
  if (waits_) return true;
  const bool due = std::any_of(waiting_.begin(), waiting_.end(),
                               [this](const Waiting& waiting) { return waiting.depth >= dialogs_.size(); });
  if (!due) return true;
  const int before = dialogsShown_;
  Run({});
  return dialogsShown_ == before;
}

void Dispatcher::Forget(const Screen& screen) {
  std::erase_if(waiting_, [&screen](const Waiting& waiting) { return waiting.screen == &screen; });
}

int Dispatcher::Exec(QDialog& dialog) {
  RethrowFailure();
  dialogs_.push_back(&dialog);
  ++dialogsShown_;
  const int result = dialog.exec();
  dialogs_.pop_back();
  RethrowFailure();
  return result;
}

void Dispatcher::RethrowFailure() {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

// A field is left before what the person does next takes effect; when that brought up a box, the person has
// not seen it coming and the input is dropped.
bool Dispatcher::eventFilter(QObject* target, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::Shortcut:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Close:
      return waits_ ? !IsForBox(*target) : !Settle();
    default:
      return QObject::eventFilter(target, event);
  }
}

// The window system sends to windows, not to widgets, and knows itself that the box is modal.
bool Dispatcher::IsForBox(const QObject& target) const {
  return !target.isWidgetType() || static_cast<const QWidget&>(target).window() == box_;
}

Handler Dispatcher::TakeWaiting() {
  const auto due = std::find_if(waiting_.begin(), waiting_.end(),
                                [this](const Waiting& waiting) { return waiting.depth >= dialogs_.size(); });
  if (due == waiting_.end()) return {};
  Handler handler = std::move(due->handler);
  waiting_.erase(due);
  return handler;
}

void Dispatcher::RunWaiting() {
  while (const Handler handler = TakeWaiting()) handler();
}

}  // namespace ktl
