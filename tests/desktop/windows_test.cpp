#include <QDesktopServices>
#include <QHeaderView>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextBrowser>

#include "desktop/toy_screen.h"

namespace ktl {
namespace {

class WindowsTest : public ToyTest {
 protected:
  // Opens the screen and presses its button, which does this.
  void OnSave(Handler handler) {
    screen.cmdSave.onClick = std::move(handler);
    Work([](ScreenWindow& window) { PressSave(window); });
  }
};

TEST_F(WindowsTest, BoxesAreAnsweredByKeyDefaultOrTime) {
  const struct {
    const char* name;
    Buttons buttons;
    Answer preset;
    int closesItselfMs;
    Qt::Key key;
    Answer expected;
  } cases[] = {
      {"Enter takes the default", Buttons::YesNo, Answer::No, 0, Qt::Key_Return, Answer::No},
      {"Enter takes another default", Buttons::YesNo, Answer::Yes, 0, Qt::Key_Return, Answer::Yes},
      {"a letter answers", Buttons::YesNo, Answer::No, 0, Qt::Key_Y, Answer::Yes},
      {"Escape of two", Buttons::YesNo, Answer::Yes, 0, Qt::Key_Escape, Answer::No},
      {"Escape of three", Buttons::YesNoCancel, Answer::Yes, 0, Qt::Key_Escape, Answer::Cancel},
      {"Escape of one", Buttons::OK, Answer::OK, 0, Qt::Key_Escape, Answer::OK},
      {"closes itself", Buttons::OKCancel, Answer::OK, 20, Qt::Key_unknown, Answer::OK},
  };
  OnSave([&] {
    for (const auto& c : cases) {
      OnNext<QMessageBox>([&c](QMessageBox& box) {
        EXPECT_EQ(box.text(), "one\ntwo");
        EXPECT_EQ(box.windowTitle(), "Title");
        if (c.key != Qt::Key_unknown) QTest::keyClick(&box, c.key);
      });
      const MessageBox box{"one\r\ntwo", c.buttons, Icon::Question, c.preset, "Title", c.closesItselfMs};
      EXPECT_EQ(desk.MsgBox(box), c.expected) << c.name;
    }
  });
}

TEST_F(WindowsTest, TheButtonsOfABoxSayWhatTheyDo) {
  OnSave([&] {
    OnNext<QMessageBox>([](QMessageBox& box) {
      EXPECT_EQ(box.button(QMessageBox::Yes)->text(), "&Yes, spread it");
      EXPECT_EQ(box.button(QMessageBox::Cancel)->text(), "&Cancel, go back");
      EXPECT_TRUE(box.textInteractionFlags() & Qt::TextSelectableByMouse);
      EXPECT_FALSE(box.iconPixmap().isNull());
      EXPECT_EQ(Copied(box), "Adjust?");
      QTest::keyClick(&box, Qt::Key_N);
    });
    const MessageBox box{"Adjust?",
                         Buttons::YesNoCancel,
                         Icon::Question,
                         Answer::Yes,
                         "Toy",
                         0,
                         {"&Yes, spread it", "&No, one month", "&Cancel, go back"}};
    EXPECT_EQ(desk.MsgBox(box), Answer::No);
  });
}

TEST_F(WindowsTest, WhatIsTypedIntoAClosingBoxReachesTheField) {
  screen.cmdSave.onClick = [this] {
    OnNext<QMessageBox>([this](QMessageBox& box) {
      QTest::keyClick(box.defaultButton(), Qt::Key_7);
      OnNext<QMessageBox>([](QMessageBox& question) { QTest::keyClick(&question, Qt::Key_Return); });
    });
    desk.MsgBox({.text = "Updated", .title = "Toy", .closesItselfMs = kWaitMs});
    desk.Inform("And now?", "Toy");
    screen.SetFocus(screen.txtCount);
  };
  Work([this](ScreenWindow& window) {
    PressSave(window);
    Settle();
    EXPECT_EQ(screen.txtCount.Text(), "7");
  });
}

TEST_F(WindowsTest, AFieldIsLeftBeforeTheButtonWorks) {
  Work([this](ScreenWindow& window) {
    Enter(Find<QLineEdit>(window, "txtAmount"), "12");
    QTest::keyClick(&window, Qt::Key_S, Qt::AltModifier);
    EXPECT_EQ(screen.heard, Heard{"save 12.00"});
    auto& save = Find<QPushButton>(window, "cmdSave");
    QTest::keyClick(&save, Qt::Key_Return);
    EXPECT_EQ(screen.heard.size(), 2u);
    screen.cmdSave.enabled = false;
    desk.Refresh();
    QTest::mouseClick(&save, Qt::LeftButton);
    EXPECT_EQ(screen.heard.size(), 2u);
  });
}

TEST_F(WindowsTest, ABoxOfTheLeftFieldTakesTheClickAway) {
  screen.txtAmount.onLeave = [this] {
    desk.Inform("too much", "Toy");
    screen.txtAmount.SetText("");
    screen.SetFocus(screen.txtAmount);
  };
  for (const bool byMouse : {true, false}) {
    Work([this, byMouse](ScreenWindow& window) {
      auto& amount = Find<QLineEdit>(window, "txtAmount");
      Enter(amount, "99");
      OnNext<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
      if (byMouse) {
        PressSave(window);
      } else {
        QTest::keyClick(&window, Qt::Key_S, Qt::AltModifier);
      }
      Settle();
      EXPECT_EQ(screen.heard, Heard{}) << byMouse;
      EXPECT_TRUE(amount.hasFocus()) << byMouse;
      EXPECT_EQ(amount.text(), "") << byMouse;
    });
  }
}

TEST_F(WindowsTest, WhatAHandlerChangedIsSeenUnderTheBoxAndInALongRun) {
  OnSave([this] {
    screen.lblHelp.caption = "saving";
    OnNext<QMessageBox>([](QMessageBox& box) {
      EXPECT_EQ(Find<QLabel>(*box.parentWidget(), "lblHelp").text(), "saving");
      box.done(QMessageBox::Ok);
    });
    desk.Inform("saved", "Toy");
    auto* window = TopDialog<ScreenWindow>();
    screen.lblHelp.caption = "half";
    desk.Refresh();
    EXPECT_EQ(Find<QLabel>(*window, "lblHelp").text(), "half");
  });
}

TEST_F(WindowsTest, AChildWorksOnItsParentWhileItIsOpen) {
  ToyScreen child(desk);
  child.cmdSave.onClick = [&] {
    screen.lblHelp.caption = "from the child";
    child.Unload();
  };
  QWidget* parent = nullptr;
  OnSave([&] {
    parent = TopDialog<ScreenWindow>();
    OnNext<ScreenWindow>([&](ScreenWindow& window) {
      EXPECT_EQ(window.parentWidget(), parent);
      PressSave(window);
      EXPECT_EQ(Find<QLabel>(*parent, "lblHelp").text(), "from the child");
    });
    desk.ShowModal(child);
    screen.heard.push_back("back");
  });
  EXPECT_EQ(screen.heard, Heard{"back"});
  EXPECT_TRUE(child.IsUnloaded());
}

TEST_F(WindowsTest, TheLineBelowTellsWhereWhatWasSavedAndWhyNothingCanBe) {
  screen.cmdMore.enabled = false;
  screen.cmdMore.whyDisabled = "Nothing more.";
  desk.NotePlace({"Neem & Sons", "LEELA", ""});
  Work([this](ScreenWindow& window) {
    const auto below = [&](const char* part) {
      const auto& label = Find<QLabel>(window, part);
      return label.isVisible() ? label.text() : QString();
    };
    EXPECT_EQ(below("statusPlace"), "Neem & Sons  ·  LEELA");
    const struct {
      bool enabled, holdsFrame;
      const char* status;
      const char* expected;
    } cases[] = {{true, false, "", ""},
                 {false, false, "", "The employee is locked."},
                 {false, false, "printing", "printing"},
                 {true, true, "", "The employee is locked."}};
    for (const auto& c : cases) {
      screen.cmdSave.enabled = c.enabled;
      screen.fmeMode.enabled = !c.holdsFrame;
      screen.cmdSave.container = c.holdsFrame ? &screen.fmeMode : nullptr;
      screen.cmdSave.whyDisabled = "The employee is locked.";
      screen.cmdSave.toolTip = "Saves";
      desk.NoteStatus(c.status);
      desk.Refresh();
      EXPECT_EQ(below("statusWhy"), c.expected);
      EXPECT_EQ(Find<QPushButton>(window, "cmdSave").toolTip(),
                screen.cmdSave.IsUsable() ? "Saves" : "The employee is locked.");
    }
    screen.cmdSave.visible = false;  // the first that tells something
    desk.Refresh();
    EXPECT_EQ(below("statusWhy"), "Nothing more.");
    screen.subject = {"Meera (K9)", "Car Loan 2", ""};
    desk.NoteSaved();
    desk.Refresh();
    EXPECT_TRUE(below("statusSaved").startsWith("Saved at "));
    EXPECT_TRUE(below("statusSaved").endsWith(": Meera (K9)  ·  Car Loan 2"));
  });
}

// What the system is asked to open is heard here.
class Opened final : public QTextBrowser {
 public:
  Opened() { QDesktopServices::setUrlHandler("file", this, "setSource"); }
  ~Opened() override { QDesktopServices::unsetUrlHandler("file"); }
  QStringList files;

