#include "desktop/grid_model.h"

#include <QColor>
#include <algorithm>

#include "desktop/amount_text.h"
#include "desktop/binding.h"
#include "desktop/look.h"
#include "screen/screen.h"

namespace ktl {
namespace {

bool SameColumn(const GridColumn& a, const GridColumn& b) {
  return a.caption == b.caption && a.type == b.type && a.width == b.width && a.hidden == b.hidden &&
         a.locked == b.locked;
}

int AlignmentOf(CellType type) {
  const auto side = type == CellType::Number                           ? Qt::AlignRight
                    : type == CellType::Tick || type == CellType::Date ? Qt::AlignHCenter
                                                                       : Qt::AlignLeft;
  return int(side | Qt::AlignVCenter);
}

QVariant Shade(Colour colour) { return colour == kNoColour ? QVariant() : QVariant(ColourOf(colour)); }

}  // namespace

const GridCell* GridModel::CellAt(const QModelIndex& index) const {
  if (!index.isValid() || std::size_t(index.row()) >= rows_.size()) return nullptr;
  const auto& cells = rows_[std::size_t(index.row())].cells;
  return std::size_t(index.column()) < cells.size() ? &cells[std::size_t(index.column())] : nullptr;
}

CellType GridModel::TypeOf(const QModelIndex& index) const {
  const GridCell* cell = CellAt(index);
  const CellType columns = Column(index.column()).type;
  return cell ? cell->type.value_or(columns) : columns;
}

bool GridModel::IsLocked(const QModelIndex& index) const {
  const GridCell* cell = CellAt(index);
  return !cell || !grid_.IsUsable() || cell->locked.value_or(Column(index.column()).locked);
}

bool GridModel::HasEditedColumn() const {
  return std::any_of(columns_.begin(), columns_.end(),
                     [](const GridColumn& column) { return !column.hidden && !column.locked; });
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  const GridCell* cell = CellAt(index);
  if (!cell) return {};
  const CellType type = TypeOf(index);
  switch (role) {
    case Qt::DisplayRole:
      if (type == CellType::Number) return ReadableAmount(cell->text);
      [[fallthrough]];
    case Qt::EditRole:
      return type == CellType::Tick ? QVariant() : QVariant(ToQt(cell->text));
    case Qt::CheckStateRole:
      if (type != CellType::Tick) return {};
      return int(cell->text == "1" ? Qt::Checked : Qt::Unchecked);
    case Qt::BackgroundRole:
      return Shade(cell->backColour);
    case Qt::ForegroundRole:
      return Shade(cell->foreColour);
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
      return ToQt(MeaningOf(*cell));
    case Qt::TextAlignmentRole:
      return AlignmentOf(type);
    default:
      return {};
  }
}

// What the colour stands for in the words of the screen's key to its colours.
std::string GridModel::MeaningOf(const GridCell& cell) const {
  if (cell.backColour == kNoColour || cell.backColour == kWhite) return {};
  for (const Control* control : grid_.screen().Controls()) {
    if (control->kind() == ControlKind::Label && control->backColour == cell.backColour) {
      return static_cast<const Label*>(control)->caption;
    }
  }
  return {};
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical || std::size_t(section) >= columns_.size()) return {};
  if (role == Qt::DisplayRole) return ToQt(Column(section).caption);
  if (role == Qt::TextAlignmentRole) return AlignmentOf(Column(section).type);
  return {};
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags plain = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
  if (!index.isValid() || IsLocked(index)) return plain;
  const CellType type = TypeOf(index);
  if (type == CellType::Button) return plain;
  return plain | (type == CellType::Tick ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable);
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const GridCell* cell = CellAt(index);
  if (!cell) return false;
  std::string text = role == Qt::CheckStateRole ? (value.toInt() == Qt::Checked ? "1" : "0")
                                                : value.toString().toStdString();
  if (text == cell->text) return false;
  rows_[std::size_t(index.row())].cells[std::size_t(index.column())].text = text;
  emit dataChanged(index, index);
  edited(std::size_t(index.row()), std::size_t(index.column()), std::move(text));
  return true;
}

bool GridModel::Take() {
  if (!std::equal(columns_.begin(), columns_.end(), grid_.columns.begin(), grid_.columns.end(), SameColumn)) {
    beginResetModel();
    columns_ = grid_.columns;
    rows_ = grid_.rows;
    endResetModel();
    return true;
  }
  TakeRows();
  return false;
}

// Rows come and go at the end and each run of changed ones is told on its own: the view keeps its place, and
// a cell that is being typed into keeps its text.
void GridModel::TakeRows() {
  const std::size_t before = rows_.size();
  const std::size_t now = grid_.rows.size();
  if (now < before) {
    beginRemoveRows({}, int(now), int(before) - 1);
    rows_.resize(now);
    endRemoveRows();
  }
  const std::size_t common = std::min(before, now);
  for (std::size_t row = 0; row < common; ++row) {
    if (rows_[row] == grid_.rows[row]) continue;
    const std::size_t first = row;
    for (; row < common && rows_[row] != grid_.rows[row]; ++row) rows_[row] = grid_.rows[row];
    emit dataChanged(index(int(first), 0), index(int(row) - 1, columnCount() - 1));
  }
  if (now > before) {
    beginInsertRows({}, int(before), int(now) - 1);
    rows_.insert(rows_.end(), grid_.rows.begin() + std::ptrdiff_t(before), grid_.rows.end());
    endInsertRows();
  }
}

}  // namespace ktl
