#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QStyle>

#include "desktop/binding.h"
#include "desktop/dispatcher.h"
#include "desktop/list_rows.h"
#include "desktop/suggestions.h"
#include "runtime/text.h"

namespace ktl {
namespace {

constexpr int kListWidthWithBeside = 360;
constexpr int kArrowWidth = 22;

class ComboBoxBinding final : public Binding {
 public:
  ComboBoxBinding(ComboBox& control, QComboBox& combo, Dispatcher& dispatcher)
      : control_(control),
        combo_(combo),
        dispatcher_(dispatcher),
        rows_(control),
        suggestions_(combo, rows_) {
    combo_.setEditable(control_.editable);
    combo_.setModel(&rows_);
    combo_.setInsertPolicy(QComboBox::NoInsert);
    combo_.setMaxVisibleItems(16);
    combo_.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    SetUpList();
    if (control_.editable) SetUpSuggestions();
    QObject::connect(&combo_, &QComboBox::editTextChanged, &combo_,
                     [this](const QString& text) { Typed(text); });
    QObject::connect(&combo_, &QComboBox::currentIndexChanged, &combo_, [this](int row) {
      if (row >= 0) Chosen(std::size_t(row));
    });
  }

  void Mirror() override {
    MirrorState(control_, combo_);
    colours_.Mirror(control_, combo_);
    rows_.Take();
    MirrorText();
    QLineEdit* edit = combo_.lineEdit();
    if (!edit) return;
    if (edit->isReadOnly() != control_.locked) edit->setReadOnly(control_.locked);
    if (!combo_.hasFocus()) edit->setCursorPosition(0);  // a long text shows its beginning
  }

  bool Filter(QEvent& event) override {
    switch (event.type()) {
      case QEvent::Wheel:  // scrolling past a field must not change it
        event.ignore();    // ... but scrolls on what it lies in
        return !combo_.hasFocus() || control_.locked;
      case QEvent::MouseButtonPress:
        return control_.locked || WaitsForDblClick(static_cast<QMouseEvent&>(event));
      case QEvent::MouseButtonDblClick:
        return RaiseDblClick();
      case QEvent::FocusOut:
        suggestions_.hide();
        return false;
      case QEvent::KeyPress:
        return KeyPress(static_cast<QKeyEvent&>(event));
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

  void SetUpList() {
    combo_.setItemDelegate(&delegate_);
    if (auto* list = qobject_cast<QListView*>(combo_.view())) list->setUniformItemSizes(true);
    if (control_.beside) combo_.view()->setMinimumWidth(kListWidthWithBeside);
  }
  void SetUpSuggestions() {
    combo_.setCompleter(nullptr);
    suggestions_.chosen = [this](int row) { Choose(row); };
    QObject::connect(combo_.lineEdit(), &QLineEdit::textEdited, &combo_, [this](const QString& text) {
      edited_ = true;
      Offer(text.toStdString());
    });
  }

  // What is typed is searched at every key. A text that only one row has needs no list any more.
  void Offer(const std::string& typed) {
    rows_.Take();
    std::vector<int> holding = typed.empty() ? std::vector<int>() : rows_.Holding(typed);
    MarkUnknown(!typed.empty() && holding.empty());
    const bool settled = holding.size() == 1 && rows_.Having(typed).size() == 1;
    suggestions_.Offer(settled ? std::vector<int>() : std::move(holding));
  }
  void MarkUnknown(bool unknown) {
    if (combo_.property("unknown").toBool() == unknown) return;
    combo_.setProperty("unknown", unknown);
    combo_.style()->unpolish(&combo_);
    combo_.style()->polish(&combo_);
  }

  // A list that opened at the first click would take the second one: it opens at its arrow alone.
  bool WaitsForDblClick(const QMouseEvent& press) {
    if (!control_.onDblClick || press.position().x() >= combo_.width() - kArrowWidth) return false;
    combo_.setFocus(Qt::MouseFocusReason);
    return true;
  }
  bool RaiseDblClick() {
    if (!control_.onDblClick || !control_.IsUsable()) return false;
    dispatcher_.Run(control_.onDblClick);
    return true;
  }

  bool KeyPress(const QKeyEvent& key) {
    if (key.key() == Qt::Key_F2) return RaiseDblClick();
    if (control_.locked) return ChangesText(key);
    const bool ends = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_Tab;
    if (ends) return !TakeTyped();
    return suggestions_.isVisible() && suggestions_.PassKey(key.key());
  }

  // The marked row, or the only one that can be meant. False when several can: their list is open then.
  bool TakeTyped() {
    const int marked = suggestions_.MarkedRow();
    if (marked >= 0) return Choose(marked);
    if (!edited_) return true;
    const std::string typed = combo_.currentText().toStdString();
    if (typed.empty()) return true;
    std::vector<int> meant = rows_.Having(typed);
    if (meant.empty()) meant = rows_.Holding(typed);
    if (meant.size() == 1) return Choose(meant.front());
    suggestions_.Offer(meant);
    return meant.empty();
  }
  bool Choose(int row) {
    suggestions_.hide();
    Chosen(static_cast<std::size_t>(row));
    return true;
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
    edited_ = false;
    MarkUnknown(false);
    dispatcher_.Run([this, row] {
      if (row < control_.Rows().size()) control_.ChooseRow(row);
    });
  }

  void MirrorText() {
    const std::string& text = control_.Text();
    const int row = RowOf(text);
    QLineEdit* edit = combo_.lineEdit();
    const int cursor = edit ? edit->cursorPosition() : 0;  // another row, and none too, moves it
    const QString shown = ToQt(text);
    if (combo_.currentText() != shown) edited_ = false;
    if (combo_.currentIndex() != row) combo_.setCurrentIndex(row);
    if (!edit) return;
    if (combo_.currentText() != shown) combo_.setEditText(shown);
    if (row >= 0 || text.empty()) MarkUnknown(false);
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
  BesideDelegate delegate_;
  Suggestions suggestions_;
  ColourMirror colours_;
  bool edited_ = false;  // typed into since a row was chosen
};

}  // namespace

std::unique_ptr<Binding> BindComboBox(ComboBox& control, QWidget& widget, Dispatcher& dispatcher) {
  auto* combo = qobject_cast<QComboBox*>(&widget);
  return combo ? std::make_unique<ComboBoxBinding>(control, *combo, dispatcher) : nullptr;
}

}  // namespace ktl
