#include "desktop/forms.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <cmath>

#include "desktop/at_window.h"
#include "desktop/dispatcher.h"
#include "desktop/letters.h"
#include "frame/session.h"
#include "instructions/modAdvLoan.h"
#include "start/startup.h"
#include "support/company_fixture.h"
#include "support/fake_machine.h"

namespace ktl {
namespace {

// Instead of showing a screen it lays its form beside it.
class FormCheckDesk final : public Desk {
 public:
  Answer MsgBox(const MessageBox& box) override {
    ADD_FAILURE() << box.text;
    return Answer::OK;
  }

  void ShowModal(Screen& screen) override {
    checked.push_back(screen.name());
    const auto form = ProgramForms().find(screen.name());
    ASSERT_NE(form, ProgramForms().end()) << "no form for " << screen.name();
    SCOPED_TRACE(screen.name());
    Dispatcher dispatcher([] {});
    ScreenWindow window(screen, form->second(), dispatcher, nullptr);
    for (const std::string& name : window.binder().Unbound()) {
      ADD_FAILURE() << "no widget of its type for " << name;
    }
    const Dispatcher::Mirroring mirroring(dispatcher);
    window.Mirror({});
    for (const QWidget* widget : window.findChildren<QWidget*>()) CheckHasControl(screen, *widget);
    CheckWords(screen, window);
    CheckLetters(window);
    if (!screen.under) CheckSizes(window);
  }

  std::vector<std::string> checked;

 private:
  static void CheckHasControl(const Screen& screen, const QWidget& widget) {
    static const QRegularExpression kControlName(
        "^(txt|cmb|cmd|chk|opt|fpg|lbl|fme|tab|lst|prg|tmr|mnu)[A-Z]");
    const QString name = widget.objectName();
    if (!kControlName.match(name).hasMatch()) return;
    EXPECT_TRUE(screen.Find(name.toStdString())) << screen.name() << " has no control " << name.toStdString();
  }

  // Everything that can be worked on has a name to be read out; what F2 fills in says what it takes.
  static void CheckWords(const Screen& screen, const ScreenWindow& window) {
    for (const Control* control : screen.Controls()) {
      const QWidget* widget = window.binder().WidgetOf(*control);
      if (!widget || control->kind() == ControlKind::Label || control->kind() == ControlKind::Frame) continue;
      EXPECT_FALSE(widget->accessibleName().isEmpty()) << "no accessible name: " << control->name();
      const auto* edit = qobject_cast<const QLineEdit*>(widget);
      if (edit && static_cast<const TextBox*>(control)->onDblClick) {
        EXPECT_FALSE(edit->placeholderText().isEmpty()) << "no placeholder: " << control->name();
      }
    }
  }

  static void CheckLetters(const ScreenWindow& window) {
    std::map<QString, QString> owners;
    const auto check = [&owners](const QString& text) {
      const QString letter = QKeySequence::mnemonic(text).toString();
      if (letter.isEmpty()) return;
      EXPECT_TRUE(owners.emplace(letter, text).second)
          << letter.toStdString() << ": " << text.toStdString() << ", " << owners[letter].toStdString();
    };
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
      if (button->isVisibleTo(&window)) check(button->text());
    }
    for (const auto* tabs : window.findChildren<QTabWidget*>()) {
      for (int i = 0; i < tabs->count(); ++i) check(tabs->tabText(i));
    }
    for (const auto* label : window.findChildren<QLabel*>()) {
      if (label->buddy() && label->isVisibleTo(&window)) check(label->text());
    }
  }

  // In a small window everything is reached by scrolling down, the commands and the overview are in sight; in
  // a wide one no field is drawn out.
  static void CheckSizes(ScreenWindow& window) {
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
    const auto* area = window.findChild<QScrollArea*>("formBody");
    ASSERT_TRUE(area);
    for (const QSize size : {QSize(1024, 600), QSize(1366 * 2 / 3, 768 * 2 / 3)}) {
      window.resize(size);
      Settle();
      EXPECT_EQ(window.size(), size);
      EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0) << "wider than " << size.width();
      for (const char* name : {"cmdSave", "cmdClose", "txtTotalAdv", "txtTotalDue"}) {
        const auto* widget = window.findChild<QWidget*>(name);
        if (!widget || !widget->isVisible()) continue;
        EXPECT_EQ(widget->visibleRegion().boundingRect(), widget->rect()) << name << " at " << size.width();
      }
    }
    window.resize(2560, 1300);
    Settle();
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
      if (!qobject_cast<const QLineEdit*>(widget) && !qobject_cast<const QComboBox*>(widget)) continue;
      EXPECT_LT(widget->width(), 800) << widget->objectName().toStdString();
    }
  }
};

