#include <QAbstractListModel>
#include <QGuiApplication>
#include <QListView>

#include "desktop/binding.h"
#include "desktop/dispatcher.h"

namespace ktl {
namespace {

// The view reads a copy of the rows; a tick goes to the control at once.
class TickRows final : public QAbstractListModel {
 public:
  explicit TickRows(ListBox& control) : control_(control) {}

  std::function<void(std::size_t row)> ticked;

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : int(rows_.size());
  }
  QVariant data(const QModelIndex& index, int role) const override {
    if (!index.isValid()) return {};
    const TickRow& row = rows_[std::size_t(index.row())];
    if (role == Qt::DisplayRole) return ToQt(row.text);
    if (role == Qt::CheckStateRole && control_.withTicks)
      return int(row.ticked ? Qt::Checked : Qt::Unchecked);
    return {};
  }
  Qt::ItemFlags flags(const QModelIndex&) const override {
    const Qt::ItemFlags plain = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return control_.withTicks ? plain | Qt::ItemIsUserCheckable : plain;
  }
  bool setData(const QModelIndex& index, const QVariant& value, int role) override {
    const auto row = std::size_t(index.row());
    if (role != Qt::CheckStateRole || row >= control_.rows.size()) return false;
    control_.rows[row].ticked = rows_[row].ticked = value.toInt() == Qt::Checked;
    emit dataChanged(index, index);
    ticked(row);
    return true;
  }
  void Take() {
    if (rows_ == control_.rows) return;
    if (rows_.size() == control_.rows.size()) {
      rows_ = control_.rows;
      emit dataChanged(index(0), index(int(rows_.size()) - 1));
      return;
    }
    beginResetModel();
    rows_ = control_.rows;
    endResetModel();
  }

 private:
  ListBox& control_;
  std::vector<TickRow> rows_;
};

class ListBoxBinding final : public Binding {
 public:
  ListBoxBinding(ListBox& control, QListView& list, Dispatcher& dispatcher)
      : control_(control), list_(list), rows_(control) {
    list.setModel(&rows_);
    list.setUniformItemSizes(true);
    list.setEditTriggers(QAbstractItemView::NoEditTriggers);
    rows_.ticked = [this, &dispatcher](std::size_t row) {
      dispatcher.Later(control_.screen(), [this, row] {
        if (control_.onTick) control_.onTick(row);
      });
    };
    QObject::connect(list.selectionModel(), &QItemSelectionModel::currentChanged, &list,
                     [this, &dispatcher](const QModelIndex& index) {
                       if (dispatcher.IsMirroring() || !index.isValid()) return;
                       control_.activeRow = std::size_t(index.row());
                       if (QGuiApplication::mouseButtons() != Qt::NoButton) return;
                       dispatcher.Later(control_.screen(), control_.onClick);  // by the keyboard
                     });
    QObject::connect(&list, &QListView::clicked, &list,
                     [this, &dispatcher] { dispatcher.Run(control_.onClick); });
  }

  void Mirror() override {
    MirrorState(control_, list_);
    rows_.Take();
    const int row = control_.activeRow < control_.rows.size() ? int(control_.activeRow) : -1;
    if (list_.currentIndex().row() != row) list_.setCurrentIndex(row < 0 ? QModelIndex() : rows_.index(row));
  }

 private:
  ListBox& control_;
  QListView& list_;
  TickRows rows_;
};

}  // namespace

std::unique_ptr<Binding> BindListBox(ListBox& control, QWidget& widget, Dispatcher& dispatcher) {
  auto* list = qobject_cast<QListView*>(&widget);
  return list ? std::make_unique<ListBoxBinding>(control, *list, dispatcher) : nullptr;
}

}  // namespace ktl
