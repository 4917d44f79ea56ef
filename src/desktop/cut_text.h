#pragma once

class QEvent;
class QObject;

namespace ktl {

// Shows the whole text of a field that has no room for it, when its tool tip is asked for. False for anything
// else.
bool ShowCutText(QObject& target, QEvent& event);

}  // namespace ktl
