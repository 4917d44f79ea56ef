#include "screen/person.h"

#include <gtest/gtest.h>

#include <functional>

namespace ktl {
namespace {

// Writes down each handler that runs.
class DiaryScreen final : public Screen {
 public:
  DiaryScreen() : Screen("DiaryScreen") {
    for (TextBox* box : {&txtA, &txtB}) {
      box->onChange = [this, box] { Note(box->name() + " changed"); };
      box->onLeave = [this, box] { Note(box->name() + " left"); };
    }
    cmd.onClick = [this] { Note("clicked"); };
    cmdOff.enabled = false;
    mnuHidden.visible = false;
    txtLocked.locked = true;
    cmbFixed.editable = false;
    cmb.SetRows({{"Loan", "2"}});
    cmb.onChange = [this] { Note("cmb changed"); };
    cmb.onLeave = [this] { Note("cmb left"); };
    lst.rows = {{"Meera", "8"}};
    tabs.pages = {{"One"}, {"Two", false}, {"Three", true, false}};
    fpg.columns = {{.caption = "Id", .hidden = true},
                   {.caption = "Amount", .locked = false},
                   {.caption = "Paid", .type = CellType::Tick, .locked = false},
                   {.caption = "Month"}};
    fpg.AddRow();
    fpg.AddRow();
    fpg.rows[fpg.AddRow()].hidden = true;
    const auto note = [this](const std::string& what) {
      return [this, what](std::size_t row, std::size_t column) {
        Note(what + " " + std::to_string(row) + "/" + std::to_string(column));
      };
    };
    fpg.onRowClick = note("row");
    fpg.onCellChange = note("cell");
    fpg.onDblClick = note("dbl");
  }

  void Note(const std::string& what) { diary += (diary.empty() ? "" : ", ") + what; }
  std::string TakeDiary() { return std::exchange(diary, {}); }

