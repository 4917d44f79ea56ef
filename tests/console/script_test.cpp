#include <gtest/gtest.h>

#include <sstream>

#include "console/script_desk.h"
#include "runtime/errors.h"
#include "screen/person.h"

namespace ktl {
namespace {

class modToyNote final : public Screen {
 public:
  modToyNote(Desk& itsDesk, std::string& itsNote) : Screen("modToyNote"), desk(itsDesk), note(itsNote) {
    cmdKeep.onClick = [this] {
      this->note = txtNote.Text();
      asksToClose = false;
      Unload();
    };
    cmdBreak.onClick = [] { throw RuntimeError::TypeMismatch(); };
  }
  bool Form_QueryUnload() override { return !asksToClose || desk.Confirm("Discard the note?", "Note"); }

  Desk& desk;
  std::string& note;
  bool asksToClose = true;
  TextBox txtNote{*this, "txtNote"};
  Button cmdKeep{*this, "cmdKeep", "&Keep"};
  Button cmdBreak{*this, "cmdBreak", "&Break"};
};

// Something of every kind, as the real screens have it.
class modToy final : public Screen {
 public:
  explicit modToy(Desk& itsDesk) : Screen("modToy"), desk(itsDesk) {
    FillControls();
    ConnectHandlers();
  }

  void FillControls() {
    txtLocked.locked = true;
    txtLocked.tag = "17";
    cmdOff.enabled = false;
    lblHidden.visible = false;
    cmbName.SetRows({{"Salary Advance", "1"}, {"Tour Advance", "2"}});
    lstEmployee.withTicks = true;
    lstEmployee.rows = {{"[1]-Meera", "1"}, {"[2]-Anil", "2"}};
    tabs.pages = {{"Details"}, {"Schedule"}};
    fpg.columns = {{.caption = "Id", .hidden = true},
                   {.caption = "Month"},
                   {.caption = "Amount", .type = CellType::Number, .locked = false},
                   {.caption = "Paid", .type = CellType::Tick, .locked = false}};
    for (const char* month : {"Apr/2026", "May/2026", "Jun/2026"}) {
      const std::size_t row = fpg.AddRow();
      fpg.At(row, 0).text = std::to_string(row + 101);
      fpg.At(row, 1).text = month;
    }
    fpg.rows[2].hidden = true;
  }

  void ConnectHandlers() {
    txtAmount.onKeyPress = [](int key) { return key >= '0' && key <= '9' ? key : 0; };
    txtAmount.onLeave = [this] {
      if (!txtAmount.Text().empty()) return;
      desk.Warn("Specify amount.\r\nIn rupees.", "Toy");
      SetFocus(txtAmount);
    };
    cmdSave.onClick = [this] {
      if (desk.Confirm("Save it?", "Toy"))
        desk.MsgBox({.text = "Updated", .title = "Saving", .closesItselfMs = 1000});
    };
    cmdNote.onClick = [this] { OpenNote(); };
    lblLink.onClick = [this] { lblLink.caption = "Clicked"; };
    mnuDelete.onClick = [this] { fpg.rows.pop_back(); };
    txtAmount.onDblClick = [this] { txtAmount.SetText("900"); };
    fpg.onDblClick = [this](std::size_t row, std::size_t) { desk.Inform(fpg.Text(row, 1), "Toy"); };
    lstEmployee.onTick = [this](std::size_t row) { lblLink.caption = lstEmployee.rows[row].text; };
    tabs.onChange = [this] { tmr.enabled = true; };
    tmr.onTimer = [this] {
      tmr.enabled = false;
      desk.Inform("Page shown", "Toy");
    };
  }

  // Shows whatever fails, as many handlers do.
  void OpenNote() {
    modToyNote child(desk, note);
    try {
      desk.ShowModal(child);
      desk.Inform("Note: " + note, "Toy");
    } catch (const RuntimeError& error) {
      desk.ShowError(error.description(), "Toy");
    }
  }