 protected:
  void doSetSource(const QUrl& url, QTextDocument::ResourceType) override { files << url.toLocalFile(); }
};

TEST_F(WindowsTest, F1OpensTheHelpAndABoxOpensWhatWasWritten) {
  Opened opened;
  OnSave([&] {
    auto* window = TopDialog<ScreenWindow>();
    for (const char* help : {"", "/d/help.pdf"}) {
      desk.NotePlace({"", "", help});
      desk.Refresh();
      QTest::keyClick(&Find<QLineEdit>(*window, "txtCount"), Qt::Key_F1);
    }
    for (const auto key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_O}) {
      OnNext<QMessageBox>([key](QMessageBox& box) { QTest::keyClick(&box, key); });
      desk.TellWritten("Written", "/d/list.xlsx", "Title");
    }
  });
  EXPECT_EQ(opened.files, (QStringList{"/d/help.pdf", "/d/list.xlsx"}));
}

TEST_F(WindowsTest, AChildSaysWhoseInstructionItWorksOn) {
  ToyScreen child(desk);
  child.subject = {"Meera (K9)", "Car Loan 2", "10.00, due 6.00"};
  screen.subject = child.subject;
  OnSave([&] {
    EXPECT_FALSE(TopDialog<ScreenWindow>()->findChild<QLabel*>("subjectText"));
    OnNext<ScreenWindow>([&](ScreenWindow& window) {
      EXPECT_EQ(Find<QLabel>(window, "subjectText").text(), "Meera (K9)  ·  Car Loan 2  ·  10.00, due 6.00");
      child.Unload();
      desk.Refresh();
      window.done(0);
    });
    desk.ShowModal(child);
  });
}

// A person types on, clicks Save and lets the timer run while a handler waits for another workstation.
TEST_F(WindowsTest, WhileAnotherWorkstationWritesOnlyGivingUpIsHeard) {
  using std::chrono::milliseconds;
  screen.tmrTick.intervalMs = 1;
  screen.tmrTick.onTimer = [this] { screen.heard.push_back("timer"); };
  OnSave([this] {
    auto* window = TopDialog<ScreenWindow>();
    screen.tmrTick.enabled = true;
    desk.Refresh();
    const auto distract = [&] {
      QTest::qSleep(5);
      Enter(Find<QLineEdit>(*window, "txtCount"), "12");
      PressSave(*window);
      EXPECT_EQ(Find<QLineEdit>(*window, "txtCount").text(), "");
    };
    EXPECT_TRUE(desk.KeepWaiting(milliseconds(1900), true));
    EXPECT_EQ(TopDialog<QDialog>(), window);
    for (const bool mayGiveUp : {false, true}) {
      EXPECT_TRUE(desk.KeepWaiting(milliseconds(2100), mayGiveUp));
      auto& box = *TopDialog<QDialog>();
      EXPECT_NE(&box, window);
      QTimer::singleShot(0, &box, [&] {
        distract();
        for (const auto key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space}) QTest::keyClick(&box, key);
      });
      EXPECT_TRUE(desk.KeepWaiting(milliseconds(2200), mayGiveUp));
      QTimer::singleShot(0, &box, [&] { Find<QPushButton>(box, "giveUp").click(); });
      EXPECT_EQ(desk.KeepWaiting(milliseconds(2300), mayGiveUp), !mayGiveUp);
    }
    EXPECT_EQ(TopDialog<QDialog>(), window);
    EXPECT_EQ(screen.heard, Heard{});
    EXPECT_TRUE(desk.KeepWaiting(milliseconds(9000), true));
    desk.Refresh();  // the handler goes on
    EXPECT_EQ(TopDialog<QDialog>(), window);
    screen.tmrTick.enabled = false;
  });
}

