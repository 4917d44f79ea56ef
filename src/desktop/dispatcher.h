#pragma once

#include <QObject>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "screen/controls.h"
#include "screen/desk.h"

class QDialog;
class QKeyEvent;
class QWidget;

namespace ktl {

// Every handler runs through here: first what waits, then the handler, then the windows are brought up to
// date.
class Dispatcher final : public QObject {
 public:
  explicit Dispatcher(Handler bringUpToDate);
  ~Dispatcher() override;

  void Run(const Handler& handler);
  // Runs before the next handler or input, at the latest when the event loop is idle; not while a box is up.
  void Later(const Screen& screen, Handler handler);
  // Runs what waits. False when a box or a screen came up meanwhile: the input that was under way is void
  // then.
  bool Settle();
  // Drops what still waits for a screen that goes away.
  void Forget(const Screen& screen);

  // The key goes to the field that has the focus when what runs now is over.
  void TypeAfterwards(const QKeyEvent& key);

  // Runs the dialog until it is closed. What a handler threw meanwhile comes out here, a RuntimeError as a
  // ProgramFailure: what was wrong, without the number that says nothing to a person.
  int Exec(QDialog& dialog);
  void RethrowFailure();
  // Ends the dialogs that are up, the innermost first, whatever they wait for: Exec throws this.
  void Fail(std::exception_ptr failure);
  int DialogsShown() const { return dialogsShown_; }  // so far

  // While one lives, the signals of the widgets are the mirror's own doing and raise nothing.
  class Mirroring {
   public:
    explicit Mirroring(Dispatcher& dispatcher) : dispatcher_(dispatcher) { ++dispatcher_.mirroring_; }
    ~Mirroring() { --dispatcher_.mirroring_; }
    Mirroring(const Mirroring&) = delete;
    Mirroring& operator=(const Mirroring&) = delete;

   private:
    Dispatcher& dispatcher_;
  };
  bool IsMirroring() const { return mirroring_ > 0; }

  // While one lives, events are passed on inside of a handler that waits: no other handler runs, what the
  // person does reaches the box alone (null for none).
  class Waits {
   public:
    Waits(Dispatcher& dispatcher, const QWidget* box) : dispatcher_(dispatcher) {
      dispatcher_.waits_ = true;
      dispatcher_.box_ = box;
    }
    ~Waits() { dispatcher_.waits_ = false; }
    Waits(const Waits&) = delete;
    Waits& operator=(const Waits&) = delete;

   private:
    Dispatcher& dispatcher_;
  };

  bool eventFilter(QObject* target, QEvent* event) override;

 private:
  struct Waiting {
    const Screen* screen;
    std::size_t depth;  // how many dialogs were up
    Handler handler;
  };

  Handler TakeWaiting();
  void RunWaiting();
  void PassTyping();
  bool IsForBox(const QObject& target) const;

  Handler bringUpToDate_;
  std::vector<Waiting> waiting_;
  std::vector<QDialog*> dialogs_;  // innermost last
  std::vector<std::unique_ptr<QKeyEvent>> typed_;
  std::exception_ptr failure_;
  int dialogsShown_ = 0;
  int mirroring_ = 0;
  bool waits_ = false;
  const QWidget* box_ = nullptr;
};

}  // namespace ktl