  Desk& desk;
  std::string note = "none";
  TextBox txtAmount{*this, "txtAmount"};
  TextBox txtLocked{*this, "txtLocked"};
  ComboBox cmbName{*this, "cmbName"};
  ListBox lstEmployee{*this, "lstEmployee"};
  CheckBox chkAll{*this, "chkAll", "&All"};
  OptionButton optOne{*this, "optOne", "kind"};
  OptionButton optTwo{*this, "optTwo", "kind"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdNote{*this, "cmdNote"};
  Button cmdOff{*this, "cmdOff"};
  Label lblLink{*this, "lblLink", "Link"};
  Label lblHidden{*this, "lblHidden"};
  Menu mnuDelete{*this, "mnuDelete", "Delete \"last\""};
  Tabs tabs{*this, "tabs"};
  Timer tmr{*this, "tmr"};
  Grid fpg{*this, "fpg"};
};

// The transcript; at its end what stopped the script or the program.
std::string Play(const std::string& script) {
  std::istringstream in(script);
  std::ostringstream out;
  ScriptDesk desk(in, out);
  modToy toy(desk);
  try {
    desk.ShowModal(toy);
    desk.CheckAllRead();
    EXPECT_TRUE(toy.IsUnloaded());
  } catch (const ScriptError& error) {
    out << error.what();
  } catch (const ProgramFailure& failure) {
    out << "failure: " << failure.what();
  }
  return out.str();
}

TEST(ScriptLanguage, WorksOnEveryKindOfControl) {
  const std::string transcript = Play(
      "\xEF\xBB\xBF# a comment, then an empty line\r\n"
      "\r\n"
      "  text txtAmount 12x50\r\n"
      "print txtAmount\n"
      "dblclick txtAmount\n"
      "print txtAmount\n"
      "pick cmbName tour advance\n"
      "print cmbName\n"
      "text cmbName #1  other \n"
      "print cmbName\n"
      "tick chkAll on\nprint chkAll\n"
      "tick optTwo on\ntick optOne on\nprint optTwo\n"
      "tick lstEmployee 2 on\nprint lblLink\npick lstEmployee [1]-meera\nprint lstEmployee\n"
      "click lblLink\nprint lblLink\n"
      "tab tabs 2\nprint tabs\n"
      "answer Yes\nclick cmdSave\nclick cmdSave\n");
  EXPECT_EQ(transcript,
            "txtAmount = 1250\n"
            "txtAmount = 900\n"
            "cmbName = Tour Advance\n"
            "cmbName = #1  other \n"
            "chkAll = on\n"
            "optTwo = off\n"
            "lblLink = [2]-Anil\n"
            "lstEmployee = [1]-Meera\n"
            "lblLink = Clicked\n"
            "box | Information | Toy | Page shown | OK\n"
            "tabs = 2\n"
            "box | Question | Toy | Save it? | Yes\n"
            "box | Information | Saving | Updated | OK\n"
            "box | Question | Toy | Save it? | No\n");
}

TEST(ScriptLanguage, EditsAndShowsGrids) {
  const std::string transcript = Play(
      "grid fpg\ncell fpg 2 3 450.00\ntickcell fpg 1 4 on\ndblclick fpg 2 2\nrow fpg 1\nprint fpg\ngrid fpg "
      "all\n"
      "menu mnuDelete\ngrid fpg all\n");
  EXPECT_EQ(transcript,
            "Month\tAmount\tPaid\nApr/2026\t\t\nMay/2026\t\t\n"
            "box | Information | Toy | May/2026 | OK\n"
            "fpg = 1\n"
            "Id\tMonth\tAmount\tPaid\n101\tApr/2026\t\t1\n102\tMay/2026\t450.00\t\n103\tJun/2026\t\t\n"
            "Id\tMonth\tAmount\tPaid\n101\tApr/2026\t\t1\n102\tMay/2026\t450.00\t\n");
}

TEST(ScriptLanguage, LeavesFieldsAndHonoursTheirRefusal) {
  EXPECT_EQ(Play("text txtAmount\nclick cmdSave\nprint cmdSave\ntext txtAmount 5\nclick cmdSave\n"),
            "box | Exclamation | Toy | Specify amount.\\nIn rupees. | OK\n"
            "box | Exclamation | Toy | Specify amount.\\nIn rupees. | OK\n"
            "cmdSave = &Save\n"
            "box | Question | Toy | Save it? | No\n");
}

TEST(ScriptLanguage, GoesOnWithAChildUntilItCloses) {
  EXPECT_EQ(Play("click cmdNote\ntext txtNote so be it\nclick cmdKeep\nprint cmbName\n"),
            "box | Information | Toy | Note: so be it | OK\ncmbName = \n");
  EXPECT_EQ(Play("click cmdNote\nclose\nanswer Yes\nclose\nprint chkAll\n"),
            "box | Question | Note | Discard the note? | No\n"
            "box | Question | Note | Discard the note? | Yes\n"
            "box | Information | Toy | Note: none | OK\n"
            "chkAll = off\n");
  // The end of the script closes what refuses to be closed.
  EXPECT_EQ(Play("click cmdNote\n"),
            "box | Question | Note | Discard the note? | No\nbox | Information | Toy | Note: none | OK\n");
}

TEST(ScriptLanguage, TellsStatesAsJson) {
  EXPECT_EQ(Play("state txtLocked\nstate cmdOff\nstate mnuDelete\nstate lblHidden\n"),
            R"({"txtLocked":{"enabled":true,"visible":true,"locked":true,"value":"","tag":"17"}}
{"cmdOff":{"enabled":false,"visible":true,"locked":false,"value":"","tag":""}}
{"mnuDelete":{"enabled":true,"visible":true,"locked":false,"value":"Delete \"last\"","tag":""}}
{"lblHidden":{"enabled":false,"visible":false,"locked":false,"value":"","tag":""}}
)");
}

TEST(ScriptLanguage, TellsTheWholeScreenAsJson) {
  const std::string note = Play("click cmdNote\ntext txtNote a\tb\nscreen\nanswer Yes\nclose\n");
  EXPECT_EQ(note.substr(0, note.find("box")),
            R"({"screen":"modToyNote","caption":"","focus":null,"controls":{
"txtNote":{"enabled":true,"visible":true,"locked":false,"value":"a\u0009b","tag":""},
"cmdKeep":{"enabled":true,"visible":true,"locked":false,"value":"&Keep","tag":""},
"cmdBreak":{"enabled":true,"visible":true,"locked":false,"value":"&Break","tag":""}
}}
)");
  const std::string whole = Play("screen\n");
  for (const char* part :
       {R"("rows":["Salary Advance","Tour Advance"])", R"({"text":"[2]-Anil","ticked":false})",
        R"({"caption":"Id","hidden":true})", R"("cells":["101","Apr/2026","",""])", R"("caption":"&All")",
        R"("pages":["Details","Schedule"])"}) {
    EXPECT_NE(whole.find(part), std::string::npos) << part;
  }
}

TEST(ScriptLanguage, StopsAtTheFirstErrorAndTellsItsLine) {
  const std::pair<std::string, const char*> cases[] = {
      {"# first\n\nprees cmdSave\n", "line 3: unknown command prees"},
      {"click cmdsave\n", "line 1: modToy has no control cmdsave"},
      {"click\n", "line 1: NAME is missing"},
      {"click cmdSave now\n", "line 1: \"now\" is too much"},
      {"click txtAmount\n", "line 1: txtAmount is no button or label"},
      {"click cmdOff\n", "line 1: cmdOff is disabled"},
      {"row fpg 0\n", "line 1: the row counts from 1, not \"0\""},
      {"row fpg 1x\n", "line 1: the row counts from 1, not \"1x\""},
      {"grid fpg every\n", "line 1: all or nothing is expected, not \"every\""},
      {"tick chkAll yes\n", "line 1: on or off is expected, not \"yes\""},
      {"tick optOne off\n", "line 1: optOne is cleared by setting another option of its group"},
      {"answer Maybe\n", "line 1: Yes, No, Cancel or OK is expected, not \"Maybe\""},
      {"answer Yes\nanswers clear\nanswer Cancel\n\nclick cmdSave\n",
       "line 5: the box \"Save it?\" does not offer Cancel, the answer of line 3"},
      {"close\nprint txtAmount\n", "line 2: no screen is open"},
      {"click cmdNote\ntext txtNote\nclick cmdOff\n", "line 3: modToyNote has no control cmdOff"},
  };
  for (const auto& [script, failure] : cases) EXPECT_EQ(Play(script + "print chkAll\n"), failure) << script;
}

TEST(ScriptLanguage, AFailureInAChildEndsTheProgramNotJustTheParentsHandler) {
  EXPECT_EQ(Play("click cmdNote\nclick cmdBreak\nprint txtNote\n"), "failure: Type mismatch (13)");
}

TEST(ScriptLanguage, ABoxBeforeTheFirstScreenTakesTheFirstAnswers) {
  std::istringstream in("# start\nanswer Yes\nanswer Cancel\nclick cmdSave\n");
  std::ostringstream out;
  ScriptDesk desk(in, out);
  EXPECT_TRUE(desk.Confirm("Read only. Go on?", "Toy"));
  EXPECT_EQ(desk.MsgBox({.text = "Save?", .buttons = Buttons::OKCancel}), Answer::Cancel);
  EXPECT_FALSE(desk.Confirm("Again?", "Toy"));
  EXPECT_THROW(desk.CheckAllRead(), ScriptError);
}

}  // namespace
}  // namespace ktl
