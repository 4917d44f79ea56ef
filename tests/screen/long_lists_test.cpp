#include <gtest/gtest.h>

#include "screen/desk.h"
#include "screen/progress.h"
#include "screen/quick_search.h"
#include "screen/screen.h"
#include "screen/tick_list.h"

// What screens over many rows share: ticks with their counters, the search field, progress.

namespace ktl {
namespace {

class ListScreen final : public Screen {
 public:
  ListScreen() : Screen("ListScreen") {
    grid.columns = {{"", CellType::Tick, 36, false, false}, {"Name"}};
    for (int row = 0; row < 4; ++row) grid.AddRow();
    grid.At(2, 0).locked = true;
  }

  Grid grid{*this, "grid"};
  ListBox people{*this, "people"};
  CheckBox chkSelectAll{*this, "chkSelectAll"};
  Label lblListed{*this, "lblListed"};
  Label lblSelected{*this, "lblSelected"};
  Menu mnuSelectAll{*this, "mnuSelectAll", "Select All"};
  int changes = 0;
};

TEST(TickList, NoRoadTicksALockedRowAndTheCountersFollow) {
  ListScreen screen;
  TickList ticks(TickRowsOf(screen.grid, 0), {.all = &screen.chkSelectAll,
                                              .tickAll = &screen.mnuSelectAll,
                                              .listed = &screen.lblListed,
                                              .selected = &screen.lblSelected,
                                              .changed = [&] { ++screen.changes; }});
  const auto expect = [&](std::vector<std::size_t> ticked, const char* selected, bool all) {
    EXPECT_EQ(ticks.Ticked(), ticked);
    EXPECT_EQ(screen.lblListed.caption, "Listed: 4");
    EXPECT_EQ(screen.lblSelected.caption, selected);
    EXPECT_EQ(screen.chkSelectAll.Value(), all);
  };
  screen.chkSelectAll.SetValue(true);
  expect({0, 1, 3}, "Selected: 3", true);  // all that can be ticked are
  screen.grid.At(1, 0).text = "0";         // by the person
  ticks.Count();
  expect({0, 3}, "Selected: 2", false);
  EXPECT_EQ(screen.changes, 1);  // counting is no change
  screen.mnuSelectAll.onClick();
  expect({0, 1, 3}, "Selected: 3", true);
  screen.grid.At(2, 0).locked.reset();
  ticks.Count();
  expect({0, 1, 3}, "Selected: 3", false);
  screen.chkSelectAll.SetValue(true);
  expect({0, 1, 2, 3}, "Selected: 4", true);
  screen.grid.At(2, 0).text = "0";
  ticks.Count();
  expect({0, 1, 3}, "Selected: 3", false);
  ticks.TickAll(false);
  expect({}, "Selected: 0", false);
}

TEST(TickList, AListBoxTicksTheSameWayAndAnEmptyListIsNotAllTicked) {
  ListScreen screen;
  TickList ticks(TickRowsOf(screen.people), {.all = &screen.chkSelectAll, .selected = &screen.lblSelected});
  ticks.Count();
  EXPECT_FALSE(screen.chkSelectAll.Value());
  screen.people.rows = {{"[1]-Meera", "1"}, {"[2]-Ajay", "2", true}};
  ticks.Count();
  EXPECT_EQ(screen.lblSelected.caption, "Selected: 1");
  screen.people.rows[0].ticked = true;
  ticks.Count();
  EXPECT_TRUE(screen.chkSelectAll.Value());
  screen.chkSelectAll.SetValue(false);
  EXPECT_TRUE(ticks.Ticked().empty());
}

TEST(QuickSearch, SearchesOnceAfterTheLastKey) {
  ListScreen screen;
  std::vector<std::string> searched;
  QuickSearch search(screen, "txtQuickSearch", "tmrSearch",
                     [&](const std::string& text) { searched.push_back(text); });
  EXPECT_FALSE(search.tmrSearch.enabled);
  search.txtSearch.SetText("Me");
  const int starts = search.tmrSearch.Starts();
  search.txtSearch.SetText(" Meera ");
  EXPECT_GT(search.tmrSearch.Starts(), starts);  // its time begins anew with every key
  EXPECT_TRUE(searched.empty());
  search.tmrSearch.onTimer();
  EXPECT_EQ(searched, std::vector<std::string>{"Meera"});
  EXPECT_FALSE(search.tmrSearch.enabled);
}

class WatchingDesk final : public Desk {
 public:
  Answer MsgBox(const MessageBox& box) override { return DefaultAnswerOf(box); }
  void ShowModal(Screen&) override {}
  void Refresh() override { ++looks; }
  void SetBusy(bool now) override { busy = now; }
  void NoteProgress(const std::string& words, int percent) override {
    noted = words + " " + std::to_string(percent);
  }

  int looks = 0;
  bool busy = false;
  std::string noted;
};

TEST(Progress, ShowsWordsAndPercentWhileTheWorkLastsAndLooksUpRarely) {
  constexpr int kSteps = 3000;
  ListScreen screen;
  WatchingDesk desk;
  Progress progress(desk, screen);
  EXPECT_FALSE(progress.picStatus.visible);
  {
    Progress::Work work(progress, kSteps);
    EXPECT_TRUE(progress.lblStatus.IsShown() && desk.busy);
    EXPECT_EQ(progress.lblStatusPer.caption, "0%");
    for (int step = 1; step <= kSteps; ++step) work.Advance("Employees processed: " + std::to_string(step));
    EXPECT_EQ(progress.lblStatusPer.caption, "100%");
    work.Advance("one too many");
    EXPECT_EQ(progress.pbrStatus.value, kSteps);
    EXPECT_EQ(desk.noted, "one too many 100");
  }
  EXPECT_FALSE(progress.picStatus.visible || desk.busy);
  EXPECT_GE(desk.looks, 2);  // the first step and the last one are seen
  EXPECT_LT(desk.looks, kSteps / 10);
  Progress::Work(progress, 0).Advance("nothing to do");
  EXPECT_EQ(desk.noted, "nothing to do 100");
}

}  // namespace
}  // namespace ktl
