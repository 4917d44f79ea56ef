#include "instructions/modSIMaster.h"

#include "entry_fixture.h"
#include "instructions/instruction_master_dialect.h"

namespace ktl {

class MasterScreen : public WorkstationTest {
 protected:
  MasterScreen() {
    Run("UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 0;"
        "INSERT INTO MAS_TDSREF (TDSREFNO, TDSREF, TYPEID) VALUES (5, '80C', 2), (6, '80CCC', 2), (8, '80G', "
        "2), (9, '24', 1)");
  }

  modSIMaster& Open(long formCode, bool advanced = false) {
    session.FormCode = formCode;
    session.features.switches["ADVMGALYN"] = advanced;
    screen = &Workstation::Open<modSIMaster>(static_cast<InstructionType>(formCode - 1500));
    return *screen;
  }
  void SaveAs(const std::string& name) {
    Type(screen->txtSIName, name);
    Click(screen->cmdSave);
  }
  void Rename(const std::string& name) {
    ClickRow(screen->fpgSIMaster, 0);
    SaveAs(name);
  }
  void AnswerDelete(Answer answer) {
    desk.WillAnswer({answer});
    Click(screen->cmdDelete);
  }

  modSIMaster* screen = nullptr;
};

std::string Shown(const modSIMaster& screen) {
  std::string names;
  for (const Control* control :
       std::initializer_list<const Control*>{&screen.chkTDSAppl, &screen.cmbSection, &screen.txtDedPref,
                                             &screen.chkType, &screen.chkSBIInt, &screen.txtMaxAmount})
    if (control->IsShown()) names += control->name() + " ";
  return names;
}

std::string HiddenColumns(const modSIMaster& screen) {
  std::string numbers;
  for (std::size_t column = 0; column < screen.fpgSIMaster.columns.size(); ++column)
    if (screen.fpgSIMaster.columns[column].hidden) numbers += std::to_string(column + 1) + " ";
  return numbers;
}

TEST_F(MasterScreen, ShowsWhatTheTypeHas) {
  const struct {
    long formCode;
    bool companyTds, advanced;
    std::string shown, hiddenColumns, tags;  // of New what the form's right finds
  } cases[] = {
      {1501, true, false, "txtDedPref chkType ", "6 7 8 9 10 12 ", "209 210 49"},
      {1502, true, true, "txtDedPref chkType chkSBIInt txtMaxAmount ", "3 ", "234 235 55"},
      {1503, true, true, "chkTDSAppl cmbSection txtMaxAmount ", "5 11 12 ", "256 257 61"},
      {1504, true, false, "chkTDSAppl cmbSection ", "5 6 7 8 9 10 11 12 ", "287 288 70"},
      {1505, false, false, "", "5 6 7 8 9 10 11 12 ", "270 271 65"},
      {1507, true, true, "chkTDSAppl txtMaxAmount ", "5 11 12 ", "300 301 74"},
      {1507, false, true, "txtMaxAmount ", "5 11 12 ", "300 301 74"},
  };
  session.MultiLoginYN = true;
  for (const char* const form : {"49", "55", "61", "70", "65", "74"})
    Run(std::string("INSERT INTO SEC_BUTDET (BUTID, FORMID, BUTNAME) VALUES (") + form + ", " + form +
        ", '*New*')");
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.formCode) + (c.companyTds ? " with TDS" : " without TDS"));
    Run(std::string("UPDATE MAS_COMPANY SET TDSYN = ") + (c.companyTds ? "1" : "0"));
    Open(c.formCode, c.advanced);
    EXPECT_EQ(Shown(*screen), c.shown);
    EXPECT_EQ(HiddenColumns(*screen), c.hiddenColumns);
    EXPECT_EQ(screen->cmdSave.tag + " " + screen->cmdDelete.tag + " " + screen->cmdNew.tag, c.tags);
    const std::string word = screen->lblSIName.caption.substr(0, screen->lblSIName.caption.find(" Name"));
    EXPECT_EQ(screen->caption, word + " Master");
    EXPECT_EQ(screen->txtDedPref.toolTip, "Enter the order in which " + word +
                                              " is to be considered for deduction in Salary Calculation.");
  }
}

