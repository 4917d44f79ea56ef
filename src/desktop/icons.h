#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>

#include "screen/desk.h"

namespace ktl {

// A 16 pixel line drawing: "new", "save", "delete", "close", "table", "month", "people", "list", "page",
// "receipt", "house", "bank", "formula", "more". An empty icon for any other name.
QIcon LineIcon(const QString& name, const QColor& colour);

// The round picture of a message box; null for Icon::None.
QPixmap BoxPicture(Icon icon);

}  // namespace ktl
