#include "desktop/window_memory.h"

#include <QCoreApplication>
#include <QSettings>
#include <QWidget>

namespace ktl {
namespace {

bool Remembers() { return !QCoreApplication::organizationName().isEmpty(); }

QString PlaceKey(const QString& screen) { return QStringLiteral("places/") + screen; }

}  // namespace

void RestorePlace(QWidget& window, const QString& screen) {
  if (Remembers()) window.restoreGeometry(QSettings().value(PlaceKey(screen)).toByteArray());
}

void KeepPlace(const QWidget& window, const QString& screen) {
  if (Remembers()) QSettings().setValue(PlaceKey(screen), window.saveGeometry());
}

ColumnWidths::ColumnWidths(QString grid) : grid_(QStringLiteral("columns/") + grid) {
  if (!Remembers()) return;
  const QVariantMap stored = QSettings().value(grid_).toMap();
  for (auto each = stored.begin(); each != stored.end(); ++each) widths_[each.key()] = each.value().toInt();
}

void ColumnWidths::Keep(const QString& caption, int width) {
  widths_[caption] = width;
  Store();
}

void ColumnWidths::Forget() {
  widths_.clear();
  Store();
}

void ColumnWidths::Store() const {
  if (!Remembers()) return;
  QVariantMap stored;
  for (auto each = widths_.begin(); each != widths_.end(); ++each) stored[each.key()] = each.value();
  QSettings().setValue(grid_, stored);
}

}  // namespace ktl