  TextBox txtA{*this, "txtA"};
  TextBox txtB{*this, "txtB"};
  TextBox txtLocked{*this, "txtLocked"};
  ComboBox cmb{*this, "cmb"};
  ComboBox cmbFixed{*this, "cmbFixed"};
  ListBox lst{*this, "lst"};
  Tabs tabs{*this, "tabs"};
  Button cmd{*this, "cmd"};
  Button cmdOff{*this, "cmdOff"};
  Menu mnu{*this, "mnu", "Delete"};
  Menu mnuHidden{*this, "mnuHidden", "Print"};
  Grid fpg{*this, "fpg"};
  std::string diary;
};

TEST(Person, TypesChangesAndLeaves) {
  DiaryScreen screen;
  Type(screen.txtA, "5");
  EXPECT_EQ(screen.TakeDiary(), "txtA changed, txtA left");
  Type(screen.txtA, "5");
  EXPECT_EQ(screen.TakeDiary(), "txtA left");
  Pick(screen.cmb, "LOAN");
  EXPECT_EQ(screen.TakeDiary(), "cmb changed, cmb left");
  EXPECT_EQ(screen.cmb.BoundText(), "2");
}

TEST(Person, GrantsTheFocusThatAHandlerAsksFor) {
  DiaryScreen screen;
  screen.txtA.onLeave = [&] { screen.SetFocus(screen.txtB); };
  Type(screen.txtA, "5");
  EXPECT_EQ(screen.Focus(), &screen.txtB);
  Click(screen.mnu);
  EXPECT_EQ(screen.TakeDiary(), "txtA changed") << "a menu takes no focus";
  Click(screen.cmd);
  EXPECT_EQ(screen.TakeDiary(), "txtB left, clicked");

  screen.cmd.onClick = [&] { screen.SetFocus(screen.txtB); };
  Click(screen.cmd);
  Type(screen.txtB, "6");
  EXPECT_EQ(screen.TakeDiary(), "txtB changed, txtB left")
      << "typing where the focus is leaves nothing before";

  screen.txtB.onChange = [&] { screen.SetFocus(screen.txtA); };
  Type(screen.txtB, "7");
  EXPECT_EQ(screen.TakeDiary(), "txtB left") << "once, by the change handler's doing";
}

TEST(Person, StaysWhereALeaveHandlerKeepsTheFocus) {
  DiaryScreen screen;
  screen.txtA.onLeave = [&] {
    screen.Note("refused");
    screen.SetFocus(screen.txtA);
  };
  Type(screen.txtA, "bad");
  Click(screen.cmd);
  Type(screen.txtB, "1");
  EXPECT_EQ(screen.TakeDiary(), "txtA changed, refused, refused, refused");
  EXPECT_EQ(screen.Focus(), &screen.txtA);
  EXPECT_EQ(screen.txtB.Text(), "");

  screen.txtA.onLeave = [&] { screen.cmd.enabled = false; };
  Click(screen.cmd);
  EXPECT_EQ(screen.TakeDiary(), "") << "the click comes too late";
}

TEST(Person, TwoFieldsThatThrowTheFocusAtEachOtherDoNotHang) {
  DiaryScreen screen;
  screen.txtA.onLeave = [&] { screen.SetFocus(screen.txtA); };
  screen.txtB.onLeave = [&] { screen.SetFocus(screen.txtB); };
  screen.cmd.onClick = [&] { screen.SetFocus(screen.txtB); };
  Type(screen.txtA, "1");
  RunAndGrantFocus(screen, screen.cmd.onClick);
  EXPECT_NE(screen.Focus(), nullptr);
}

TEST(Person, WorksOnAGridAsAHandWould) {
  DiaryScreen screen;
  Type(screen.txtA, "5");
  screen.SetFocus(screen.txtA);
  screen.TakeDiary();
  ClickRow(screen.fpg, 1);
  EXPECT_EQ(screen.TakeDiary(), "txtA left, row 1/1");
  TypeCell(screen.fpg, 1, 1, "250.00");
  TypeCell(screen.fpg, 1, 1, "250.00");
  EXPECT_EQ(screen.TakeDiary(), "cell 1/1");
  TickCell(screen.fpg, 0, 2, true);
  EXPECT_EQ(screen.TakeDiary(), "row 0/2, cell 0/2");
  EXPECT_TRUE(screen.fpg.IsTicked(0, 2));
  DblClick(screen.fpg, 0, 3);
  EXPECT_EQ(screen.TakeDiary(), "dbl 0/3");
  EXPECT_EQ(screen.fpg.activeColumn, 3u);

  screen.fpg.onRowClick = [&](std::size_t, std::size_t) { screen.fpg.Clear(); };
  EXPECT_THROW(TypeCell(screen.fpg, 1, 1, "9"), PersonError) << "the click took the row away";
}

TEST(Person, CannotUseWhatIsNotThere) {
  const std::pair<const char*, std::function<void(DiaryScreen&)>> cases[] = {
      {"cmdOff is disabled", [](DiaryScreen& s) { Click(s.cmdOff); }},
      {"mnuHidden is hidden", [](DiaryScreen& s) { Click(s.mnuHidden); }},
      {"txtLocked is locked", [](DiaryScreen& s) { Type(s.txtLocked, "1"); }},
      {"cmd is on a closed screen", [](DiaryScreen& s) { s.Unload(), Click(s.cmd); }},
      {"cmb does not list \"Advance\"", [](DiaryScreen& s) { Pick(s.cmb, "Advance"); }},
      {"cmbFixed takes no typing", [](DiaryScreen& s) { Type(s.cmbFixed, "Loan"); }},
      {"lst does not list \"Anil\"", [](DiaryScreen& s) { Pick(s.lst, "Anil"); }},
      {"lst has no ticks", [](DiaryScreen& s) { Tick(s.lst, 0, true); }},
      {"tabs has no page 4", [](DiaryScreen& s) { ShowPage(s.tabs, 3); }},
      {"tabs hides page 2", [](DiaryScreen& s) { ShowPage(s.tabs, 1); }},
      {"tabs has page 3 disabled", [](DiaryScreen& s) { ShowPage(s.tabs, 2); }},
      {"fpg has no row 4", [](DiaryScreen& s) { ClickRow(s.fpg, 3); }},
      {"fpg hides row 3", [](DiaryScreen& s) { ClickRow(s.fpg, 2); }},
      {"fpg hides column 1", [](DiaryScreen& s) { TypeCell(s.fpg, 0, 0, "1"); }},
      {"fpg has no column 5", [](DiaryScreen& s) { DblClick(s.fpg, 0, 4); }},
      {"fpg is locked in row 1, column 4", [](DiaryScreen& s) { TypeCell(s.fpg, 0, 3, "1"); }},
      {"fpg takes no text in row 1, column 3", [](DiaryScreen& s) { TypeCell(s.fpg, 0, 2, "1"); }},
      {"fpg has no tick in row 1, column 2", [](DiaryScreen& s) { TickCell(s.fpg, 0, 1, true); }},
  };
  for (const auto& [why, act] : cases) {
    DiaryScreen screen;
    try {
      act(screen);
      ADD_FAILURE() << "done: " << why;
    } catch (const PersonError& error) {
      EXPECT_STREQ(error.what(), why);
    }
    EXPECT_EQ(screen.diary, "") << why;
  }
}

TEST(Person, AHandlerMayCloseItsOwnScreen) {
  DiaryScreen screen;
  screen.txtA.onChange = [&] { screen.Unload(); };
  Type(screen.txtA, "1");
  EXPECT_TRUE(screen.IsUnloaded());
  EXPECT_EQ(screen.diary, "") << "nothing is left on a closed screen";
}

}  // namespace
}  // namespace ktl
