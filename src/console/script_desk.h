#pragma once

#include <deque>
#include <exception>
#include <functional>
#include <istream>
#include <ostream>
#include <string>
#include <utility>

#include "console/script.h"
#include "screen/desk.h"

namespace ktl {

// A command that could not be done. what() is "line N: why". No RuntimeError, so that a handler's own error
// box does not swallow it.
class ScriptError final : public std::exception {
 public:
  ScriptError(int line, const std::string& why) : text_("line " + std::to_string(line) + ": " + why) {}
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string text_;
};

// The person of the console program: reads commands from the script, acts on the screen on top, writes the
// transcript. At the end of the script the open screens are closed, the second time without asking.
class ScriptDesk final : public Desk {
 public:
  // mustEnd: asked before every command; once true, the program ends and nothing is saved.
  ScriptDesk(
      std::istream& script, std::ostream& transcript, std::function<bool()> mustEnd = [] { return false; })
      : script_(script), out_(transcript), mustEnd_(std::move(mustEnd)) {}

  Answer MsgBox(const MessageBox& box) override;
  void ShowModal(Screen& screen) override;
  void NoteProgress(const std::string& words, int percent) override;

  // Throws ScriptError when a command is left that no screen is there for.
  void CheckAllRead();

 private:
  struct QueuedAnswer {
    Answer answer;
    int line;
  };

  Answer AnswerTo(const MessageBox& box);
  void TakeLeadingAnswers();
  bool RunProgressCommand(const std::string& verb, CommandWords& words);
  bool RunAnswerCommand(const std::string& verb, CommandWords& words);
  void RunCommand(const ScriptLine& line, Screen& screen);
  void FireTimers(Screen& screen);
  void CloseAtEnd(Screen& screen);
  template <typename Act>
  void Guarded(const Act& act);
  [[noreturn]] void Fail(std::exception_ptr failure);

  Script script_;
  std::ostream& out_;
  std::function<bool()> mustEnd_;
  std::deque<QueuedAnswer> answers_;
  int currentLine_ = 0;
  bool tellsProgress_ = false;  // after "progress on"
  int toldTenth_ = -1;
  std::exception_ptr failure_;
};

}  // namespace ktl
