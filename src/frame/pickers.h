#pragma once

#include <functional>
#include <string>

namespace ktl {

class ComboBox;
class Control;
class TextBox;
struct Session;

// A field that a month or a date can be chosen for: what stands in it, and how the choice is written.
struct PickerField {
  Control* control = nullptr;  // the picker opens under it
  std::function<std::string()> text = {};
  std::function<void(const std::string& chosen)> write = {};
};
PickerField FieldOf(TextBox& box);
PickerField FieldOf(ComboBox& box);

// F2 and a double click ask for a month, or for a date, which is written into the field as if typed. Nothing
// while the field is locked.
void AskForMonth(Session& session, TextBox& box);
void AskForMonth(Session& session, ComboBox& box);
void AskForDate(Session& session, TextBox& box);

}  // namespace ktl
