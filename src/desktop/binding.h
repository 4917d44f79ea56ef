#pragma once

#include <QColor>
#include <QString>
#include <memory>
#include <string>
#include <vector>

#include "screen/grid.h"
#include "screen/screen.h"

class QButtonGroup;
class QEvent;
class QMenu;
class QWidget;

namespace ktl {

class Dispatcher;

// A control and its widget.
class Binding {
 public:
  virtual ~Binding() = default;

  // Copies what differs from the control into the widget.
  virtual void Mirror() = 0;
  // An event on its way to the widget; true takes it away.
  virtual bool Filter(QEvent&) { return false; }
  virtual bool EnterMovesOn() const { return true; }
  // What Enter goes to: fields that can be changed now, one of a group of options.
  virtual bool IsField() const { return false; }
  // Where Backspace has nothing to delete and moves to the field before.
  virtual bool IsAtStart() const { return false; }
  // What is called when the focus went to another control; empty for most.
  virtual Handler LeaveHandler() const { return {}; }
  virtual void SelectText() {}
  // Of a grid: its rows, those that are marked, and their sum.
  virtual QString SelectionWords() const { return {}; }
};

// Each returns null when the widget is not of the control's type.
std::unique_ptr<Binding> BindTextBox(TextBox& control, QWidget& widget, Dispatcher& dispatcher);
std::unique_ptr<Binding> BindComboBox(ComboBox& control, QWidget& widget, Dispatcher& dispatcher);
std::unique_ptr<Binding> BindListBox(ListBox& control, QWidget& widget, Dispatcher& dispatcher);
std::unique_ptr<Binding> BindCheckBox(CheckBox& control, QWidget& widget, Dispatcher& dispatcher);
// The buttons of one group of the screen share the button group, wherever the form has them.
std::unique_ptr<Binding> BindOptionButton(OptionButton& control, QWidget& widget, QButtonGroup& group,
                                          Dispatcher& dispatcher);
std::unique_ptr<Binding> BindButton(Button& control, QWidget& widget, Dispatcher& dispatcher);
std::unique_ptr<Binding> BindLabel(Label& control, QWidget& widget, Dispatcher& dispatcher);
std::unique_ptr<Binding> BindFrame(Frame& control, QWidget& widget);
std::unique_ptr<Binding> BindTabs(Tabs& control, QWidget& widget, Dispatcher& dispatcher);
std::unique_ptr<Binding> BindProgressBar(ProgressBar& control, QWidget& widget);
std::unique_ptr<Binding> BindGrid(Grid& control, QWidget& widget, Dispatcher& dispatcher);
std::unique_ptr<Binding> BindTimer(Timer& control, Dispatcher& dispatcher);
// A push button that opens the menus of the screen.
std::unique_ptr<Binding> BindMenuButton(std::vector<Menu*> menus, QWidget& widget, Dispatcher& dispatcher);

void FillMenu(QMenu& menu, const std::vector<Menu*>& entries, Dispatcher& dispatcher);

inline QString ToQt(const std::string& text) { return QString::fromStdString(text); }

// False where the widget is hidden by itself, not with the widget of a frame that it lies in: a frame that
// keeps its place keeps its size too.
bool IsToShow(const Control& control, const QWidget& widget);

// Enabled, visible and tool tip.
void MirrorState(const Control& control, QWidget& widget);

// The colours of a control on its widget. A palette loses against the style sheet of the program, so each
// widget with colours of its own gets a sheet of its own.
class ColourMirror {
 public:
  void Mirror(const Control& control, QWidget& widget);

 private:
  Colour back_ = kNoColour;
  Colour fore_ = kNoColour;
};

}  // namespace ktl
