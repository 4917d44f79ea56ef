#include "screen/controls.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>

#include "runtime/errors.h"
#include "screen/grid.h"
#include "screen/screen.h"

namespace ktl {
namespace {

// Every control with a value, and how often each was told of a change.
class ValueScreen final : public Screen {
 public:
  ValueScreen() : Screen("ValueScreen") {
    for (Handler* handler : {&txt.onChange, &cmb.onChange, &chk.onClick, &opt_0.onClick, &tabs.onChange}) {
      *handler = [this] { ++raised; };
    }
    opt_1.onClick = [this] { ++raisedByOther; };
    cmb.SetRows({{"Anil Kumar", "7"}, {"Meera", "8"}, {"ANIL KUMAR", "9"}});
    tabs.pages = {{"One"}, {"Two"}};
  }

  TextBox txt{*this, "txt"};
  ComboBox cmb{*this, "cmb"};
  CheckBox chk{*this, "chk"};
  OptionButton opt_0{*this, "opt_0", "kind"};
  OptionButton opt_1{*this, "opt_1", "kind"};
  OptionButton optElse{*this, "optElse", "another"};
  Tabs tabs{*this, "tabs"};
  Frame fme{*this, "fme"};
  Frame fmeInner{*this, "fmeInner"};
  int raised = 0;
  int raisedByOther = 0;
};

TEST(Controls, RaiseTheirHandlerOnlyWhenTheValueDiffers) {
  const std::pair<const char*, std::function<void(ValueScreen&)>> cases[] = {
      {"text", [](ValueScreen& s) { s.txt.SetText("12"); }},
      {"combo text", [](ValueScreen& s) { s.cmb.SetText("Meera"); }},
      {"combo value", [](ValueScreen& s) { s.cmb.SetBoundText("8"); }},
      {"check", [](ValueScreen& s) { s.chk.SetValue(true); }},
      {"option", [](ValueScreen& s) { s.opt_0.SetValue(true); }},
      {"tab", [](ValueScreen& s) { s.tabs.SetCurrent(1); }},
  };
  for (const auto& [what, set] : cases) {
    SCOPED_TRACE(what);
    ValueScreen screen;
    set(screen);
    EXPECT_EQ(screen.raised, 1);
    set(screen);
    EXPECT_EQ(screen.raised, 1);
  }
}

TEST(Controls, AnOptionClearsItsGroupWithoutAnEvent) {
  ValueScreen screen;
  screen.optElse.SetValue(true);
  screen.opt_0.SetValue(true);
  screen.opt_1.SetValue(true);
  EXPECT_FALSE(screen.opt_0.Value());
  EXPECT_TRUE(screen.optElse.Value());
  EXPECT_EQ(screen.raised, 1);
  EXPECT_EQ(screen.raisedByOther, 1);
  screen.opt_1.SetValue(false);
  EXPECT_EQ(screen.raisedByOther, 1);
}

TEST(Controls, ACombosBoundValueFollowsItsTextAndTheRowThatWasChosen) {
  ValueScreen screen;
  screen.cmb.SetText("anil kumar");
  EXPECT_EQ(screen.cmb.BoundText(), "7") << "letter case does not count, the first row does";
  screen.cmb.SetBoundText("9");
  EXPECT_EQ(screen.cmb.BoundText(), "9");
  EXPECT_EQ(screen.cmb.Text(), "ANIL KUMAR");
  screen.cmb.ChooseRow(0);
  EXPECT_EQ(screen.cmb.BoundText(), "7");
  EXPECT_EQ(screen.raised, 3) << "another row with the same name is a change";

  screen.cmb.SetRows({{"Meera", "8"}});
  EXPECT_EQ(screen.cmb.Text(), "Anil Kumar");
  EXPECT_EQ(screen.cmb.BoundText(), "");
  EXPECT_FALSE(screen.cmb.MatchesList());
  EXPECT_EQ(screen.raised, 3) << "filling the list raises nothing";
  screen.cmb.SetBoundText("99");
  EXPECT_EQ(screen.cmb.Text(), "");
}

TEST(Controls, AComboThatFollowsAnotherKeepsWhatIsBeingTypedIntoIt) {
  ValueScreen screen;
  ComboBox number{screen, "number"};
  number.SetRows({{"K7", "7"}, {"K8", "8"}});
  screen.cmb.onChange = [&] { number.SetBoundText(screen.cmb.BoundText()); };
  number.onChange = [&] { screen.cmb.SetBoundText(number.BoundText()); };
  number.SetText("K8");
  EXPECT_EQ(screen.cmb.Text(), "Meera");
  number.SetText("K");
  EXPECT_EQ(number.Text(), "K");
  EXPECT_EQ(screen.cmb.Text(), "");
  screen.cmb.SetText("Me");
  EXPECT_EQ(number.Text(), "") << "what was typed into it before";
  number.SetRows({{"", "7"}, {"K8", "8"}});
  screen.cmb.SetText("Meera");
  screen.cmb.SetText("nobody");
  EXPECT_EQ(screen.cmb.Text() + number.BoundText(), "nobody") << "an empty text matches nothing";
  number.ChooseRow(0);
  EXPECT_EQ(number.BoundText(), "7") << "but a row without a text can be chosen";
  screen.cmb.SetText("nobody");
  EXPECT_EQ(number.BoundText(), "");
}

TEST(Controls, TypingPassesTheKeyFilterAndRaisesOneChange) {
  using Filter = std::function<int(const ValueScreen&, int)>;
  const Filter digitsAndOnePoint = [](const ValueScreen& screen, int key) {
    if (key == '.') return screen.txt.Text().find('.') == std::string::npos ? key : 0;
    return key >= '0' && key <= '9' ? key : 0;
  };
  const Filter euroForE = [](const ValueScreen&, int key) { return key == 'e' ? 0x20AC : key; };
  const std::tuple<Filter, std::size_t, const char*, const char*, int> cases[] = {
      {digitsAndOnePoint, 0, "12,50a.5", "1250.5", 1},
      {digitsAndOnePoint, 0, "1.2.3", "1.23", 1},
      {digitsAndOnePoint, 0, "x0.5y", "0.5", 0},
      {digitsAndOnePoint, 3, "1a2b3c4", "123", 1},
      {digitsAndOnePoint, 0, "", "", 1},
      {euroForE, 3, "üe₹z", "ü€₹", 1},
  };
  for (const auto& [filter, maxLength, typed, expected, changes] : cases) {
    SCOPED_TRACE(typed);
    ValueScreen screen;
    screen.txt.SetText("0.5");
    screen.raised = 0;
    screen.txt.onKeyPress = [&, keep = filter](int key) { return keep(screen, key); };
    screen.txt.maxLength = maxLength;
    screen.txt.TypeOver(typed);
    EXPECT_EQ(screen.txt.Text(), expected);
    EXPECT_EQ(screen.raised, changes);
  }
}

TEST(Controls, AreHiddenAndDisabledWithTheirContainers) {
  ValueScreen screen;
  screen.fme.Hold({screen.fmeInner, screen.chk});
  screen.fmeInner.Hold({screen.txt});
  EXPECT_TRUE(screen.txt.IsUsable());
  screen.fme.enabled = false;
  EXPECT_FALSE(screen.txt.IsUsable());
  EXPECT_TRUE(screen.txt.IsShown());
  screen.fme.visible = false;
  EXPECT_FALSE(screen.txt.IsShown());
  EXPECT_FALSE(screen.chk.IsShown());
  EXPECT_TRUE(screen.cmb.IsShown());
}

TEST(Controls, AHandlerMayReplaceItself) {
  ValueScreen screen;
  std::string calls;
  const std::string longEnoughForTheHeap(64, 'a');
  screen.txt.onChange = [&, longEnoughForTheHeap] {
    screen.txt.onChange = [&] { calls += 'b'; };
    calls += longEnoughForTheHeap.front();
  };
  screen.txt.SetText("1");
  screen.txt.SetText("2");
  EXPECT_EQ(calls, "ab");
}

TEST(Controls, ANameIsRegisteredOnce) {
  ValueScreen screen;
  EXPECT_EQ(screen.Find("cmb"), &screen.cmb);
  EXPECT_EQ(screen.Find("Cmb"), nullptr);
  EXPECT_THROW(TextBox(screen, "cmb"), std::logic_error);
}

class LifeScreen final : public Screen {
 public:
  LifeScreen() : Screen("LifeScreen") {}
  void Form_Load() override {
    calls += "load ";
    if (unloadInLoad) Unload();
  }
  void Form_Activate() override { calls += "activate "; }
  bool Form_QueryUnload() override {
    calls += "query ";
    Unload();
    return closes;
  }
  void Form_Unload() override {
    calls += "unload ";
    Unload();
  }

