#include "desktop/form_help.h"

#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QTableView>
#include <algorithm>

namespace ktl {
namespace {

// A property that a form gives to the field that Ctrl+F goes to; else it is the employee.
constexpr const char* kFinds = "finds";

void OnKeys(QDialog& window, QKeySequence keys, std::function<void()> act) {
  auto* shortcut = new QShortcut(keys, &window);  // the window owns it
  QObject::connect(shortcut, &QShortcut::activated, &window, std::move(act));
}

void Press(const QWidget& form, const char* name) {
  auto* button = form.findChild<QPushButton*>(QLatin1String(name));
  if (button && button->isVisible() && button->isEnabled()) button->click();
}

void GoToFinder(const QWidget& form) {
  const auto fields = form.findChildren<QWidget*>();
  const auto marked = std::find_if(fields.begin(), fields.end(),
                                   [](const QWidget* widget) { return widget->property(kFinds).toBool(); });
  QWidget* finder = marked == fields.end() ? form.findChild<QWidget*>(QStringLiteral("cmbEmpName")) : *marked;
  if (finder && finder->isVisible() && finder->isEnabled()) finder->setFocus(Qt::ShortcutFocusReason);
}

QString Plain(QString text) { return text.remove('&').trimmed(); }

bool HasLetters(const QString& text) {
  return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
}

QString WordsOf(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) return Plain(label->text());
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) return Plain(button->text());
  return {};
}

bool IsControl(const QWidget& widget) {
  if (qobject_cast<const QAbstractItemView*>(widget.parentWidget())) return false;
  if (qobject_cast<const QLineEdit*>(&widget)) return !qobject_cast<const QComboBox*>(widget.parentWidget());
  return qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QPlainTextEdit*>(&widget) ||
         qobject_cast<const QTableView*>(&widget) || qobject_cast<const QListView*>(&widget) ||
         qobject_cast<const QProgressBar*>(&widget) || qobject_cast<const QAbstractButton*>(&widget) ||
         qobject_cast<const QTabWidget*>(&widget);
}

QString TitleAround(const QWidget& widget) {
  for (const QWidget* holder = widget.parentWidget(); holder; holder = holder->parentWidget()) {
    if (const auto* group = qobject_cast<const QGroupBox*>(holder)) return Plain(group->title());
    const auto* tabs = holder->parentWidget()
                           ? qobject_cast<const QTabWidget*>(holder->parentWidget()->parentWidget())
                           : nullptr;
    const int page = tabs ? tabs->indexOf(const_cast<QWidget*>(holder)) : -1;
    if (page >= 0) return Plain(tabs->tabText(page));
  }
  return Plain(widget.window()->windowTitle());
}

}  // namespace

void AddShortcuts(QDialog& window, QWidget& form) {
  OnKeys(window, QKeySequence::Save, [&form] { Press(form, "cmdSave"); });
  OnKeys(window, QKeySequence::New, [&form] { Press(form, "cmdNew"); });
  OnKeys(window, QKeySequence::Find, [&form] { GoToFinder(form); });
}

void NameControls(QWidget& form) {
  QMap<const QWidget*, QString> labels;
  for (const auto* label : form.findChildren<QLabel*>()) {
    if (label->buddy()) labels[label->buddy()] = WordsOf(*label);
  }
  QString before;  // the words of what stands before
  for (QWidget* widget : form.findChildren<QWidget*>()) {
    const QString own = WordsOf(*widget);
    if (IsControl(*widget)) {
      QString name = HasLetters(own) ? own : labels.value(widget);
      const bool holds = qobject_cast<QAbstractItemView*>(widget) || qobject_cast<QTabWidget*>(widget) ||
                         qobject_cast<QProgressBar*>(widget);
      if (name.isEmpty() && !holds) name = before;
      if (name.isEmpty()) name = TitleAround(*widget);
      if (name.isEmpty()) name = holds ? QStringLiteral("List") : QStringLiteral("Choose");
      if (widget->accessibleName() != name) widget->setAccessibleName(name);
      before = name;
    } else if (HasLetters(own)) {
      before = own;
    }
  }
}

}  // namespace ktl