TEST_F(WindowsTest, AScreenMayRefuseToClose) {
  int asked = 0;
  screen.mayClose = [&] { return ++asked == 3; };
  Work([&](ScreenWindow& window) {
    QTest::keyClick(&window, Qt::Key_Escape);
    window.close();
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(window.isVisible());
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(screen.IsUnloaded());
  });
  EXPECT_EQ(asked, 3);
}

TEST_F(WindowsTest, EscapeOnTheFirstWindowNeverDropsTyping) {
  const auto answer = [](Qt::Key key) {
    OnNext<QMessageBox>([key](QMessageBox& box) { QTest::keyClick(&box, key); });
  };
  Work([&](ScreenWindow& window) {
    Enter(Find<QLineEdit>(window, "txtCount"), "7");
    answer(Qt::Key_Return);
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible()) << "the default goes back";
    answer(Qt::Key_Return);
    screen.mayClose = [this] { return desk.Confirm("Save?", "Toy"); };
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible()) << "one question, the screen's own";
    screen.mayClose = [] { return true; };
    answer(Qt::Key_Y);
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_TRUE(screen.IsUnloaded());
  });
  Work([this](ScreenWindow& window) {
    EXPECT_TRUE(window.windowFlags() & Qt::WindowMinimizeButtonHint);
    EXPECT_EQ(window.windowType(), Qt::Window);
    EXPECT_FALSE(window.windowIcon().isNull());
    Enter(Find<QLineEdit>(window, "txtCount"), "7");
    desk.NoteSaved();
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_TRUE(screen.IsUnloaded()) << "saved: nothing to ask";
  });
}

