#pragma once

#include <QColor>

#include "screen/controls.h"

class QApplication;

namespace ktl {

// Style, palette, font and style sheet of the whole program.
void ApplyLook(QApplication& application);

// The shade that the look has for a control's colour.
QColor ColourOf(Colour colour);

}  // namespace ktl
