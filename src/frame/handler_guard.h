#pragma once

#include <functional>
#include <string>
#include <utility>

#include "screen/controls.h"

namespace ktl {

struct Session;

// How a screen tells that a handler failed: the number, a tab and the description; the description, " : " and
// the number; or the description alone.
enum class ErrorStyle { NumberFirst, DescriptionFirst, DescriptionOnly };

// Runs the work; a failure of the run-time or the database ends it with the box of the style.
void RunGuarded(Session& session, ErrorStyle style, const std::string& title,
                const std::function<void()>& work);

// The work behind the test of the button's right.
std::function<void()> WhenPermitted(Session& session, const Button& button, std::function<void()> work);

// Makes handlers of a screen's member functions:
//   HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
//   cmdSave.onClick = on(&modReceipts::cmdSave_Click);
// The title is read when a box is shown, the application's when none is given.
template <typename ScreenType>
class HandlerGuard {
 public:
  HandlerGuard(Session& session, ScreenType& screen, ErrorStyle style, std::string title = {})
      : session_(session), screen_(screen), style_(style), title_(std::move(title)) {}

  template <typename... Arguments>
  std::function<void(Arguments...)> operator()(void (ScreenType::*handler)(Arguments...)) const {
    return [guard = *this, handler](Arguments... arguments) {
      guard.Run([&] { (guard.screen_.*handler)(arguments...); });
    };
  }
  // Of work that is no member function.
  std::function<void()> operator()(std::function<void()> work) const {
    return [guard = *this, work = std::move(work)] { guard.Run(work); };
  }
  // A button that does the work for whoever has the right.
  void Permitted(Button& button, std::function<void()> work) const {
    button.onClick = (*this)(WhenPermitted(session_, button, std::move(work)));
  }
  void Run(const std::function<void()>& work) const { RunGuarded(session_, style_, title_, work); }

 private:
  Session& session_;
  ScreenType& screen_;
  ErrorStyle style_;
  std::string title_;
};

}  // namespace ktl