TEST(FormsTest, EveryScreenHasAFormWithAWidgetForEachControl) {
  FakeMachine machine;
  FormCheckDesk desk;
  test::TestCompany company;  // children ask what kind of instruction they work on
  Session session(machine.machine(), desk);
  session.Cn.Open(company.ConnectionString());
  RegisterScreens(session);
  const std::vector<std::string> names = session.screens.Names();
  ASSERT_FALSE(names.empty());
  for (const std::string& name : names) {
    for (const int siType : {1, 2}) {
      session.SIType = name == "modInsGInsSSS" ? siType + 2 : siType;
      modAdvLoan parent(session, InstructionType{siType});  // of the screens that work on an instruction
      session.screens.Show(session, name, &parent);
    }
  }
  EXPECT_EQ(desk.checked.size(), names.size() * 2);
  for (const auto& [name, maker] : ProgramForms()) {
    EXPECT_TRUE(session.screens.Has(name)) << "a form without a screen: " << name;
  }
}

// Where two wish the same letter, the command of every screen keeps it.
TEST(FormsTest, EveryPartHasALetterOfItsOwn) {
  QWidget form;
  const auto button = [&form](const char* name, const char* text) {
    auto* made = new QPushButton(text, &form);
    made->setObjectName(name);
    return made;
  };
  const auto* deposits = button("cmdReceipts", "&Deposits");
  const auto* remove = button("cmdDelete", "&Delete");
  const auto* accept = button("cmdAccept", "&Accept");
  QTabWidget tabs(&form);
  tabs.addTab(new QWidget, "Loan N&ame");
  QGroupBox rounding("EMI Round Off", &form);
  QRadioButton higher("Higher 1 Rupee", &rounding);
  for (const char* taken : {"&E", "&M", "&I", "&U", "&N", "&F"}) button(taken, taken);
  QGroupBox recovery("Recovery", &form);
  QRadioButton lump("Lumpsum", &recovery);
  Letters letters(form);
  EXPECT_TRUE(letters.Share());
  EXPECT_EQ(remove->text(), "&Delete");
  EXPECT_EQ(accept->text(), "&Accept");
  EXPECT_EQ(deposits->text(), "De&posits");
  EXPECT_EQ(tabs.tabText(0), "&Loan Name");
  EXPECT_EQ(rounding.title(), "EMI Round &Off");
  EXPECT_EQ(recovery.title(), "&Recovery");
  EXPECT_FALSE(letters.Share()) << "nothing new";
}

double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

TEST(FormsTest, TextStandsOutFromWhatItStandsOn) {
  const QPalette palette = QApplication::palette();
  const struct {
    QPalette::ColorGroup group;
    QPalette::ColorRole text;
    QPalette::ColorRole ground;
  } cases[] = {{QPalette::Active, QPalette::Text, QPalette::Base},
               {QPalette::Active, QPalette::PlaceholderText, QPalette::Base},
               {QPalette::Active, QPalette::Link, QPalette::Window},
               {QPalette::Active, QPalette::HighlightedText, QPalette::Highlight},
               {QPalette::Disabled, QPalette::Text, QPalette::Base},
               {QPalette::Disabled, QPalette::WindowText, QPalette::Window}};
  for (const auto& c : cases) {
    const double text = Luminance(palette.color(c.group, c.text));
    const double ground = Luminance(palette.color(c.group, c.ground));
    EXPECT_GE((std::max(text, ground) + 0.05) / (std::min(text, ground) + 0.05), 4.5) << c.group << c.text;
  }
}

}  // namespace
}  // namespace ktl