TEST_F(WindowsTest, WhatAPersonArrangedIsThereAgain) {
  const QTemporaryDir folder;
  QSettings::setDefaultFormat(QSettings::IniFormat);
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
  QCoreApplication::setOrganizationName("toys");
  const auto width = [](ScreenWindow& window) { return Find<QTableView>(window, "fpgRows").columnWidth(1); };
  Work([&](ScreenWindow& window) {
    window.resize(820, 640);
    Find<QTableView>(window, "fpgRows").horizontalHeader()->resizeSection(1, 143);
    window.resize(900, 640);
    Settle();
    EXPECT_EQ(width(window), 143);
    EXPECT_GT(Find<QTableView>(window, "fpgRows").width(), 840) << "a list takes the width there is";
  });
  Work([&](ScreenWindow& window) {
    EXPECT_EQ(window.width(), 900);
    EXPECT_EQ(width(window), 143);
  });
  QCoreApplication::setOrganizationName({});
}

TEST_F(WindowsTest, AFailureThatNoHandlerCaughtEndsEveryScreen) {
  ToyScreen child(desk);
  child.cmdSave.onClick = [] { throw std::runtime_error("disk full"); };
  try {
    OnSave([&] {
      OnNext<ScreenWindow>([](ScreenWindow& window) { PressSave(window); });
      desk.ShowModal(child);
      ADD_FAILURE() << "came back";
    });
    ADD_FAILURE() << "nothing thrown";
  } catch (const std::runtime_error& failure) {
    EXPECT_STREQ(failure.what(), "disk full");
  }
  EXPECT_FALSE(TopDialog<QDialog>());
}

TEST_F(WindowsTest, ThePictureEndsTheRun) {
  const QTemporaryDir folder;
  const QString file = folder.filePath("picture.png");
  desk.TakePicture(file.toStdString());
  EXPECT_THROW(desk.ShowModal(screen), PictureTaken);
  EXPECT_GT(QImage(file).width(), 600);
}

}  // namespace
}  // namespace ktl
