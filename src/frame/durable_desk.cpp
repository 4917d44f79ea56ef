#include "frame/durable_desk.h"

#include "database/connection.h"

namespace ktl {

void DurableDesk::Flush() {
  if (cn_.IsOpen()) cn_.MakeDurable();
}

Answer DurableDesk::MsgBox(const MessageBox& box) {
  if (box.icon != Icon::Critical) Flush();
  return desk_.MsgBox(box);
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
