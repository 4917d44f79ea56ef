#include "desktop/list_rows.h"
#include "desktop/toy_screen.h"

namespace ktl {
namespace {

class FieldsTest : public ToyTest {
 protected:
  // The open list under a field, each row with the text beside it.
  static Heard Offered(const ScreenWindow& window) {
    Heard rows;
    for (const auto* list : window.findChildren<QListView*>("suggestions")) {
      if (!list->isVisible()) continue;
      for (int row = 0; row < list->model()->rowCount(); ++row) {
        const QModelIndex index = list->model()->index(row, 0);
        rows.push_back((index.data().toString() + ' ' + index.data(kBesideRole).toString()).toStdString());
      }
    }
    return rows;
  }
};

TEST_F(FieldsTest, TypingPassesTheFilterAndKeepsTheCursor) {
  WorkAt<QLineEdit>("txtCount", [this](QLineEdit& count) {
    Enter(count, "1a9-");
    EXPECT_EQ(screen.heard, (Heard{"count 1", "count 19"}));
    count.setCursorPosition(1);
    QTest::keyClicks(&count, "45");
    EXPECT_EQ(screen.txtCount.Text(), "1459");
    EXPECT_EQ(count.cursorPosition(), 3);
  });
}

TEST_F(FieldsTest, AnAmountIsPlainWhileItIsTypedAndGroupedWhenLeft) {
  screen.txtAmount.rightAligned = true;
  WorkAt<QLineEdit>("txtAmount", [this](QLineEdit& amount) {
    Enter(amount, "1234567");
    QTest::keyClick(&amount, Qt::Key_Return);
    Settle();
    EXPECT_EQ(amount.text(), "12,34,567.00");
    EXPECT_EQ(screen.txtAmount.Text(), "1234567.00");
    amount.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(amount.text(), "1234567.00");
    EXPECT_EQ(amount.selectedText(), "1234567.00");
  });
}

TEST_F(FieldsTest, TheUsualKeysSaveAndFind) {
  Work([this](ScreenWindow& window) {
    Find<QWidget>(window, "cmbName").setProperty("finds", true);
    QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(screen.Focus(), &screen.cmbName);
    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(screen.heard, Heard{"save "});
  });
}

TEST_F(FieldsTest, EnterLeavesTheFieldAndBackspaceAtItsStartGoesBack) {
  WorkAt<QLineEdit>("txtAmount", [this](QLineEdit& amount) {
    Enter(amount, "12");
    QTest::keyClick(&amount, Qt::Key_Return);
    Settle();
    EXPECT_EQ(amount.text(), "12.00");
    EXPECT_EQ(screen.Focus(), &screen.cmbName);
    amount.setFocus();
    QTest::keyClick(&amount, Qt::Key_Home);
    QTest::keyClick(&amount, Qt::Key_Backspace);
    EXPECT_EQ(screen.Focus(), &screen.txtCount);
  });
}

TEST_F(FieldsTest, EnterGoesOverTheFieldsAndEndsAtSave) {
  screen.txtAmount.locked = true;
  screen.optTwo.SetValue(true);
  Work([this](ScreenWindow& window) {
    std::vector<std::string> visited;
    for (QWidget* at = &Find<QLineEdit>(window, "txtCount"); at->objectName() != "cmdSave";) {
      at->setFocus();
      QTest::keyClick(at, Qt::Key_Return);
      Settle();
      ASSERT_NE(window.focusWidget(), at);
      at = window.focusWidget();
      visited.push_back(at->objectName().toStdString());
    }
    EXPECT_EQ(visited, (Heard{"cmbName", "cmbNumber", "chkAll", "optTwo", "cmdSave"}));
    EXPECT_EQ(screen.heard, Heard{"two"}) << "nothing was pressed";
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(window.focusWidget()->objectName(), "cmdMore") << "Tab goes over the buttons too";
  });
}

TEST_F(FieldsTest, AGroupOfOptionsIsEnteredAtItsChoiceAndAlwaysHasOne) {
  Work([this](ScreenWindow& window) {
    auto& one = Find<QRadioButton>(window, "optOne");
    auto& two = Find<QRadioButton>(window, "optTwo");
    const auto tabInto = [&window] {
      Find<QCheckBox>(window, "chkAll").setFocus();
      QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
      return window.focusWidget();
    };
    EXPECT_EQ(tabInto(), &one) << "none is chosen";
    QTest::keyClick(&one, Qt::Key_Space);
    QTest::keyClick(&one, Qt::Key_Down);
    EXPECT_TRUE(screen.optTwo.Value());
    EXPECT_EQ(tabInto(), &two);
    screen.optOne.SetValue(true);
    desk.Refresh();
    EXPECT_EQ(tabInto(), &one);
    QTest::mouseClick(&one, Qt::LeftButton, {}, {5, one.height() / 2});
    EXPECT_TRUE(one.isChecked() && screen.optOne.Value());
    QTest::keyClick(&one, Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget()->objectName(), "cmdMore");
    screen.optOne.enabled = false;
    desk.Refresh();
    EXPECT_EQ(tabInto(), &two) << "the choice cannot be used";
  });
}

TEST_F(FieldsTest, WhatThePropertiesSayIsWhatTheFieldDoes) {
  screen.txtAmount.locked = true;
  screen.txtAmount.rightAligned = true;
  screen.txtAmount.backColour = kToolTipColour;
  screen.txtAmount.toolTip = "paid";
  screen.txtCount.maxLength = 2;
  screen.optTwo.enabled = false;
  Work([this](ScreenWindow& window) {
    auto& amount = Find<QLineEdit>(window, "txtAmount");
    Enter(amount, "5");
    EXPECT_EQ(amount.text(), "");
    EXPECT_TRUE(amount.alignment() & Qt::AlignRight);
    EXPECT_EQ(amount.grab().toImage().pixelColor(amount.width() / 2, 4), QColor("#fff9e0"));
    EXPECT_EQ(amount.toolTip(), "paid");
    Enter(Find<QLineEdit>(window, "txtCount"), "123");
    EXPECT_EQ(screen.txtCount.Text(), "12");
    EXPECT_FALSE(Find<QRadioButton>(window, "optTwo").isEnabled());
    screen.fmeMode.visible = false;
    desk.Refresh();
    EXPECT_FALSE(Find<QRadioButton>(window, "optOne").isVisible());
  });
}

TEST_F(FieldsTest, AnAmountIsGroupedAndCopiedPlain) {
  screen.txtAmount.rightAligned = true;
  screen.txtAmount.SetText("1234567.89");
  WorkAt<QLineEdit>("txtAmount", [this](QLineEdit& amount) {
    EXPECT_EQ(amount.text(), "12,34,567.89");
    screen.txtAmount.locked = true;
    desk.Refresh();
    EXPECT_EQ(amount.text(), "12,34,567.89");
    EXPECT_EQ(screen.txtAmount.Text(), "1234567.89");
    amount.setFocus();
    amount.selectAll();
    EXPECT_EQ(Copied(amount), "1234567.89");
  });
}

TEST_F(FieldsTest, DoubleClickAndF2OpenTheCalendar) {
  WorkAt<QLineEdit>("txtAmount", [this](QLineEdit& amount) {
    QTest::mouseDClick(&amount, Qt::LeftButton);
    amount.setFocus();
    QTest::keyClick(&amount, Qt::Key_F2);
    EXPECT_EQ(screen.heard, (Heard{"calendar", "calendar"}));
  });
}

TEST_F(FieldsTest, ComboTakesTypingAndTellsRowsOfTheSameTextApart) {
  WorkAt<QComboBox>("cmbName", [this](QComboBox& combo) {
    combo.setFocus();
    combo.lineEdit()->selectAll();
    QTest::keyClicks(&combo, "asha rao");
    EXPECT_EQ(screen.cmbName.BoundText(), "11");
    EXPECT_EQ(screen.heard.size(), 8u);  // once a character
    screen.heard.clear();
    combo.setCurrentIndex(2);
    combo.setCurrentIndex(1);
    EXPECT_EQ(screen.heard, (Heard{"name Dev Nair=13", "name Dev Nair=12"}));
    combo.clearFocus();
    QWheelEvent wheel({5, 5}, combo.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&combo, &wheel);
    EXPECT_EQ(screen.cmbName.BoundText(), "12");
  });
}

TEST_F(FieldsTest, TypingOverAChosenEntryKeepsEveryLetterInItsPlace) {
  const std::tuple<const char*, const char*, const char*> cases[] = {{"cmbName", "ish", ""},
                                                                     {"cmbName", "ishaan", "14"},
                                                                     {"cmbNumber", "K0", ""},
                                                                     {"cmbNumber", "K04", "14"}};
  for (const auto& [name, typed, chosen] : cases) {
    SCOPED_TRACE(typed);
    screen.cmbName.SetBoundText("11");
    WorkAt<QComboBox>(name, [&](QComboBox& combo) {
      combo.setFocus();
      combo.lineEdit()->selectAll();
      QTest::keyClicks(&combo, typed);
      EXPECT_EQ(combo.currentText(), typed);
      EXPECT_EQ(combo.lineEdit()->cursorPosition(), int(std::string(typed).size()));
      EXPECT_EQ(screen.cmbName.BoundText(), chosen);
    });
  }
}

TEST_F(FieldsTest, AListThatIsReadAnewIsShown) {
  WorkAt<QComboBox>("cmbName", [this](QComboBox& combo) {
    screen.cmbName.SetRows({{"Dev Nair", "12"}, {"Asha Rao", "11"}, {"Ishaan", "14"}, {"Meera", "15"}});
    desk.Refresh();
    EXPECT_EQ(combo.itemText(3), "Meera");
    combo.setCurrentIndex(3);
    EXPECT_EQ(screen.cmbName.BoundText(), "15");
  });
}

// Types into the list of names, then presses the keys.
struct Typing {
  const char* typed;
  std::vector<Qt::Key> keys;
  Heard offered;       // what is open after the typing
  const char* chosen;  // after the keys
  const char* focus;
};

TEST_F(FieldsTest, APersonIsChosenByAPartOfNameOrNumber) {
  const Typing cases[] = {
      {"ish", {Qt::Key_Return}, {"Ishaan K04"}, "14", "cmbNumber"},
      {"k04", {Qt::Key_Return}, {"Ishaan K04"}, "14", "cmbNumber"},
      {"ishaan", {Qt::Key_Return}, {}, "14", "cmbNumber"},
      {"a",
       {Qt::Key_Down, Qt::Key_Tab},
       {"Asha Rao K01", "Dev Nair K02", "Dev Nair K03", "Ishaan K04"},
       "11",
       "cmbNumber"},
      {"dev nair", {Qt::Key_Return}, {"Dev Nair K02", "Dev Nair K03"}, "12", "cmbName"},
      {"dev", {Qt::Key_Return}, {"Dev Nair K02", "Dev Nair K03"}, "", "cmbName"},
      {"dev", {Qt::Key_Tab, Qt::Key_Up, Qt::Key_Return}, {"Dev Nair K02", "Dev Nair K03"}, "13", "cmbNumber"},
      {"dev", {Qt::Key_Escape}, {"Dev Nair K02", "Dev Nair K03"}, "", "cmbName"},
      {"zz", {Qt::Key_Return}, {}, "", "cmbNumber"},
      {"", {Qt::Key_Return}, {}, "", "cmbNumber"},
  };
  for (const Typing& c : cases) {
    SCOPED_TRACE(c.typed);
    screen.cmbName.SetText("");
    Work([&](ScreenWindow& window) {
      auto& combo = Find<QComboBox>(window, "cmbName");
      Enter(combo, c.typed);
      EXPECT_EQ(Offered(window), c.offered);
      for (const Qt::Key key : c.keys) QTest::keyClick(&combo, key);
      Settle();
      EXPECT_EQ(screen.cmbName.BoundText(), c.chosen);
      EXPECT_EQ(window.focusWidget()->objectName(), c.focus);
      EXPECT_EQ(Offered(window).empty(), window.focusWidget() != &combo || c.keys.back() == Qt::Key_Escape);
      EXPECT_EQ(combo.palette().color(QPalette::Text) == QColor("#c23030"), *c.typed == 'z');
    });
  }
}

TEST_F(FieldsTest, SuggestionsGoWithAClickOnThemOrElsewhere) {
  Work([this](ScreenWindow& window) {
    auto& combo = Find<QComboBox>(window, "cmbName");
    Enter(combo, "dev");
    auto& list = Find<QListView>(window, "suggestions");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualRect(list.model()->index(1, 0)).center());
    EXPECT_EQ(screen.cmbName.BoundText(), "13");
    EXPECT_FALSE(list.isVisible());
    combo.lineEdit()->selectAll();
    QTest::keyClicks(&combo, "dev");
    QTest::mouseClick(&window, Qt::LeftButton, {}, {3, 3});
    EXPECT_FALSE(list.isVisible());
  });
}

TEST_F(FieldsTest, TicksOptionsLabelsAndMenus) {
  screen.optOne.SetValue(true);
  screen.heard.clear();
  Work([this](ScreenWindow& window) {
    QTest::keyClick(&Find<QCheckBox>(window, "chkAll"), Qt::Key_Space);
    QTest::keyClick(&Find<QRadioButton>(window, "optTwo"), Qt::Key_Space);
    EXPECT_FALSE(screen.optOne.Value());
    EXPECT_FALSE(Find<QRadioButton>(window, "optOne").isChecked());
    QTest::mouseClick(&Find<QLabel>(window, "lblHelp"), Qt::LeftButton);
    EXPECT_EQ(screen.heard, (Heard{"all", "two", "help"}));
    screen.optTwo.SetValue(false);
    desk.Refresh();
    EXPECT_FALSE(Find<QRadioButton>(window, "optTwo").isChecked());
  });
}

TEST_F(FieldsTest, PagesFollowTheHandAndTheFocus) {
  Work([this](ScreenWindow& window) {
    auto& tabs = Find<QTabWidget>(window, "tabPages");
    EXPECT_FALSE(tabs.isTabVisible(2));
    screen.cmdSave.onClick = [this] { screen.SetFocus(screen.txtOnSecond); };
    screen.txtOnSecond.SetText("abc");
    PressSave(window);
    EXPECT_EQ(screen.tabPages.Current(), 1u);
    auto& second = Find<QLineEdit>(window, "txtOnSecond");
    EXPECT_TRUE(second.hasFocus());
    EXPECT_EQ(second.selectedText(), "abc");
    QTest::mouseClick(tabs.tabBar(), Qt::LeftButton, {}, tabs.tabBar()->tabRect(0).center());
    EXPECT_EQ(screen.heard, (Heard{"page 1", "page 0"}));
  });
}

TEST_F(FieldsTest, ListsTimersAndBars) {
  Work([this](ScreenWindow& window) {
    auto& list = Find<QListView>(window, "lstPeople");
    list.setFocus();
    list.setCurrentIndex(list.model()->index(1, 0));
    QTest::keyClick(&list, Qt::Key_Space);
    Settle();
    EXPECT_TRUE(screen.lstPeople.rows[1].ticked);
    EXPECT_EQ(screen.lstPeople.activeRow, 1u);
    screen.prgWork.value = 40;
    screen.tmrTick.intervalMs = 1;
    screen.tmrTick.enabled = true;
    screen.tmrTick.onTimer = [this] {
      screen.heard.push_back("timer");
      screen.tmrTick.enabled = false;
    };
    desk.Refresh();
    EXPECT_EQ(Find<QProgressBar>(window, "prgWork").value(), 40);
    QTest::qWait(30);
    EXPECT_EQ(screen.heard, (Heard{"tick 1", "timer"}));
  });
}

}  // namespace
}  // namespace ktl
