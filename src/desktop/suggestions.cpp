#include "desktop/suggestions.h"

#include <QApplication>
#include <QComboBox>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "desktop/list_rows.h"

namespace ktl {
namespace {

constexpr int kMostRows = 16;
constexpr int kWidthWithBeside = 360;
constexpr int kGap = 16;  // least between a text and the one beside it

}  // namespace

void BesideDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
  const QString beside = index.data(kBesideRole).toString();
  QStyleOptionViewItem own(option);
  QStyledItemDelegate::paint(painter, own, index);
  if (beside.isEmpty()) return;
  const QFontMetrics metrics(option.font);
  QRect place = option.rect.adjusted(0, 0, -6, 0);
  place.setLeft(std::max(place.left() + metrics.horizontalAdvance(index.data().toString()) + kGap,
                         place.right() - metrics.horizontalAdvance(beside)));
  const bool selected = option.state & QStyle::State_Selected;
  painter->save();
  painter->setFont(option.font);
  painter->setPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::PlaceholderText));
  painter->drawText(place, int(Qt::AlignRight | Qt::AlignVCenter),
                    metrics.elidedText(beside, Qt::ElideRight, place.width()));
  painter->restore();
}

// Some rows of a list.
class Suggestions::Offered final : public QAbstractListModel {
 public:
  explicit Offered(const ListRows& all) : all_(all) {}

  void Take(std::vector<int> rows) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
  }
  int RowOfList(const QModelIndex& index) const {
    return index.isValid() ? rows_[static_cast<std::size_t>(index.row())] : -1;
  }
  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
  }
  QVariant data(const QModelIndex& index, int role) const override {
    return all_.data(all_.index(RowOfList(index)), role);
  }

 private:
  const ListRows& all_;
  std::vector<int> rows_;
};

Suggestions::Suggestions(QComboBox& combo, const ListRows& rows)
    : combo_(combo), offered_(std::make_unique<Offered>(rows)) {
  setObjectName("suggestions");
  setModel(offered_.get());
  setItemDelegate(&delegate_);
  setUniformItemSizes(true);  // else every row is measured at every key
  setFocusPolicy(Qt::NoFocus);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  hide();
  connect(this, &QListView::clicked, this, [this](const QModelIndex& index) {
    hide();
    chosen(offered_->RowOfList(index));
  });
}

Suggestions::~Suggestions() = default;

void Suggestions::Offer(std::vector<int> rows) {
  if (rows.empty()) return hide();
  offered_->Take(std::move(rows));
  PlaceUnderField();
  if (isVisible()) return;
  show();
  raise();
  qApp->installEventFilter(this);
}

// A press beside the list closes it.
bool Suggestions::eventFilter(QObject* target, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress && target->isWidgetType()) {
    auto* widget = static_cast<QWidget*>(target);
    if (widget != this && !isAncestorOf(widget)) hide();
  }
  return QListView::eventFilter(target, event);
}

void Suggestions::hideEvent(QHideEvent* event) {
  qApp->removeEventFilter(this);
  QListView::hideEvent(event);
}

// As many rows as the window has room for, above the field where there is more.
void Suggestions::PlaceUnderField() {
  QWidget* window = combo_.window();
  if (parentWidget() != window) setParent(window);
  const QPoint corner = combo_.mapTo(window, QPoint(0, combo_.height()));
  const int below = window->height() - corner.y();
  const int above = corner.y() - combo_.height();
  const int wanted = std::min(offered_->rowCount(), kMostRows) * sizeHintForRow(0) + 2 * frameWidth();
  const bool under = wanted <= below || below >= above;
  const int height = std::min(wanted, under ? below : above);
  const bool withBeside = !offered_->index(0).data(kBesideRole).isNull();
  const int width = std::max(combo_.width(), withBeside ? kWidthWithBeside : 0);
  const int left = std::max(0, std::min(corner.x(), window->width() - width));
  setGeometry(left, under ? corner.y() : corner.y() - combo_.height() - height, width, height);
}

int Suggestions::MarkedRow() const { return isVisible() ? offered_->RowOfList(currentIndex()) : -1; }

bool Suggestions::PassKey(int key) {
  if (key == Qt::Key_Escape) {
    hide();
    return true;
  }
  const int rows = offered_->rowCount();
  const int page = std::max(1, height() / std::max(1, sizeHintForRow(0)) - 1);
  const int now = currentIndex().row();
  int next = 0;
  switch (key) {
    case Qt::Key_Down:
      next = now + 1;
      break;
    case Qt::Key_Up:
      next = now < 0 ? rows - 1 : now - 1;
      break;
    case Qt::Key_PageDown:
      next = now + page;
      break;
    case Qt::Key_PageUp:
      next = now - page;
      break;
    default:
      return false;
  }
  setCurrentIndex(offered_->index(std::clamp(next, 0, rows - 1)));
  return true;
}

}  // namespace ktl