TEST_F(MasterScreen, RefusesOneFaultAfterTheOther) {
  Run("INSERT INTO INS_MASTER (SITYPE, SINAME, SIPREF) VALUES (2, 'Car Loan', 4), (2, 'Bike Loan', 5)");
  modSIMaster& s = Open(1502, true);
  for (CheckBox* box : {&s.chkMaxAmount, &s.chkMaxAllowed, &s.chkRecEMI, &s.chkInterestRate})
    Tick(*box, true);
  Type(s.txtMaxAmount, "0.00");
  Type(s.txtMaxAllowed, "99999999999");  // says nothing before the name does
  Type(s.txtDedPref, "4");
  const struct {
    TextBox& box;
    const char* typed;
    const char* refusal;
    const TextBox& focus;
  } steps[] = {
      {s.txtSIName, "   ", "Enter Loan Name.", s.txtSIName},
      {s.txtSIName, " CAR loan ", "Enter Maximum Loan Amount.", s.txtMaxAmount},
      {s.txtMaxAllowed, "", "Enter Maximum Loan Amount.", s.txtMaxAmount},
      {s.txtMaxAmount, "250000", "Enter Maximum Loan allowed amount.", s.txtMaxAllowed},
      {s.txtMaxAllowed, "2", "Enter number of EMI(s).", s.txtRecEMI},
      {s.txtRecEMI, "3x6", "Enter Loan interest rate.", s.txtInterestRate},
      {s.txtInterestRate, "10.5.", "Entered Loan already exists.", s.txtSIName},
      {s.txtSIName, "House Loan",
       "Deduction preference given is already set for another Loan\r\nSpecify another number.", s.txtDedPref},
  };
  for (const auto& step : steps) {
    Type(step.box, step.typed);
    EXPECT_EQ(Press(s.cmdSave), Texts{step.refusal});
    EXPECT_EQ(s.Focus(), &step.focus) << step.refusal;
  }
  EXPECT_EQ(s.txtMaxAmount.Text(), "2,50,000.00");
  for (TextBox* const box : {&s.txtMaxAllowed, &s.txtRecEMI, &s.txtDedPref}) {
    const std::string before = box->Text();
    Type(*box, "99999999999");
    EXPECT_EQ(Press(s.cmdSave), Texts{"6\tOverflow"}) << box->name();
    Type(*box, before);
  }
  for (TextBox* const box : {&s.txtMaxAmount, &s.txtMaxAllowed}) {
    const std::string before = box->Text();
    Type(*box, std::string(309, '9'));
    EXPECT_EQ(desk.TakeTexts(), Texts{"6\tOverflow"}) << box->name();
    Type(*box, before);
  }
  Type(screen->txtDedPref, "0");
  Tick(screen->chkRedBal, true);
  int closesItselfMs = 0;
  desk.whileItStands = [&](const MessageBox& box) { closesItselfMs = box.closesItselfMs; };
  Click(screen->cmdSave);
  EXPECT_EQ(closesItselfMs, 1000);
  EXPECT_EQ(desk.LastBox().text, "Updated");
  EXPECT_EQ(desk.LastBox().title, "Saving Information");
  EXPECT_EQ(Rows("SELECT SINAME, ACCCODE, TDSYN, TDSREFNO, SIPREF, SEPPIYN, SBIIFBYN, AMTLIMIT, ALLOWLIMIT, "
                 "EMIRECCNT, INTRRATE, REDUCINGBALYN FROM INS_MASTER WHERE SINAME = 'House Loan'"),
            "House Loan|NULL|0|NULL|NULL|0|0|250000|2|36|10.5|1");
  EXPECT_EQ(screen->fpgSIMaster.rows.size(), 3u);
  EXPECT_EQ(screen->txtSIName.Text() + screen->txtMaxAmount.Text(), "");
  Click(screen->cmdNew);
  EXPECT_EQ(screen->Focus(), &screen->txtSIName);
}

