#pragma once

class QRect;
class QWidget;

namespace ktl {

// A screen that chooses something for a field of another one: it has no frame, stands under that field and is
// gone through by the arrow keys.

// Under the field, or above it where it would leave the desk.
void PlaceUnder(QWidget& window, const QWidget& field, const QRect& desk);
// The nearest widget of the window that takes the focus, in the direction of the arrow key; null for none, or
// where the key has a meaning of its own.
QWidget* NeighbourOf(const QWidget& from, int key);

}  // namespace ktl
