#include <QAbstractItemView>
#include <QAbstractListModel>
#include <QAbstractProxyModel>
#include <QComboBox>
#include <QCompleter>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QTimer>

#include "desktop/binding.h"
#include "desktop/dispatcher.h"
#include "runtime/text.h"

namespace ktl {
namespace {

// The rows as they were when the widget was last brought up to date.
class ListRows final : public QAbstractListModel {
 public:
  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : int(rows_.size());
  }
  QVariant data(const QModelIndex& index, int role) const override {
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole)) return {};
    return ToQt(rows_[std::size_t(index.row())].text);
  }
  const std::vector<ListRow>& Rows() const { return rows_; }
  void Take(const ComboBox& control) {
    if (version_ == control.RowsVersion()) return;
    version_ = control.RowsVersion();
    if (rows_ == control.Rows()) return;
    beginResetModel();
    rows_ = control.Rows();
    endResetModel();
  }

 private:
  std::vector<ListRow> rows_;
  std::size_t version_ = 0;
};

// Sees Enter before the list of suggestions does, which would only close itself on it.
class SuggestionKeys final : public QObject {
 public:
  explicit SuggestionKeys(QComboBox& combo) : combo_(combo) {}

  bool eventFilter(QObject* target, QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return false;
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
    auto* list = static_cast<QAbstractItemView*>(target);
    const auto* suggestions = static_cast<const QAbstractProxyModel*>(combo_.completer()->completionModel());
    const QModelIndex chosen = suggestions->mapToSource(list->currentIndex());
    list->hide();
    if (chosen.isValid()) combo_.setCurrentIndex(chosen.row());
    QTimer::singleShot(0, &combo_, [this] {
      QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
      QCoreApplication::sendEvent(&combo_, &enter);
    });
    return true;
  }

 private:
  QComboBox& combo_;
};

class ComboBoxBinding final : public Binding {
 public:
  ComboBoxBinding(ComboBox& control, QComboBox& combo, Dispatcher& dispatcher)
      : control_(control), combo_(combo), dispatcher_(dispatcher), suggestionKeys_(combo) {
    combo_.setEditable(control_.editable);
    combo_.setModel(&rows_);
    combo_.setInsertPolicy(QComboBox::NoInsert);
    combo_.setMaxVisibleItems(16);
    combo_.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    if (control_.editable) SetSuggestions();
    QObject::connect(&combo_, &QComboBox::editTextChanged, &combo_,
                     [this](const QString& text) { Typed(text); });
    QObject::connect(&combo_, &QComboBox::currentIndexChanged, &combo_, [this](int row) {
      if (row >= 0) Chosen(std::size_t(row));
    });
  }

  void Mirror() override {
    MirrorState(control_, combo_);
    colours_.Mirror(control_, combo_);
    rows_.Take(control_);
    MirrorText();
    QLineEdit* edit = combo_.lineEdit();
    if (!edit) return;
    if (edit->isReadOnly() != control_.locked) edit->setReadOnly(control_.locked);
    if (!combo_.hasFocus()) edit->setCursorPosition(0);  // a long text shows its beginning
  }

  bool Filter(QEvent& event) override {
    switch (event.type()) {
      case QEvent::Wheel:  // scrolling past a field must not change it
        return !combo_.hasFocus() || control_.locked;
      case QEvent::MouseButtonPress:
        return control_.locked;
      case QEvent::KeyPress:
        return control_.locked && ChangesText(static_cast<QKeyEvent&>(event));
      default:
        return false;
    }
  }
  bool IsAtStart() const override {
    const QLineEdit* edit = combo_.lineEdit();
    return !edit || (edit->cursorPosition() == 0 && !edit->hasSelectedText());
  }
  Handler LeaveHandler() const override { return control_.onLeave; }
  bool IsField() const override { return !control_.locked; }
  void SelectText() override {
    if (combo_.lineEdit()) combo_.lineEdit()->selectAll();
  }

 private:
  static bool ChangesText(const QKeyEvent& key) {
    return !key.text().isEmpty() || key.key() == Qt::Key_Up || key.key() == Qt::Key_Down ||
           key.key() == Qt::Key_F4 || key.key() == Qt::Key_PageUp || key.key() == Qt::Key_PageDown;
  }

  void SetSuggestions() {
    QCompleter* completer = combo_.completer();
    completer->setCompletionMode(QCompleter::PopupCompletion);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    auto* list = qobject_cast<QListView*>(completer->popup());
    if (list) list->setUniformItemSizes(true);  // else each suggestion is measured at every key
    completer->popup()->installEventFilter(&suggestionKeys_);
  }

  // A choice in the list shows its text before the combo box tells of it.
  void Typed(const QString& text) {
    const int row = combo_.currentIndex();
    const std::string typed = text.toStdString();
    if (row >= 0 && rows_.Rows()[std::size_t(row)].text == typed) return Chosen(std::size_t(row));
    if (!dispatcher_.IsMirroring()) dispatcher_.Run([this, typed] { control_.SetText(typed); });
  }
  void Chosen(std::size_t row) {
    if (dispatcher_.IsMirroring()) return;
    dispatcher_.Run([this, row] {
      if (row < control_.Rows().size()) control_.ChooseRow(row);
    });
  }

  void MirrorText() {
    const std::string& text = control_.Text();
    const int row = RowOf(text);
    QLineEdit* edit = combo_.lineEdit();
    const int cursor = edit ? edit->cursorPosition() : 0;  // another row, and none too, moves it
    if (combo_.currentIndex() != row) combo_.setCurrentIndex(row);
    if (!edit) return;
    const QString shown = ToQt(text);
    if (combo_.currentText() != shown) combo_.setEditText(shown);
    if (edit->cursorPosition() != cursor) edit->setCursorPosition(std::min(cursor, int(shown.size())));
  }

  // Of several rows with the same text the one that is bound.
  int RowOf(const std::string& text) const {
    if (text.empty()) return -1;
    const auto& rows = control_.Rows();
    std::size_t found = control_.FindRow(text);
    if (found == ComboBox::kNoRow) return -1;
    const std::string value = control_.BoundText();
    for (std::size_t row = found; row < rows.size(); ++row) {
      if (rows[row].value == value && EqualsNoCase(rows[row].text, text)) return int(row);
    }
    return int(found);
  }

  ComboBox& control_;
  QComboBox& combo_;
  Dispatcher& dispatcher_;
  ListRows rows_;
  SuggestionKeys suggestionKeys_;
  ColourMirror colours_;
};

}  // namespace

std::unique_ptr<Binding> BindComboBox(ComboBox& control, QWidget& widget, Dispatcher& dispatcher) {
  auto* combo = qobject_cast<QComboBox*>(&widget);
  return combo ? std::make_unique<ComboBoxBinding>(control, *combo, dispatcher) : nullptr;
}

}  // namespace ktl