TEST_F(MasterScreen, AsksForTheSectionOfTaxedPremiums) {
  Open(1503);
  Type(screen->txtSIName, "Term Cover");
  EXPECT_FALSE(screen->cmbSection.enabled);
  Tick(screen->chkTDSAppl, true);
  EXPECT_EQ(Press(screen->cmdSave), Texts{"Select the section for which TDS is applicable"});
  EXPECT_EQ(screen->Focus(), &screen->cmbSection);
  EXPECT_EQ(screen->cmbSection.Rows(), (std::vector<ListRow>{{"80C", "5"}, {"80CCC", "6"}}));
  Pick(screen->cmbSection, "80CCC");
  Click(screen->cmdSave);
  EXPECT_EQ(Rows("SELECT TDSYN, TDSREFNO FROM INS_MASTER"), "1|6");
  ClickRow(screen->fpgSIMaster, 0);
  EXPECT_EQ(screen->fpgSIMaster.Text(0, 3), "80CCC");
  Tick(screen->chkTDSAppl, false);
  Click(screen->cmdSave);
  EXPECT_EQ(Rows("SELECT TDSYN, TDSREFNO FROM INS_MASTER"), "0|NULL");
  Open(1507);  // has no section to choose
  Tick(screen->chkTDSAppl, true);
  SaveAs("Diwali Bonus");
  EXPECT_EQ(Rows("SELECT TDSYN, TDSREFNO FROM INS_MASTER WHERE SITYPE = 7"), "1|NULL");
}

TEST_F(MasterScreen, KeepsNamesAsTyped) {
  for (const std::string name : {"O'Brien's", "50% now", "a|b", "[x] #1 *", "अग्रिम राशि", "\"Q\"", "Café"}) {
    SCOPED_TRACE(name);
    Run("DELETE FROM INS_MASTER");
    Open(1501);
    SaveAs(name);
    ClickRow(screen->fpgSIMaster, 0);
    Type(screen->txtAccCode, "A'1");
    Click(screen->cmdSave);
    EXPECT_EQ(Rows("SELECT SINAME, ACCCODE FROM INS_MASTER"), name + "|A'1");
    ClickRow(screen->fpgSIMaster, 0);
    AnswerDelete(Answer::Yes);
    EXPECT_EQ(Rows("SELECT SINAME FROM INS_MASTER"), "");
  }
}

TEST_F(MasterScreen, CarriesARenameOverToTheInstructions) {
  const struct {
    long formCode;
    std::string newName, instructions;  // of advances and loans, then of premiums
  } cases[] = {
      {1501, "Festival Advance", "1|Festival Advance\n2|Old Name,3|Old Name"},
      {1503, "Life's Cover", "1|Old Name\n2|Old Name,3|Life's Cover"},
      {1501, "OLD NAME", "1|OLD NAME\n2|Old Name,3|Old Name"},
  };
  MakeLocalStore();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.newName);
    Run("DELETE FROM INS_MASTER; DELETE FROM INS_ADVLOAN; DELETE FROM INS_OTHER;"
        "INSERT INTO INS_MASTER (SITYPE, SINAME, SIPREF) VALUES (1, 'Old Name', 3), (3, 'Old Name', NULL);"
        "INSERT INTO INS_ADVLOAN (EMPID, SERIALNO, SITYPE, SINAME) VALUES (17, 1, 1, 'Old Name'), (17, 1, 2, "
        "'Old Name');"
        "INSERT INTO INS_OTHER (EMPID, SERIALNO, SITYPE, OTHNAME) VALUES (17, 1, 3, 'Old Name')");
    Open(c.formCode);
    Rename(c.newName);
    EXPECT_EQ(desk.LastBox().text, "Updated");
    EXPECT_EQ(screen->fpgSIMaster.rows.size(), 1u);
    EXPECT_EQ(screen->fpgSIMaster.Text(0, 0), c.newName);
    EXPECT_EQ(Rows("SELECT SITYPE, SINAME FROM INS_ADVLOAN ORDER BY SITYPE") + "," +
                  Rows("SELECT SITYPE, OTHNAME FROM INS_OTHER"),
              c.instructions);
  }
}

TEST_F(MasterScreen, LeavesTheNameWhenARenameCannotBeCarriedOver) {
  Run("INSERT INTO INS_MASTER (SITYPE, SINAME) VALUES (1, 'Old Name')");
  Open(1501);
  Run("DROP TABLE INS_OTHER");
  Rename("New Name");
  EXPECT_EQ(desk.LastBox().title, "Error");
  EXPECT_EQ(desk.LastBox().icon, Icon::Critical);
  EXPECT_EQ(Rows("SELECT SINAME FROM INS_MASTER"), "Old Name");
}

