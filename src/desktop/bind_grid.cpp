#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QTableView>
#include <algorithm>

#include "desktop/binding.h"
#include "desktop/dispatcher.h"
#include "desktop/empty_words.h"
#include "desktop/grid_copy.h"
#include "desktop/grid_delegate.h"
#include "desktop/grid_foot.h"
#include "desktop/grid_model.h"
#include "desktop/grid_sums.h"
#include "desktop/window_memory.h"

namespace ktl {
namespace {

struct Share {
  int wanted;
  int least;  // never less than the heading needs
};

// What is left of the space is shared in proportion; where the columns want more, they give way down to their
// least.
std::vector<int> SharedWidths(const std::vector<Share>& shares, int space) {
  Share total{};
  for (const Share& share : shares) total = {total.wanted + share.wanted, total.least + share.least};
  std::vector<int> widths;
  Share done{};  // sums, so that the widths add up to the pixel
  int taken = 0;
  for (const Share& share : shares) {
    done = {done.wanted + share.wanted, done.least + share.least};
    int edge = done.least;
    if (space >= total.wanted) {
      edge = int(qint64(space) * done.wanted / total.wanted);
    } else if (space > total.least) {
      edge += int(qint64(space - total.least) * (done.wanted - done.least) / (total.wanted - total.least));
    }
    widths.push_back(edge - taken);
    taken = edge;
  }
  return widths;
}

class GridBinding final : public Binding {
 public:
  GridBinding(Grid& control, QTableView& view, Dispatcher& dispatcher)
      : control_(control),
        view_(view),
        dispatcher_(dispatcher),
        model_(control),
        widths_(ToQt(control.screen().name() + '.' + control.name())),
        emptyWords_(*new EmptyWords(view)) {
    SetUpView();
    Connect();
    if (!control.summed.empty()) GridFoot::Under(view, model_, control);
  }

  void Mirror() override {
    MirrorState(control_, view_);
    if (model_.Take()) {
      const Arranging arranging(arranging_);
      delegate_.framesCurrentCell = model_.HasEditedColumn();
      for (int i = 0; i < model_.columnCount(); ++i) view_.setColumnHidden(i, model_.Column(i).hidden);
      hiddenRows_.clear();
      ShareWidth();
    }
    MirrorHiddenRows();
    MirrorActiveRow();
    emptyWords_.Show(HasNoRow());
  }
  bool EnterMovesOn() const override { return false; }
  QString SelectionWords() const override { return ktl::SelectionWords(view_, model_, control_); }
  bool Filter(QEvent& event) override;

 private:
  void SetUpView();
  void Connect();
  bool KeyPress(const QKeyEvent& key);
  void ShareWidth();
  bool HasNoRow() const {
    return std::all_of(control_.rows.begin(), control_.rows.end(),
                       [](const GridRow& row) { return row.hidden; });
  }
  void MirrorHiddenRows();
  void MirrorActiveRow();
  void CurrentChanged(const QModelIndex& current, const QModelIndex& before);
  void RaiseRowClick();
  void Edited(std::size_t row, std::size_t column, const std::string& text);
  void DblClicked(const QModelIndex& index);
  void AddCopies(QMenu& menu, const QModelIndex& cell);
  void ShowMenu(const QPoint& place);
  void SetSelectionMode();
  void MoveBelow();
  void Paste();
  void Copy(const QString& text) { QGuiApplication::clipboard()->setText(text); }

  // While one lives, no width is a person's doing.
  class Arranging {
   public:
    explicit Arranging(bool& arranging) : arranging_(arranging), before_(std::exchange(arranging, true)) {}
    ~Arranging() { arranging_ = before_; }
    Arranging(const Arranging&) = delete;
    Arranging& operator=(const Arranging&) = delete;

   private:
    bool& arranging_;
    const bool before_;
  };

