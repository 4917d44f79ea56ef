#pragma once

class QDialog;
class QWidget;

namespace ktl {

// Ctrl+S saves, Ctrl+N begins anew, Ctrl+F goes to the field that finds somebody.
void AddShortcuts(QDialog& window, QWidget& form);

// Names every control for those who hear a screen: by its own words, its label, what stands before it, or
// what holds it.
void NameControls(QWidget& form);

}  // namespace ktl
