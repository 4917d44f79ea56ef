#pragma once

#include <QString>

#include "screen/grid.h"

class QModelIndex;
class QTableView;

namespace ktl {

class GridModel;

enum class CopyRange { SelectedRows, AllRows };

// What is shown of the grid under its headings: columns parted by tabs, one line a row. Ticks read Yes and
// No, amounts are not grouped.
QString CopiedText(const QTableView& view, const GridModel& model, CopyRange range);
// What is marked: the block where cells are marked, without headings, so that it can be pasted back; the
// framed cell of a grid that is edited; else the rows, or all where none is marked.
QString CopiedSelection(const QTableView& view, const GridModel& model);
QString CellText(const GridModel& model, const QModelIndex& index);

// The cells between the first and the last that are marked; the current one where none is.
GridRange SelectedRange(const QTableView& view);

}  // namespace ktl
