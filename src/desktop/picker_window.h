#pragma once

class QRect;
class QWidget;

namespace ktl {

// A screen that chooses something for a field of another one: it has no frame, stands under that field and is
// gone through by the arrow keys.

// Under the field, or above it where it would leave the desk.
void PlaceUnder(QWidget& window, const QWidget& field, const QRect& desk);
// To the nearest widget in the direction of the arrow key that takes the focus, if there is one. False for
// another key, or one that has a meaning of its own there.
bool MoveByArrow(const QWidget& from, int key);

}  // namespace ktl