  Grid& control_;
  QTableView& view_;
  Dispatcher& dispatcher_;
  GridModel model_;
  ColumnWidths widths_;
  EmptyWords& emptyWords_;  // the view owns it
  bool arranging_ = false;
  GridDelegate delegate_;
  std::vector<bool> hiddenRows_;
  bool rowMoved_ = false;  // another row is the active one and no click has told the screen yet
  bool ticked_ = false;    // the click that is under way has toggled a cell
};

void GridBinding::SetUpView() {
  view_.setModel(&model_);
  view_.setItemDelegate(&delegate_);
  SetSelectionMode();
  view_.setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                        QAbstractItemView::AnyKeyPressed | QAbstractItemView::EditKeyPressed);
  view_.setAlternatingRowColors(true);
  view_.setWordWrap(false);
  view_.setTabKeyNavigation(false);
  view_.setContextMenuPolicy(Qt::CustomContextMenu);
  view_.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  view_.verticalHeader()->hide();
  view_.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  view_.verticalHeader()->setDefaultSectionSize(view_.fontMetrics().height() + 9);
  view_.horizontalHeader()->setSectionsClickable(false);
  view_.horizontalHeader()->setHighlightSections(false);
}

// Cells where blocks of them are pasted; one row where a click on it shows what it stands for; else rows.
void GridBinding::SetSelectionMode() {
  view_.setSelectionBehavior(control_.onPaste ? QAbstractItemView::SelectItems
                                              : QAbstractItemView::SelectRows);
  const bool oneRow = control_.onRowClick && !control_.onPaste;
  view_.setSelectionMode(oneRow ? QAbstractItemView::SingleSelection : QAbstractItemView::ExtendedSelection);
}

void GridBinding::Connect() {
  model_.edited = [this](std::size_t row, std::size_t column, std::string text) {
    ticked_ = model_.TypeOf(model_.index(int(row), int(column))) == CellType::Tick;
    // The editor is still open: what the screen does about it waits until it is closed.
    dispatcher_.Later(control_.screen(), [=, this] { Edited(row, column, text); });
  };
  delegate_.entered = [this] {
    dispatcher_.Later(control_.screen(), [this, row = view_.currentIndex().row()] {
      if (view_.currentIndex().row() == row) MoveBelow();
    });
  };
  QObject::connect(
      view_.selectionModel(), &QItemSelectionModel::currentChanged, &view_,
      [this](const QModelIndex& now, const QModelIndex& before) { CurrentChanged(now, before); });
  QObject::connect(view_.horizontalHeader(), &QHeaderView::sectionResized, &view_,
                   [this](int column, int, int width) {
                     if (!arranging_ && width > 0) widths_.Keep(ToQt(model_.Column(column).caption), width);
                   });
  QObject::connect(&view_, &QTableView::clicked, &view_, [this] {
    if (std::exchange(ticked_, false)) return;
    dispatcher_.Run([this] { RaiseRowClick(); });
  });
  QObject::connect(&view_, &QTableView::doubleClicked, &view_,
                   [this](const QModelIndex& index) { DblClicked(index); });
  QObject::connect(&view_, &QTableView::customContextMenuRequested, &view_,
                   [this](const QPoint& place) { ShowMenu(place); });
}

// Events of the view and of the area that shows its cells.
bool GridBinding::Filter(QEvent& event) {
  switch (event.type()) {
    case QEvent::KeyPress:
      return KeyPress(static_cast<QKeyEvent&>(event));
    case QEvent::FocusIn:  // the view would make its first row the current one, which nobody has clicked
      if (view_.currentIndex().isValid()) return false;
      view_.update();
      return true;
    case QEvent::MouseMove:  // no selecting by dragging: a row that is active without a click would mislead
      return !control_.onPaste && static_cast<QMouseEvent&>(event).buttons() != Qt::NoButton;
    case QEvent::MouseButtonRelease:
      if (view_.indexAt(static_cast<QMouseEvent&>(event).position().toPoint()) != view_.currentIndex() &&
          rowMoved_) {
        dispatcher_.Later(control_.screen(), [this] { RaiseRowClick(); });
      }
      return false;
    case QEvent::Resize:
      ShareWidth();
      emptyWords_.Show(HasNoRow());
      return false;
    default:
      return false;
  }
}

bool GridBinding::KeyPress(const QKeyEvent& key) {
  if (!view_.hasFocus()) return false;  // on its way up from the editor of a cell
  if (key.matches(QKeySequence::Copy)) {
    Copy(CopiedSelection(view_, model_));
    return true;
  }
  if (key.key() == Qt::Key_C && key.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier)) {
    Copy(CopiedText(view_, model_, CopyRange::AllRows));
    return true;
  }
  const QModelIndex current = view_.currentIndex();
  if (!current.isValid()) return false;
  if (key.matches(QKeySequence::Paste) && control_.onPaste) {
    Paste();
    return true;
  }
  if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
  if (control_.onDblClick && !(current.flags() & (Qt::ItemIsEditable | Qt::ItemIsUserCheckable))) {
    DblClicked(current);
  } else {
    MoveBelow();
  }
  return true;
}

void GridBinding::Paste() {
  const std::string block = QGuiApplication::clipboard()->text().toStdString();
  dispatcher_.Run([this, range = SelectedRange(view_), block] { control_.onPaste(range, block); });
}

void GridBinding::MoveBelow() {
  const QModelIndex current = view_.currentIndex();
  int row = current.row() + 1;
  while (row < model_.rowCount() && view_.isRowHidden(row)) ++row;
  if (row < model_.rowCount()) view_.setCurrentIndex(model_.index(row, current.column()));
}

// A column that was dragged keeps its width; the others share what is left.
void GridBinding::ShareWidth() {
  const Arranging arranging(arranging_);
  const QHeaderView& header = *view_.horizontalHeader();
  std::vector<Share> shares;
  std::vector<int> columns;
  int space = view_.viewport()->width();
  for (int i = 0; i < model_.columnCount(); ++i) {
    const GridColumn& column = model_.Column(i);
    if (column.hidden) continue;
    const int heading = column.caption.empty() ? 0 : header.sectionSizeHint(i) + 6;
    const int wanted = std::max(column.width, heading);
    const int dragged = widths_.Of(ToQt(column.caption));
    if (column.type == CellType::Tick || dragged > 0) {
      view_.setColumnWidth(i, dragged > 0 ? dragged : wanted);
      space -= view_.columnWidth(i);
    } else {
      columns.push_back(i);
      shares.push_back({wanted, std::max(column.width * 4 / 5, heading)});
    }
  }
  const std::vector<int> widths = SharedWidths(shares, space);
  for (std::size_t i = 0; i < widths.size(); ++i) view_.setColumnWidth(columns[i], widths[i]);
}

