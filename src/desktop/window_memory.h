#pragma once

#include <QMap>
#include <QString>

class QWidget;

namespace ktl {

// What a person has arranged lasts beyond the program: in a file of the user's own, under the names that main
// has given to the application. An application without a name remembers nothing.

// The window's size and place, under its screen's name.
void RestorePlace(QWidget& window, const QString& screen);
void KeepPlace(const QWidget& window, const QString& screen);

// The widths of a grid's columns that were dragged, by their captions.
class ColumnWidths {
 public:
  explicit ColumnWidths(QString grid);

  int Of(const QString& caption) const { return widths_.value(caption, 0); }  // 0 where it was never dragged
  bool Any() const { return !widths_.isEmpty(); }
  void Keep(const QString& caption, int width);
  void Forget();

 private:
  void Store() const;

  QString grid_;
  QMap<QString, int> widths_;
};

}  // namespace ktl
