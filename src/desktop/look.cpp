#include "desktop/look.h"

#include <QApplication>
#include <QFontDatabase>
#include <QIcon>
#include <QPalette>
#include <QStyleFactory>
#include <utility>

// Outside of any namespace, as the macro wants it. A static library does not do it by itself.
static void LoadPictures() { Q_INIT_RESOURCE(look); }

namespace ktl {
namespace {

constexpr const char* kStyleSheet = R"(
QMessageBox, #waitingBox { background: #ffffff; }
QMessageBox QLabel#qt_msgbox_label { padding: 6px 10px 6px 2px; }
QToolTip { background: #fffbe6; color: #1f2933; border: 1px solid #d9cf9c; padding: 3px; }

#formBody, #formBody > QWidget, #formBody > QWidget > QWidget { background: transparent; }

#titleBand { background: #24456b; }
#titleText { color: #ffffff; font-size: 13pt; font-weight: 600; }
#subjectText { color: #d5e3f3; }
#statusLine { background: #e4eaf2; border-top: 1px solid #d0d8e2; }
#statusWhy { color: #9a3412; font-weight: 600; }

QGroupBox { font-weight: 600; color: #24456b; border: 1px solid #d6dde6; border-radius: 6px; margin-top: 10px;
            padding: 6px 2px 2px 2px; background: #ffffff; }
QGroupBox::title { subcontrol-origin: margin; left: 10px; padding: 0 4px; }

QFrame[panel="true"] { border: 1px solid #d6dde6; border-radius: 6px; background: #ffffff; }

QLineEdit, QPlainTextEdit { border: 1px solid #c3ccd8; border-radius: 4px; padding: 3px 5px;
                            background: palette(base); }
QLineEdit:focus, QPlainTextEdit:focus { border: 1px solid #2f6fb3; }
QLineEdit:read-only { background: #f4f6f9; }
QLineEdit:disabled { border-color: #dde2e9; background: #f1f3f6; color: #566371; }
QLabel#emptyWords { color: #5a6673; background: transparent; padding: 0 24px; }
QTableView QLineEdit { border: 0; border-radius: 0; padding: 0 2px; background: palette(base); }

QComboBox { border: 1px solid #c3ccd8; border-radius: 4px; padding: 3px 5px; background: palette(base); }
QComboBox:focus, QComboBox:on { border: 1px solid #2f6fb3; }
QComboBox:disabled { border-color: #dde2e9; background: #f1f3f6; color: #566371; }
QComboBox QLineEdit { border: 0; border-radius: 0; padding: 0; background: transparent; }
QComboBox::drop-down { border: 0; width: 20px; }
QComboBox::down-arrow { image: url(:/look/arrow.xpm); width: 9px; height: 5px; }
QComboBox::down-arrow:disabled { image: none; }
QComboBox QAbstractItemView { border: 1px solid #c3ccd8; background: #ffffff; selection-background-color: #2f6fb3; }

#suggestions { border: 1px solid #8fb4dc; border-radius: 0; background: #ffffff;
               selection-background-color: #2f6fb3; selection-color: #ffffff; }
QComboBox[unknown="true"] { color: #c23030; }

QPushButton { padding: 5px 12px; border: 1px solid #c3ccd8; border-radius: 5px; background: #ffffff; }
QPushButton:hover { background: #eaf2fb; border-color: #2f6fb3; }
QPushButton:pressed { background: #d5e5f6; }
QPushButton:focus { border: 1px solid #2f6fb3; outline: none; }
QPushButton:disabled { color: #5f6b78; background: #f1f3f6; border-color: #dde2e9; }
QPushButton[primary="true"] { background: #2f6fb3; border-color: #2f6fb3; color: #ffffff; font-weight: 600; }
QPushButton[primary="true"]:hover { background: #275f9b; }
QPushButton[primary="true"]:focus { border: 1px solid #163a61; }
QPushButton[primary="true"]:disabled { background: #d9e2ed; border-color: #d9e2ed; color: #56677c; }
QPushButton[choice="true"] { padding: 2px 4px; }
QPushButton[choice="true"]:focus { border: 2px solid #2f6fb3; }
QPushButton[compact="true"] { padding: 4px 7px; }
QPushButton::menu-indicator { subcontrol-position: right center; right: 6px; }

QLabel[chip="true"] { padding: 2px 10px; border: 1px solid #c3ccd8; border-radius: 9px; background: palette(window); }
QLabel[link="true"] { color: #2f6fb3; text-decoration: underline; }

QHeaderView { background: #e4eaf2; border: 0; }
QHeaderView::section { background: #e4eaf2; color: #24456b; font-weight: 600; padding: 5px 4px; border: 0;
                       border-right: 1px solid #d0d8e2; border-bottom: 1px solid #c3ccd8; }
QTableView, QListView { border: 1px solid #d6dde6; border-radius: 4px; }
QTableView { gridline-color: #e3e8ee; }
QTableView:focus, QListView:focus { border: 1px solid #8fb4dc; }

QTabWidget::pane { border: 1px solid #d6dde6; border-radius: 4px; top: -1px; background: #ffffff; }
QTabBar::tab { padding: 6px 16px; border: 1px solid #d6dde6; border-bottom: 0; border-top-left-radius: 5px;
               border-top-right-radius: 5px; background: #e6ebf2; margin-right: 2px; }
QTabBar::tab:selected { background: #ffffff; color: #2f6fb3; }
QTabBar::tab:disabled { color: #5a6673; }

QScrollBar:vertical { width: 11px; background: #eef1f5; border: 0; margin: 0; }
QScrollBar:horizontal { height: 11px; background: #eef1f5; border: 0; margin: 0; }
QScrollBar::handle { background: #a9b4c2; border-radius: 4px; margin: 1px; }
QScrollBar::handle:vertical { min-height: 28px; }
QScrollBar::handle:horizontal { min-width: 28px; }
QScrollBar::handle:hover { background: #7d8a9a; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }

QProgressBar { border: 1px solid #c3ccd8; border-radius: 4px; background: #ffffff; text-align: center; }
QProgressBar::chunk { background: #2f6fb3; border-radius: 3px; }
)";

QPalette Palette() {
  constexpr std::pair<QPalette::ColorRole, const char*> kShades[] = {{QPalette::Window, "#f0f3f7"},
                                                                     {QPalette::WindowText, "#1f2933"},
                                                                     {QPalette::Base, "#ffffff"},
                                                                     {QPalette::AlternateBase, "#f7f9fc"},
                                                                     {QPalette::Text, "#1f2933"},
                                                                     {QPalette::Button, "#f8fafc"},
                                                                     {QPalette::ButtonText, "#1f2933"},
                                                                     {QPalette::Highlight, "#2f6fb3"},
                                                                     {QPalette::HighlightedText, "#ffffff"},
                                                                     {QPalette::ToolTipBase, "#fffbe6"},
                                                                     {QPalette::ToolTipText, "#1f2933"},
                                                                     {QPalette::PlaceholderText, "#5f6b78"},
                                                                     {QPalette::Link, "#2f6fb3"}};
  QPalette palette;
  for (const auto& [role, shade] : kShades) palette.setColor(role, QColor(shade));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor("#5f6b78"));
  }
  palette.setColor(QPalette::Disabled, QPalette::Base, QColor("#f1f3f6"));
  palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor("#c5ccd6"));
  palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor("#2f6fb3"));
  return palette;
}

void SetFont(QApplication& application) {
  const QStringList families = QFontDatabase::families();
  for (const char* family : {"Segoe UI", "Open Sans", "Noto Sans", "DejaVu Sans"}) {
    if (!families.contains(QLatin1String(family))) continue;
    QFont font{QLatin1String(family)};
    font.setPointSizeF(font.family() == QLatin1String("DejaVu Sans") ? 8.5 : 9);  // its letters are wider
    application.setFont(font);
    return;
  }
}

}  // namespace

void ApplyLook(QApplication& application) {
  LoadPictures();
  application.setStyle(QStyleFactory::create("Fusion"));
  SetFont(application);
  application.setPalette(Palette());
  application.setStyleSheet(kStyleSheet);
  application.setWindowIcon(QIcon(QStringLiteral(":/look/KTLStIns.png")));
}

QColor ColourOf(Colour colour) {
  switch (colour) {
    case kWindowColour:
      return QColor("#ffffff");
    case kToolTipColour:
      return QColor("#fff9e0");
    case kButtonFaceColour:
      return QColor("#eef1f5");
    default:
      if (colour & 0x80000000u) return QColor("#eef1f5");
      return QColor(int(colour & 0xFF), int(colour >> 8 & 0xFF), int(colour >> 16 & 0xFF));
  }
}

}  // namespace ktl
