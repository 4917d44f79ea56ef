#include "console/script_desk.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "console/commands.h"
#include "console/transcript.h"
#include "runtime/errors.h"
#include "screen/person.h"

namespace ktl {

namespace {

std::optional<Answer> AnswerNamed(std::string_view name) {
  for (const Answer answer : {Answer::OK, Answer::Cancel, Answer::Yes, Answer::No}) {
    if (NameOf(answer) == name) return answer;
  }
  return std::nullopt;
}

bool IsAnswerCommand(const ScriptLine& line) {
  const std::string verb = CommandWords(line.text).Word("a command");
  return verb == "answer" || verb == "answers";
}

}  // namespace

// Kept, so that a handler that catches everything cannot make the script go on.
void ScriptDesk::Fail(std::exception_ptr failure) {
  failure_ = std::move(failure);
  std::rethrow_exception(failure_);
}

template <typename Act>
void ScriptDesk::Guarded(const Act& act) {
  try {
    act();
  } catch (const ScriptError&) {
    throw;
  } catch (const ProgramFailure&) {
    throw;
  } catch (const CommandError& error) {
    Fail(std::make_exception_ptr(ScriptError(currentLine_, error.what())));
  } catch (const PersonError& error) {
    Fail(std::make_exception_ptr(ScriptError(currentLine_, error.what())));
  } catch (const RuntimeError& error) {
    Fail(std::make_exception_ptr(ProgramFailure(fmt::format("{} ({})", error.what(), error.number()))));
  } catch (const std::exception& error) {
    Fail(std::make_exception_ptr(ProgramFailure(error.what())));
  }
  if (failure_) std::rethrow_exception(failure_);
}

Answer ScriptDesk::MsgBox(const MessageBox& box) {
  if (failure_) std::rethrow_exception(failure_);
  const Answer answer = AnswerTo(box);
  out_ << BoxLine(box, answer) << '\n';
  return answer;
}

Answer ScriptDesk::AnswerTo(const MessageBox& box) {
  const std::vector<Answer> offered = AnswersOf(box.buttons);
  if (offered.size() == 1 || box.closesItselfMs > 0) return DefaultAnswerOf(box);
  if (currentLine_ == 0) TakeLeadingAnswers();
  if (answers_.empty()) return DefaultAnswerOf(box);
  const auto [answer, line] = answers_.front();
  answers_.pop_front();
  if (std::find(offered.begin(), offered.end(), answer) != offered.end()) return answer;
  const std::string why = fmt::format("the box \"{}\" does not offer {}, the answer of line {}",
                                      OneLine(box.text), NameOf(answer), line);
  Fail(std::make_exception_ptr(ScriptError(std::max(currentLine_, line), why)));
}

// A box that comes before the first screen is ready takes the answers at the head of the script.
void ScriptDesk::TakeLeadingAnswers() {
  for (const ScriptLine* line = script_.Peek(); line && IsAnswerCommand(*line); line = script_.Peek()) {
    const ScriptLine taken = *script_.Next();
    currentLine_ = taken.number;
    Guarded([&] {
      CommandWords words(taken.text);
      const std::string verb = words.Word("a command");
      RunAnswerCommand(verb, words);
    });
  }
}

bool ScriptDesk::RunAnswerCommand(const std::string& verb, CommandWords& words) {
  if (verb == "answers") {
    const std::string what = words.Word("clear");
    words.End();
    if (what != "clear") throw CommandError("clear is expected, not \"" + what + "\"");
    answers_.clear();
    return true;
  }
  if (verb != "answer") return false;
  const std::string name = words.Word("Yes, No, Cancel or OK");
  words.End();
  const auto answer = AnswerNamed(name);
  if (!answer) throw CommandError("Yes, No, Cancel or OK is expected, not \"" + name + "\"");
  answers_.push_back({*answer, currentLine_});
  return true;
}

bool ScriptDesk::RunProgressCommand(const std::string& verb, CommandWords& words) {
  if (verb != "progress") return false;
  tellsProgress_ = words.OnOrOff();
  words.End();
  return true;
}

// One line a tenth, so that a transcript does not depend on the speed of the machine.
void ScriptDesk::NoteProgress(const std::string& words, int percent) {
  const int tenth = percent / 10;
  if (!tellsProgress_ || tenth == std::exchange(toldTenth_, tenth)) return;
  out_ << "progress | " << percent << "% | " << OneLine(words) << '\n';
}

void ScriptDesk::RunCommand(const ScriptLine& line, Screen& screen) {
  currentLine_ = line.number;
  Guarded([&] {
    CommandWords words(line.text);
    const std::string verb = words.Word("a command");
    if (RunAnswerCommand(verb, words) || RunProgressCommand(verb, words)) return;
    RunScreenCommand(verb, words, screen, out_);
  });
}

// Time does not pass in a script: a timer that runs fires once after each command.
void ScriptDesk::FireTimers(Screen& screen) {
  for (Control* control : screen.Controls()) {
    if (screen.IsUnloaded()) return;
    if (control->kind() != ControlKind::Timer || !control->enabled) continue;
    if (const Handler onTimer = static_cast<Timer*>(control)->onTimer) {
      Guarded([&] { RunAndGrantFocus(screen, onTimer); });
    }
  }
}

void ScriptDesk::ShowModal(Screen& screen) {
  if (failure_) std::rethrow_exception(failure_);
  RunAndGrantFocus(screen, [&] { screen.Load(); });
  FireTimers(screen);
  while (!screen.IsUnloaded()) {
    const auto line = script_.Next();
    if (mustEnd_()) Fail(std::make_exception_ptr(ProgramFailure(kEndedBySignal)));
    if (!line) return CloseAtEnd(screen);
    RunCommand(*line, screen);
    FireTimers(screen);
  }
}

void ScriptDesk::CloseAtEnd(Screen& screen) {
  Guarded([&] {
    screen.Unload();
    screen.ForceUnload();
  });
}

void ScriptDesk::CheckAllRead() {
  if (const ScriptLine* const line = script_.Peek()) throw ScriptError(line->number, "no screen is open");
}

}  // namespace ktl