TEST_F(MasterScreen, EmptiesAdvancedColumnsOfACompanyWithoutThem) {
  for (const bool advanced : {true, false}) {
    Run("DELETE FROM INS_MASTER");
    Run("INSERT INTO INS_MASTER (SITYPE, SINAME, TDSYN, AMTLIMIT, ALLOWLIMIT, EMIRECCNT, INTRRATE, "
        "REDUCINGBALYN, SEPPIYN, SBIIFBYN) VALUES (2, 'Car Loan', 1, 1234567.5, 2, 36, 9.25, 1, 1, 1)");
    Open(1502, advanced);
    ClickRow(screen->fpgSIMaster, 0);
    EXPECT_EQ(screen->txtMaxAmount.Text(), "12,34,567.50");
    if (advanced) {
      Tick(screen->chkMaxAllowed, false);
      Tick(screen->chkInterestRate, false);
    }
    Click(screen->cmdSave);
    // TDSYN last: its hidden box follows the row.
    EXPECT_EQ(Rows("SELECT AMTLIMIT, ALLOWLIMIT, EMIRECCNT, INTRRATE, REDUCINGBALYN, SEPPIYN, SBIIFBYN, "
                   "TDSYN FROM INS_MASTER"),
              advanced ? "1234567.5|NULL|36|NULL|0|1|1|1" : "NULL|NULL|NULL|NULL|0|1|1|1");
    ClickRow(screen->fpgSIMaster, 0);
    Tick(screen->chkType, false);
    EXPECT_FALSE(screen->chkSBIInt.enabled || screen->chkSBIInt.Value());
  }
}

TEST_F(MasterScreen, AsksBeforeHouseLoanDetailsGo) {
  Run("INSERT INTO INS_MASTER (SITYPE, SINAME, SIPREF) VALUES (2, 'House Loan', 1), (2, 'Car Loan', 2);"
      "INSERT INTO INS_ADVLOAN (EMPID, SERIALNO, SITYPE, SINAME) VALUES (17, 1, 2, 'House Loan'), (17, 2, 2, "
      "'Car Loan');"
      "INSERT INTO INS_HLOAN (EMPID, SERIALNO, SITYPE) VALUES (17, 1, 2), (17, 2, 2);"
      "INSERT INTO INS_HLOAN_VAL (EMPID, SERIALNO, SITYPE, FINYEAR) VALUES (17, 1, 2, 2026), (17, 2, 2, "
      "2026)");
  Open(1502);
  const auto save = [&](std::vector<Answer> answers) {
    ClickRow(screen->fpgSIMaster, 1);
    Type(screen->txtAccCode, "HL");
    Type(screen->txtDedPref, "2");
    return Press(screen->cmdSave, std::move(answers));
  };
  const char* const question =
      "TDS details for House Loan found.\r\nRemoving 'House Loan' status will remove these details.\r\n"
      "Do you want to continue?";
  EXPECT_EQ(save({}), Texts{question});  // its own answer is No
  EXPECT_EQ(Rows("SELECT SERIALNO FROM INS_HLOAN_VAL"), "1\n2");
  // The refusal that comes after the Yes does not bring the details back.
  EXPECT_EQ(save({Answer::Yes}).size(), 2u);
  EXPECT_EQ(Rows("SELECT SERIALNO FROM INS_HLOAN") + "," + Rows("SELECT SERIALNO FROM INS_HLOAN_VAL"), "2,2");
  EXPECT_EQ(Rows("SELECT ACCCODE FROM INS_MASTER WHERE SINAME = 'House Loan'"), "NULL");
  Type(screen->txtDedPref, "1");
  EXPECT_EQ(Press(screen->cmdSave), Texts{"Updated"});
}

