#include "frame/durable_desk.h"

#include "database/connection.h"
#include "frame/writing_turn.h"

namespace ktl {

void DurableDesk::Flush() {
  if (cn_.IsOpen()) cn_.MakeDurable();
}

Answer DurableDesk::MsgBox(const MessageBox& box) {
  WritingTurn* const paused = turn;
  if (paused != nullptr) paused->Pause();
  if (box.icon != Icon::Critical) Flush();
  const Answer answer = desk_.MsgBox(box);
  if (paused != nullptr) paused->Resume();
  return answer;
}

void DurableDesk::NoteSaved() {
  Flush();
  desk_.NoteSaved();
}

void DurableDesk::TellWritten(const std::string& text, const std::string& file, const std::string& title) {
  Flush();
  desk_.TellWritten(text, file, title);
}

}  // namespace ktl
