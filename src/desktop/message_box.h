#pragma once

#include "screen/desk.h"

class QWidget;

namespace ktl {

class Dispatcher;

// Shows the box over the parent (null: alone on the screen) and comes back with the answer. Escape and the
// window's own button give the last answer of the row, time running out gives the default.
Answer ShowMessageBox(const MessageBox& box, QWidget* parent, Dispatcher& dispatcher);

}  // namespace ktl
