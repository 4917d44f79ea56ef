#include <QComboBox>

#include "desktop/at_window.h"
#include "desktop/picker_window.h"
#include "frame/session.h"
#include "recovery/modEMIEmp.h"
#include "start/startup.h"
#include "support/company_fixture.h"
#include "support/fake_machine.h"

namespace ktl {
namespace {

TEST(PickersOnTheDesk, AMonthIsChosenByArrowsAndEnterUnderTheField) {
  FakeMachine machine;
  QtDesk desk;
  test::TestCompany company;
  company.Execute("DELETE FROM MAS_MONTHYEAR");
  company.Months(24292, 24303);  // Apr/2024 to Mar/2025
  company.Employee(17).Named("Asha Rao");
  Session session(machine.machine(), desk);
  session.Cn.Open(company.ConnectionString());
  RegisterScreens(session);
  modEMIEmp view(session, {17, InstructionType::None, "May/2024"});
  WorkOn(desk, view, [&](ScreenWindow& window) {
    auto& list = Find<QComboBox>(window, "cmbMonthYear");
    const auto ask = [&](const std::function<void()>& byHand, std::vector<Qt::Key> keys) {
      OnNext<ScreenWindow>([&list, keys](ScreenWindow& picker) {
        EXPECT_TRUE(picker.windowFlags() & Qt::FramelessWindowHint);
        EXPECT_EQ(picker.y(), list.mapToGlobal(QPoint(0, list.height())).y());
        for (const Qt::Key key : keys) {
          QTest::keyClick(picker.focusWidget(), key);
          Settle();
        }
      });
      byHand();
      Settle();
      return view.cmbMonthYear.Text();
    };
    const auto byKey = [&] { QTest::keyClick(&list, Qt::Key_F2); };
    const auto byMouse = [&] { QTest::mouseDClick(&list, Qt::LeftButton, {}, QPoint(8, 8)); };
    using enum Qt::Key;
    EXPECT_EQ(ask(byKey, {Key_Right, Key_Escape}), "May/2024");
    EXPECT_EQ(ask(byKey, {Key_Right, Key_Return}), "Feb/2025");
    EXPECT_EQ(ask(byKey, {Key_Left, Key_Left, Key_Down, Key_Right, Key_Up, Key_Up, Key_Return}), "Apr/2024");
    EXPECT_EQ(ask(byMouse, {Key_Escape}), "Apr/2024");
  });
}

TEST(PickersOnTheDesk, APickerStaysOnTheDesk) {
  QWidget field, window;
  field.resize(100, 20);
  window.resize(200, 150);
  const QRect desk(0, 0, 800, 600);
  const std::pair<QPoint, QPoint> cases[] = {
      {{50, 60}, {50, 80}}, {{50, 500}, {50, 350}}, {{700, 60}, {600, 80}}, {{-20, 10}, {0, 30}}};
  for (const auto& [at, placed] : cases) {
    field.move(at);
    PlaceUnder(window, field, desk);
    EXPECT_EQ(window.pos(), placed);
  }
}

}  // namespace
}  // namespace ktl