TEST_F(MasterScreen, DeletesOnlyWhatNoInstructionOfItsTypeUses) {
  Run("INSERT INTO INS_MASTER (SITYPE, SINAME) VALUES (2, 'Car Loan'), (2, 'Used Loan'), (3, 'Car Loan');"
      "INSERT INTO INS_ADVLOAN (EMPID, SERIALNO, SITYPE, SINAME) VALUES (17, 1, 2, 'used loan'),"
      " (17, 1, 1, 'Car Loan')");
  Open(1502);
  EXPECT_EQ(Press(screen->cmdDelete), Texts{}) << "nothing clicked";
  ClickRow(screen->fpgSIMaster, 1);
  EXPECT_EQ(Press(screen->cmdDelete),
            Texts{"Entries found in Loan details for selected Loan.\r\nCannot delete."});
  ClickRow(screen->fpgSIMaster, 0);
  Colour whenAsked = kNoColour;
  desk.whileItStands = [&](const MessageBox&) { whenAsked = screen->fpgSIMaster.At(0, 0).backColour; };
  EXPECT_EQ(Press(screen->cmdDelete),
            Texts{"Do you want to delete selected record?"});  // its own answer is No
  EXPECT_EQ(whenAsked, 0xFFE0E0u);
  EXPECT_EQ(screen->fpgSIMaster.At(0, 0).backColour, kNoColour);
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_MASTER"), "3");
  AnswerDelete(Answer::Yes);
  EXPECT_EQ(Rows("SELECT SITYPE, SINAME FROM INS_MASTER ORDER BY SITYPE"), "2|Used Loan\n3|Car Loan");
  session.ReadOnlyUser = true;
  Open(1502);
  EXPECT_FALSE(screen->cmdSave.enabled || screen->cmdDelete.enabled);
}

TEST_F(MasterScreen, RefusesWhatAnotherWorkstationHasChanged) {
  company.Name(1, "Festival Advance");
  company.Name(1, "Travel Advance");
  const auto refused = [&] {
    EXPECT_EQ(
        desk.LastBox().text,
        "Row cannot be located for updating. Some values may have been changed since it was last read.");
    desk.TakeBoxes();
  };
  modSIMaster& s = Open(1501);
  ClickRow(s.fpgSIMaster, 0);
  Run("UPDATE INS_MASTER SET SIPREF = 7 WHERE SINAME = 'Festival Advance'");
  SaveAs("Feast Advance");
  refused();
  EXPECT_EQ(s.txtSIName.Text(), "");
  ClickRow(s.fpgSIMaster, 0);
  Run("UPDATE INS_MASTER SET SINAME = 'Fest Advance' WHERE SIPREF = 7");
  AnswerDelete(Answer::Yes);
  refused();
  ClickRow(s.fpgSIMaster, 1);
  desk.whileItStands = [this](const MessageBox& box) {  // the name is taken into use while it is asked about
    if (box.buttons == Buttons::YesNo) company.Advance(17, 1, "Travel Advance", 100);
  };
  AnswerDelete(Answer::Yes);
  refused();
  EXPECT_EQ(Rows("SELECT SINAME, SIPREF FROM INS_MASTER WHERE SITYPE = 1 ORDER BY SINAME"),
            "Fest Advance|7\nTravel Advance|NULL");
}

TEST_F(MasterScreen, WritesAuditTextsWithOldValues) {
  Run("UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 1");
  const auto audit = [](const std::string& act, const std::string& details) {
    return "19|0|Standing Instructions - Loan Master " + act + "|Loan Master " + act +
           ":::SI Type = Loan:SI Name = " + details + ":Reducing Balance = No";
  };
  Open(1502, true);
  Tick(screen->chkType, true);
  Tick(screen->chkMaxAmount, true);
  Type(screen->txtMaxAmount, "50000");
  SaveAs("Car's Loan");
  EXPECT_EQ(LastAudit(), audit("Created/Updated",
                               "Cars Loan:Separate Principle/Interest Accounting. = Yes:Consider Interest "
                               "Free Benefit = No::Advance Options:Maximum Amount = 50,000.00"));
  ClickRow(screen->fpgSIMaster, 0);
  Type(screen->txtDedPref, "3");
  Tick(screen->chkSBIInt, true);
  Type(screen->txtMaxAmount, "60000");
  SaveAs("Van Loan");
  const std::string separate = ":Deduction Pref. = 3:Separate Principle/Interest Accounting. = Yes";
  EXPECT_EQ(LastAudit(), audit("Created/Updated", "Van Loan (Cars Loan)" + separate +
                                                      ":Consider Interest Free Benefit = Yes (No)::Advance "
                                                      "Options:Maximum Amount = 60,000.00 (50,000.00)"));
  ClickRow(screen->fpgSIMaster, 0);
  Click(screen->cmdNew);  // the fields are empty, the clicked row is still the one to delete
  AnswerDelete(Answer::Yes);
  EXPECT_EQ(LastAudit(),
            audit("Deleted",
                  "Van Loan" + separate +
                      ":Consider Interest Free Benefit = Yes::Advance Options:Maximum Amount = 60,000.00"));
}