  bool closes = true;
  bool unloadInLoad = false;
  std::string calls;
};

TEST(Screens, AskOnceAndUnloadOnce) {
  LifeScreen screen;
  screen.Load();
  screen.Load();
  screen.closes = false;
  screen.Unload();
  EXPECT_FALSE(screen.IsUnloaded());
  screen.closes = true;
  screen.Unload();
  screen.Unload();
  screen.ForceUnload();
  EXPECT_TRUE(screen.IsUnloaded());
  EXPECT_EQ(screen.calls, "load activate query query unload ");
  screen.calls.clear();
  screen.Load();
  EXPECT_EQ(screen.calls, "load activate ") << "a screen can be opened again";
  EXPECT_FALSE(screen.IsUnloaded());
}

TEST(Screens, AreNotActivatedWhenTheLoadUnloadsThem) {
  LifeScreen screen;
  screen.unloadInLoad = true;
  screen.Load();
  EXPECT_EQ(screen.calls, "load query unload ");
}

TEST(Grids, CellsOverrideTheirColumnsAndOutsideIsAnError) {
  ValueScreen screen;
  Grid grid(screen, "fpg");
  grid.columns = {{.caption = "Amount", .locked = true},
                  {.caption = "Paid", .type = CellType::Tick, .locked = false}};
  const std::size_t row = grid.AddRow();
  EXPECT_TRUE(grid.IsLocked(row, 0));
  EXPECT_FALSE(grid.IsLocked(row, 1));
  grid.At(row, 0).locked = false;
  grid.At(row, 1).type = CellType::Text;
  EXPECT_FALSE(grid.IsLocked(row, 0));
  EXPECT_EQ(grid.TypeOf(row, 1), CellType::Text);
  EXPECT_THROW(grid.At(1, 0), RuntimeError);
  EXPECT_THROW(grid.At(0, 2), RuntimeError);
  EXPECT_THROW(grid.PaintRow(1, kWhite), RuntimeError);
}

}  // namespace
}  // namespace ktl
