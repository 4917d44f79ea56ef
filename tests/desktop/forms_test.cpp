#include "desktop/forms.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QRegularExpression>
#include <QWidget>

#include "desktop/dispatcher.h"
#include "desktop/form_binder.h"
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
    const std::unique_ptr<QWidget> widgets = form->second();
    Dispatcher dispatcher({});
    const FormBinder binder(screen, *widgets, dispatcher);
    for (const std::string& name : binder.Unbound()) ADD_FAILURE() << "no widget of its type for " << name;
    for (const QWidget* widget : widgets->findChildren<QWidget*>()) CheckHasControl(screen, *widget);
    const Dispatcher::Mirroring mirroring(dispatcher);
    const_cast<FormBinder&>(binder).Mirror();
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

}  // namespace
}  // namespace ktl
