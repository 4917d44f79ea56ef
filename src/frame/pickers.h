#pragma once

namespace ktl {

class TextBox;
struct Session;

// F2 and a double click ask for a month, or for a date, which is written into the box.
void AskForMonth(Session& session, TextBox& box);
void AskForDate(Session& session, TextBox& box);

}  // namespace ktl
