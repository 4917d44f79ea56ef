#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

#include "desktop/qt_desk.h"
#include "desktop/screen_window.h"

namespace ktl {

inline constexpr int kWaitMs = 3000;

// The windows that are up, as a person sees them.
template <class Widget>
Widget* TopDialog() {
  auto* dialog = dynamic_cast<Widget*>(QApplication::activeModalWidget());
  return dialog && dialog->isVisible() ? dialog : nullptr;
}

// Runs the step as soon as a dialog of that kind other than the present one is up.
template <class Widget>
void OnNext(std::function<void(Widget&)> step) {
  auto* timer = new QTimer(qApp);  // goes when its step has run
  timer->setObjectName("step");
  QWidget* present = QApplication::activeModalWidget();
  QObject::connect(timer, &QTimer::timeout, timer, [timer, present, step] {
    Widget* dialog = TopDialog<Widget>();
    if (!dialog || dialog == present) return;
    timer->stop();
    timer->deleteLater();
    timer->setObjectName("done");
    step(*dialog);
  });
  timer->start(2);
}

// Shows the screen, lets the person work on its window, and closes it when it is still open then.
inline void WorkOn(QtDesk& desk, Screen& screen, std::function<void(ScreenWindow&)> work) {
  OnNext<ScreenWindow>([&screen, work](ScreenWindow& window) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window, kWaitMs));
    work(window);
    screen.ForceUnload();
    window.done(0);
  });
  desk.ShowModal(screen);
  for (QTimer* left : qApp->findChildren<QTimer*>("step")) {
    ADD_FAILURE() << "a dialog that was waited for did not come up";
    delete left;
  }
}

template <class Widget>
Widget& Find(const QWidget& window, const char* name) {
  auto* widget = window.findChild<Widget*>(name);
  if (!widget) throw std::logic_error(std::string("no widget ") + name);
  return *widget;
}

inline void Enter(QWidget& widget, const QString& text) {
  widget.setFocus();
  QTest::keyClicks(&widget, text);
}

// Lets what is queued run, and what that queues in turn.
inline void Settle() {
  for (int round = 0; round < 5; ++round) {
    QCoreApplication::processEvents();
    QTest::qWait(2);
  }
}

}  // namespace ktl
