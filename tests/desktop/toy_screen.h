#pragma once

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>
#include <cctype>
#include <memory>
#include <string>
#include <vector>

#include "desktop/at_window.h"
#include "desktop/forms.h"
#include "screen/desk.h"
#include "screen/screen.h"

namespace ktl {

// A screen with a control of every kind. What its handlers hear goes into `heard`.
class ToyScreen final : public Screen {
 public:
  explicit ToyScreen(Desk& person) : Screen("toy"), desk(person) {
    caption = "Toy";
    Connect();
    FillLists();
  }

  Desk& desk;
  std::vector<std::string> heard;
  std::function<bool()> mayClose = [] { return true; };

  TextBox txtCount{*this, "txtCount"};
  TextBox txtAmount{*this, "txtAmount"};
  ComboBox cmbName{*this, "cmbName"};
  ComboBox cmbNumber{*this, "cmbNumber"};
  CheckBox chkAll{*this, "chkAll", "All"};
  Frame fmeMode{*this, "fmeMode", "Mode"};
  OptionButton optOne{*this, "optOne", "mode", "One"};
  OptionButton optTwo{*this, "optTwo", "mode", "Two"};
  Button cmdMore{*this, "cmdMore", "..."};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Label lblHelp{*this, "lblHelp", "Help"};
  Tabs tabPages{*this, "tabPages"};
  TextBox txtOnSecond{*this, "txtOnSecond"};
  Grid fpgRows{*this, "fpgRows"};
  ListBox lstPeople{*this, "lstPeople"};
  ProgressBar prgWork{*this, "prgWork"};
  Timer tmrTick{*this, "tmrTick"};
  Menu mnuExport{*this, "mnuExport", "E&xport"};

  ktl::Subject subject;

  ktl::Subject Subject() const override { return subject; }
  bool Form_QueryUnload() override { return mayClose(); }

 private:
  Handler Hears(std::string what) {
    return [this, what] { heard.push_back(what); };
  }
  std::function<void(std::size_t, std::size_t)> HearsRow(std::string what) {
    return [this, what](std::size_t row, std::size_t) { heard.push_back(what + std::to_string(row)); };
  }

  void Connect() {
    txtCount.onKeyPress = [](int key) { return std::isdigit(key) ? key : 0; };
    txtCount.onChange = [this] { heard.push_back("count " + txtCount.Text()); };
    txtAmount.onLeave = [this] { txtAmount.SetText(txtAmount.Text() + ".00"); };
    txtAmount.onDblClick = Hears("calendar");
    cmbName.onChange = [this] {
      heard.push_back("name " + cmbName.Text() + "=" + cmbName.BoundText());
      cmbNumber.SetBoundText(cmbName.BoundText());
    };
    cmbNumber.onChange = [this] {
      if (cmbNumber.BoundText() != cmbName.BoundText()) cmbName.SetBoundText(cmbNumber.BoundText());
    };
    chkAll.onClick = Hears("all");
    optTwo.onClick = Hears("two");
    cmdSave.onClick = [this] { heard.push_back("save " + txtAmount.Text()); };
    lblHelp.onClick = Hears("help");
    tabPages.pages = {{"First"}, {"Second"}, {"Third", false}};
    tabPages.onChange = [this] { heard.push_back("page " + std::to_string(tabPages.Current())); };
    fpgRows.onRowClick = HearsRow("row ");
    fpgRows.onCellChange = [this](std::size_t row, std::size_t column) {
      heard.push_back("cell " + std::to_string(row) + " " + fpgRows.Text(row, column));
    };
    fpgRows.onDblClick = HearsRow("open ");
    fpgRows.popup = {&mnuExport};
    lstPeople.onTick = [this](std::size_t row) { heard.push_back("tick " + std::to_string(row)); };
    mnuExport.onClick = Hears("export");
    fmeMode.Hold({optOne, optTwo});
  }

  void FillLists() {
    cmbName.beside = &cmbNumber;
    cmbNumber.beside = &cmbName;
    cmbName.SetRows({{"Asha Rao", "11"}, {"Dev Nair", "12"}, {"Dev Nair", "13"}, {"Ishaan", "14"}});
    cmbNumber.SetRows({{"K01", "11"}, {"K02", "12"}, {"K03", "13"}, {"K04", "14"}});
    lstPeople.withTicks = true;
    lstPeople.rows = {{"Asha", "11"}, {"Dev", "12"}};
    fpgRows.columns = {{"Pick", CellType::Tick, 40, false, false},
                       {"Month", CellType::Text, 80, false, false},
                       {"Id", CellType::Number, 60, true, true},
                       {"Amount", CellType::Number, 90, false, true}};
    for (const auto& [month, amount] :
         {std::pair{"Apr/2026", "100.00"}, {"May/2026", "200.00"}, {"Jun/2026", "300.00"}}) {
      fpgRows.rows.push_back({{{"0"}, {month}, {"7"}, {amount}}});
    }
  }
};

template <class Widget>
Widget& Place(QWidget& parent, const char* name) {
  auto* widget = new Widget(&parent);  // its parent owns it
  widget->setObjectName(name);
  if (parent.layout()) parent.layout()->addWidget(widget);
  return *widget;
}

inline std::unique_ptr<QWidget> ToyForm() {
  auto form = std::make_unique<QWidget>();
  form->resize(700, 700);
  new QVBoxLayout(form.get());
  Place<QLineEdit>(*form, "txtCount");
  Place<QLineEdit>(*form, "txtAmount");
  Place<QComboBox>(*form, "cmbName");
  Place<QComboBox>(*form, "cmbNumber");
  Place<QCheckBox>(*form, "chkAll");
  auto& mode = Place<QGroupBox>(*form, "fmeMode");
  new QVBoxLayout(&mode);
  Place<QRadioButton>(mode, "optOne");
  Place<QRadioButton>(mode, "optTwo");
  Place<QPushButton>(*form, "cmdMore");
  Place<QPushButton>(*form, "cmdSave").setProperty("primary", true);
  Place<QLabel>(*form, "lblHelp");
  auto& tabs = Place<QTabWidget>(*form, "tabPages");
  for (int i = 0; i < 3; ++i) tabs.addTab(new QWidget, {});
  new QVBoxLayout(tabs.widget(1));
  Place<QLineEdit>(*tabs.widget(1), "txtOnSecond");
  Place<QTableView>(*form, "fpgRows").setMinimumHeight(130);
  Place<QListView>(*form, "lstPeople");
  Place<QProgressBar>(*form, "prgWork");
  return form;
}

inline const Forms& ToyForms() {
  static const Forms kForms{{"toy", ToyForm}};
  return kForms;
}

using Heard = std::vector<std::string>;

// The toy screen on a desk of its own, and a person at its window.
class ToyTest : public testing::Test {
 protected:
  void Work(std::function<void(ScreenWindow&)> work) { WorkOn(desk, screen, std::move(work)); }
  template <class Widget>
  void WorkAt(const char* name, std::function<void(Widget&)> work) {
    Work([=](ScreenWindow& window) { work(Find<Widget>(window, name)); });
  }
  static void PressSave(ScreenWindow& window) {
    QTest::mouseClick(&Find<QPushButton>(window, "cmdSave"), Qt::LeftButton);
  }
  static QString Copied(QWidget& widget, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
    QTest::keyClick(&widget, Qt::Key_C, modifiers);
    return QGuiApplication::clipboard()->text();
  }

  QtDesk desk{ToyForms()};
  ToyScreen screen{desk};
};

}  // namespace ktl
