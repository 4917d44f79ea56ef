#pragma once

#include <chrono>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ktl {

class Screen;

enum class Icon { None, Information, Question, Exclamation, Critical };
enum class Buttons { OK, OKCancel, YesNo, YesNoCancel };
enum class Answer { OK, Cancel, Yes, No };

struct MessageBox {
  std::string text;  // lines end in "\r\n" or "\n" as the texts have it
  Buttons buttons = Buttons::OK;
  Icon icon = Icon::Information;
  Answer defaultAnswer = Answer::OK;
  std::string title;
  int closesItselfMs = 0;  // 0: stays until answered
  // What each answer does, in the order of AnswersOf, for buttons that say more than Yes and No.
  std::vector<std::string> words;
};

std::vector<Answer> AnswersOf(Buttons buttons);  // in the order of the buttons
// The answer that the Enter key gives: the default of the box, its first button when it has no such button.
Answer DefaultAnswerOf(const MessageBox& box);
std::string_view NameOf(Answer answer);  // "OK", "Cancel", "Yes", "No"
std::string_view NameOf(Icon icon);

// What a handler of an open screen let pass ends the program, whatever handler stands around that screen: it
// is no RuntimeError, so that no error box swallows it. what() is the description and the number.
class ProgramFailure final : public std::exception {
 public:
  explicit ProgramFailure(std::string text) : text_(std::move(text)) {}
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string text_;
};

// Where the person works.
struct Workplace {
  std::string company;
  std::string user;
  std::string helpFile;  // "" when there is none
};

inline constexpr const char* kEndedBySignal = "ended by a signal";

// The person in front of the program.
class Desk {
 public:
  virtual ~Desk() = default;

  virtual Answer MsgBox(const MessageBox& box) = 0;
  // Loads the screen, lets the person work on it, comes back when it is unloaded.
  virtual void ShowModal(Screen& screen) = 0;
  // Shows what has changed so far inside a long handler.
  virtual void Refresh() {}
  virtual void SetBusy(bool) {}
  // The screen on top has told the person that its work is stored.
  virtual void NoteSaved() {}
  virtual void NotePlace(const Workplace&) {}
  // What another program, which the person works with meanwhile, says of its state; "" when it says nothing.
  virtual void NoteStatus(const std::string& /*text*/) {}
  // Something of the screen on top waits because another workstation is writing: asked again and again, many
  // times a second. False gives up, which may only be offered where it leaves nothing half written. No
  // handler may run meanwhile.
  virtual bool KeepWaiting(std::chrono::milliseconds /*waited*/, bool /*mayGiveUp*/) { return true; }
  // Tells of a file that was written.
  virtual void TellWritten(const std::string& text, const std::string& /*file*/, const std::string& title) {
    Inform(text, title);
  }
  // A step of long work, for a desk that has no window to show it in.
  virtual void NoteProgress(const std::string& /*words*/, int /*percent*/) {}

  void Inform(std::string text, std::string title);     // information, OK
  void Warn(std::string text, std::string title);       // exclamation, OK
  void ShowError(std::string text, std::string title);  // critical, OK
  // Yes/No with No as the default unless said.
  bool Confirm(std::string text, std::string title, Answer preset = Answer::No, Icon icon = Icon::Question);
};

}  // namespace ktl
