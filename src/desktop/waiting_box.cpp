#include "desktop/waiting_box.h"

#include <QWindow>

namespace ktl {

WaitingBox::WaitingBox(const QWidget* window) {
  setObjectName("waitingBox");
  setWindowTitle(QStringLiteral("Please Wait"));
  setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
  setWindowModality(Qt::ApplicationModal);
  setFocusPolicy(Qt::StrongFocus);
  layout_.setContentsMargins(22, 18, 22, 16);
  layout_.setSpacing(8);
  words_.setText(
      QStringLiteral("Another workstation is writing to the company.\n"
                     "What you asked for goes on as soon as it has finished."));
  giveUp_.setText(QStringLiteral("&Give Up"));
  giveUp_.setObjectName("giveUp");
  giveUp_.setAutoDefault(false);
  layout_.addWidget(&words_);
  layout_.addWidget(&time_);
  layout_.addSpacing(6);
  layout_.addWidget(&giveUp_, 0, Qt::AlignRight);
  if (window) {
    winId();  // makes the window that the other one is to stay below
    windowHandle()->setTransientParent(window->windowHandle());
    move(window->frameGeometry().center() - QRect(QPoint(), sizeHint()).center());
  }
  connect(&giveUp_, &QPushButton::clicked, this, [this] { givenUp_ = true; });
}

void WaitingBox::Show(std::chrono::milliseconds waited, bool mayGiveUp) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(waited).count();
  time_.setText(QStringLiteral("Waiting for %1 s").arg(seconds) +
                (mayGiveUp ? QString() : QStringLiteral(". Part of it is written: it must be finished.")));
  giveUp_.setEnabled(mayGiveUp);
  if (isVisible()) return;
  show();
  setFocus();
}

}  // namespace ktl