TEST_F(MasterScreen, MarksInsuredEmployeesForPorting) {
  MakeLocalStore();
  // April 2026 to March 2027 is one financial year.
  Run("INSERT INTO MAS_EMPLOYEE (EMPID, EMPNAME, TDSYN) VALUES (17, 'Asha Rane', 1), (18, 'Vivek Naik', 1);"
      "INSERT INTO INS_MASTER (SITYPE, SINAME) VALUES (3, 'Term Cover'), (7, 'Term Cover');"
      "INSERT INTO INS_OTHER (EMPID, SERIALNO, SITYPE, OTHNAME, STARTMY, ENDMY) VALUES (17, 1, 3, 'Term "
      "Cover', 24316, 24327), (17, 1, 7, 'Term Cover', 24316, 24327), (18, 1, 3, 'Other Cover', 24316, "
      "24327), (18, 1, 7, 'Other Cover', 24316, 24327)");
  for (const auto& [formCode, flags] : {std::pair{1503, "17|1|0"}, {1507, "17|0|1"}}) {
    Run("DELETE FROM INC_PORTEDSTAT");
    Open(formCode);
    Rename("Renamed Cover");
    EXPECT_EQ(Rows("SELECT EMPID, INSOTHERYN, INSURANCEYN FROM INC_PORTEDSTAT"), flags);
  }
}

Texts TextsOf(const std::vector<Statement>& statements) {
  Texts texts;
  for (const Statement& statement : statements) texts.push_back(statement.text());
  return texts;
}

TEST_F(MasterScreen, WritesStatementsForTheOtherDialect) {
  const InstructionMaster loan{
      .type = Loan, .siName = "Rita's Loan", .tdsYn = true, .sepPiYn = true, .intrRate = 9.5};
  const Texts rename = TextsOf(OraSaveStatements(session, loan, "Old", true));
  EXPECT_EQ(rename, (Texts{"INSERT INTO INS_MASTER VALUES (2, 'Rita''s Loan', Null, 1, Null, Null, Null, "
                           "Null, Null, Null, 0, 1, 0)",
                           "Update INS_ADVLOAN Set SINAME = 'Rita''s Loan' Where SINAME = 'Old' AND SITYPE=2",
                           "Update INS_OTHER Set OTHNAME = 'Rita''s Loan' Where OTHNAME = 'Old' AND SITYPE=2",
                           "Update INS_MASTER Set AMTLIMIT = Null, ALLOWLIMIT = Null, EMIRECCNT = Null, "
                           "INTRRATE = 9.5, REDUCINGBALYN = 0 Where SINAME = 'Rita''s Loan' AND SITYPE=2",
                           "Delete From INS_MASTER Where SINAME = 'Old' AND SITYPE=2"}));
  EXPECT_EQ(TextsOf(OraSaveStatements(session, loan, "Rita's Loan", false)),
            (Texts{"UPDATE INS_MASTER SET ACCCODE = Null, TDSYN = 1, SIPREF = Null, TDSREFNO = Null Where "
                   "SINAME = 'Rita''s Loan' AND SITYPE=2"}));
  Run("INSERT INTO INS_MASTER (SITYPE, SINAME) VALUES (2, 'Old')");
  for (const std::string& statement : rename) Run(statement);
  EXPECT_EQ(Rows("SELECT SINAME, TDSYN, SEPPIYN, SBIIFBYN, INTRRATE FROM INS_MASTER"),
            "Rita's Loan|1|1|0|9.5");
}

}  // namespace ktl