void GridBinding::MirrorHiddenRows() {
  hiddenRows_.resize(control_.rows.size(), false);
  for (std::size_t row = 0; row < hiddenRows_.size(); ++row) {
    if (hiddenRows_[row] == control_.rows[row].hidden) continue;
    hiddenRows_[row] = control_.rows[row].hidden;
    view_.setRowHidden(int(row), hiddenRows_[row]);
  }
}

void GridBinding::MirrorActiveRow() {
  const int row = control_.activeRow < control_.rows.size() ? int(control_.activeRow) : -1;
  if (view_.currentIndex().row() == row) return;
  int column = int(control_.activeColumn);
  while (column < model_.columnCount() && model_.Column(column).hidden) ++column;
  view_.setCurrentIndex(row < 0 ? QModelIndex() : model_.index(row, column));
  if (row < 0) view_.clearSelection();
}

void GridBinding::CurrentChanged(const QModelIndex& current, const QModelIndex& before) {
  if (dispatcher_.IsMirroring() || !current.isValid()) return;
  control_.activeRow = std::size_t(current.row());
  control_.activeColumn = std::size_t(current.column());
  if (current.row() == before.row()) return;
  rowMoved_ = true;
  // By the keyboard it is as good as a click, else what the screen works on is not the row that is marked.
  if (QGuiApplication::mouseButtons() == Qt::NoButton) {
    dispatcher_.Later(control_.screen(), [this] {
      if (rowMoved_) RaiseRowClick();
    });
  }
}

void GridBinding::RaiseRowClick() {
  rowMoved_ = false;
  if (control_.activeRow >= control_.rows.size()) return;
  if (const CellHandler handler = control_.onRowClick) handler(control_.activeRow, control_.activeColumn);
}

// The click on another row comes first; its handler may fill the grid anew.
void GridBinding::Edited(std::size_t row, std::size_t column, const std::string& text) {
  if (rowMoved_) RaiseRowClick();
  ticked_ = false;
  const bool there = row < control_.rows.size() && column < control_.rows[row].cells.size();
  if (there && !control_.IsLocked(row, column) && control_.At(row, column).text != text) {
    control_.At(row, column).text = text;
    if (const CellHandler handler = control_.onCellChange) handler(row, column);
  }
}

void GridBinding::DblClicked(const QModelIndex& index) {
  if (!control_.onDblClick) return;
  dispatcher_.Run([this, row = std::size_t(index.row()), column = std::size_t(index.column())] {
    if (rowMoved_) RaiseRowClick();
    const CellHandler handler = control_.onDblClick;
    if (row < control_.rows.size()) handler(row, column);
  });
}

void GridBinding::AddCopies(QMenu& menu, const QModelIndex& cell) {
  QAction* one = menu.addAction(QStringLiteral("Copy Cell"));
  one->setEnabled(cell.isValid());
  QObject::connect(one, &QAction::triggered, &menu, [this, cell] { Copy(CellText(model_, cell)); });
  QAction* selected = menu.addAction(QStringLiteral("Copy Selected Rows"));
  selected->setEnabled(view_.selectionModel()->hasSelection());
  QObject::connect(selected, &QAction::triggered, &menu,
                   [this] { Copy(CopiedText(view_, model_, CopyRange::SelectedRows)); });
  QAction* all = menu.addAction(QStringLiteral("Copy All Rows\tCtrl+Shift+C"));
  QObject::connect(all, &QAction::triggered, &menu,
                   [this] { Copy(CopiedText(view_, model_, CopyRange::AllRows)); });
  if (!control_.onExport) return;
  QAction* file = menu.addAction(QStringLiteral("Export to a Workbook"));
  QObject::connect(file, &QAction::triggered, &menu, [this] { dispatcher_.Run(control_.onExport); });
}

void GridBinding::ShowMenu(const QPoint& place) {
  if (rowMoved_) dispatcher_.Run([this] { RaiseRowClick(); });
  QMenu menu(&view_);
  FillMenu(menu, control_.popup, dispatcher_);
  if (widths_.Any()) {
    QObject::connect(menu.addAction(QStringLiteral("Columns as They Were")), &QAction::triggered, &menu,
                     [this] {
                       widths_.Forget();
                       ShareWidth();
                     });
  }
  if (!menu.isEmpty()) menu.addSeparator();
  AddCopies(menu, view_.indexAt(place));
  menu.exec(view_.viewport()->mapToGlobal(place));
}

}  // namespace

std::unique_ptr<Binding> BindGrid(Grid& control, QWidget& widget, Dispatcher& dispatcher) {
  auto* view = qobject_cast<QTableView*>(&widget);
  return view ? std::make_unique<GridBinding>(control, *view, dispatcher) : nullptr;
}

}  // namespace ktl
