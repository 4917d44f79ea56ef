#pragma once

#include <QString>

class QTableView;

namespace ktl {

class GridModel;

enum class CopyRange { SelectedRows, AllRows };

// What is shown of the grid under its headings: columns parted by tabs, one line a row. Ticks read Yes and
// No, amounts are not grouped.
QString CopiedText(const QTableView& view, const GridModel& model, CopyRange range);

}  // namespace ktl
