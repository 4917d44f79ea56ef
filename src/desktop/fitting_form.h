#pragma once

class QWidget;

namespace ktl {

// The name of the row, the last of a form, that holds its commands.
inline constexpr const char* kCommandRow = "commandRow";

// Makes a form usable in a window of any size. Its rows scroll where there is no room for them, but the row
// of commands stays in sight. What holds no list never grows beyond the width that the form was drawn with.
void MakeFit(QWidget& form);

// Scrolls to the widget where the form holds it and does not show it.
void BringIntoSight(QWidget& widget);

}  // namespace ktl
