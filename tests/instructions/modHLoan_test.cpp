#include "instructions/modHLoan.h"

#include "entry_fixture.h"

namespace ktl {
namespace {

// Loan 1 runs from Apr/2026 (24316) to Mar/2027 (24327).
class HouseLoanTest : public EntryScreen {
 protected:
  HouseLoanTest() {
    company.Loan(17, 1, "Car Loan", 12000);
    for (int month = 0; month < 12; ++month) company.Emi(17, 2, 1, month + 1, 24316 + month, 1000);
    OpenOnFirst(Loan);
  }
  ~HouseLoanTest() override { house.reset(); }

  modHLoan& OpenHouse() {
    house = std::make_unique<modHLoan>(session, *screen);
    RunAndGrantFocus(*house, [this] { house->Load(); });
    return *house;
  }
  modHLoan& SavedHouse(const char* type = "Let Out") {
    OpenHouse();
    Pick(house->cmbHType, type);
    EXPECT_EQ(Press(house->cmdSave), Texts{"Updated"});
    return *house;
  }
  Texts AddYear(const char* year, const char* principal, const char* interest) {
    Type(house->cmbFinYear, year);
    Type(house->txtPrcpAmt, principal);
    Type(house->txtInterestAmt, interest);
    return Press(house->cmdAdd);
  }
  std::string Houses() {
    return Rows("SELECT EMPID, SERIALNO, SITYPE, HADDR, HTYPE, HCAPBORYN FROM INS_HLOAN");
  }
  std::string Years() {
    return Rows("SELECT FINYEAR, PRCPAMT, INTRAMT, GRSANNVAL, MTAXPAID FROM INS_HLOAN_VAL ORDER BY FINYEAR");
  }

  std::unique_ptr<modHLoan> house;
};

TEST_F(HouseLoanTest, KeepsTheQuestionForAHouseOfOnesOwnAlone) {
  OpenHouse();
  EXPECT_EQ(house->caption, "House Loan Details - Asha Rao (K17)");
  Type(house->txtHAddr, "4, D'Souza Lane");
  Pick(house->cmbHType, "Un-Occupied");
  EXPECT_FALSE(house->optCapBorYes.enabled);
  Type(house->txtGross, "120");
  EXPECT_EQ(house->txtGross.Text(), "120.00");
  Pick(house->cmbHType, "Self Occupied");
  EXPECT_EQ(house->txtGross.Text(), "");
  EXPECT_FALSE(house->txtGross.enabled);
  EXPECT_FALSE(house->txtMTax.enabled);
  Tick(house->optCapBorYes);
  EXPECT_EQ(Press(house->cmdSave), Texts{"Updated"});
  EXPECT_EQ(Houses(), "17|1|2|4, D'Souza Lane|1|1");
  OpenHouse();
  EXPECT_EQ(house->cmbHType.Text(), "Self Occupied");
  EXPECT_TRUE(house->optCapBorYes.Value());
  Pick(house->cmbHType, "Let Out");
  EXPECT_EQ(Press(house->cmdSave), Texts{"Updated"});
  EXPECT_EQ(Houses(), "17|1|2|4, D'Souza Lane|2|0");
}

TEST_F(HouseLoanTest, RefusesASecondHouseWhoseMonthsBeginOrEndWithinThisOnes) {
  const struct {
    int first, last;
    bool refused;
  } cases[] = {{24300, 24316, true},  {24327, 24330, true},  {24320, 24321, true},
               {24300, 24315, false}, {24328, 24330, false}, {24300, 24340, false}};
  company.Loan(17, 2, "Car Loan", 500);
  for (const auto& other : cases) {
    Run("DELETE FROM INS_EMIDETAIL WHERE SERIALNO = 2");
    Run("DELETE FROM INS_HLOAN");
    company.Emi(17, 2, 2, 1, other.first, 250);
    company.Emi(17, 2, 2, 2, other.last, 250);
    OpenHouse();
    Pick(house->cmbHType, "Self Occupied");
    const std::string said = Press(house->cmdSave).at(0);
    EXPECT_EQ(said, other.refused
                        ? "House Loan already entered for 'Self Occupied' type.\r\nAnother of the same "
                          "type not allowed."
                        : "Updated")
        << other.first << " to " << other.last;
    EXPECT_EQ(Houses().empty(), other.refused);
  }
  Run("DELETE FROM INS_EMIDETAIL WHERE SERIALNO = 1");
  SavedHouse("Self Occupied");  // without months there is no overlap
}

TEST_F(HouseLoanTest, WritesAYearOverAndMarksItForTheTax) {
  OpenHouse();
  EXPECT_EQ(AddYear("2026-2027", "5", "5"), Texts{"Save house details to continue."});
  SavedHouse();
  EXPECT_EQ(house->cmbFinYear.Rows().size(), 1U);  // Apr/2026 to Mar/2027, December too
  EXPECT_EQ(AddYear("2027-2028", "5", "5"), Texts{"Select 'Financial Year'."});
  EXPECT_EQ(AddYear("2026-2027", "0.004", "5"), Texts{"Enter 'Principle Amount'."});
  EXPECT_EQ(AddYear("2026-2027", "5", ""), Texts{"Enter 'Interest Amount'."});
  EXPECT_EQ(house->Focus(), &house->txtInterestAmt);
  EXPECT_EQ(Years(), "");
  Type(house->txtGross, "36000");
  Type(house->txtMTax, "1200.5");
  EXPECT_EQ(AddYear("2026-2027", "9000.129", "800"), Texts{"Updated"});
  EXPECT_EQ(Years(), "2026|9000.13|800|36000|1200.5");
  EXPECT_EQ(Rows("SELECT EMPID, FINYEAR, HOUSINGLOANYN FROM INC_PORTEDSTAT"), "17|2026|1");
  EXPECT_EQ(house->txtPrcpAmt.Text() + house->txtGross.Text(), "");
  EXPECT_EQ(AddYear("2026-2027", "9100", "700"), Texts{"Updated"});
  EXPECT_EQ(Years(), "2026|9100|700|0|0");
  Run("INSERT INTO INS_HLOAN_VAL (EMPID, SERIALNO, SITYPE, FINYEAR) VALUES (17, 1, 2, 2029)");
  OpenHouse();
  ClickRow(house->fpgEMIDetail, 1);
  EXPECT_EQ(house->cmbFinYear.Text(), "2029-2030");
  ClickRow(house->fpgEMIDetail, 0);
  EXPECT_EQ(house->txtPrcpAmt.Text(), "9100.00");
  EXPECT_EQ(Press(house->cmdRemove, {Answer::No}), Texts{"Do you want to remove selected record?"});
  Press(house->cmdRemove, {Answer::Yes});
  EXPECT_EQ(Years(), "2029|NULL|NULL|NULL|NULL");
  EXPECT_EQ(Press(house->cmdRemove), Texts{"Select record to remove."});
  EXPECT_EQ(Rows("SELECT HOUSINGLOANYN FROM INC_PORTEDSTAT"), "1");
  EXPECT_EQ(house->cmbFinYear.Rows().size(), 2U);
}

TEST_F(HouseLoanTest, LeavesTheYearWhenItsMarkFails) {
  SavedHouse();
  Run("DROP TABLE INC_PORTEDSTAT");
  EXPECT_EQ(AddYear("2026-2027", "9000", "800").size(), 1U);
  EXPECT_EQ(Years(), "2026|9000|800|0|0");
}

TEST_F(HouseLoanTest, DeletesTheYearsWithTheHouse) {
  OpenHouse();
  EXPECT_EQ(Press(house->cmdDelete), Texts{"No record found to delete."});
  EXPECT_EQ(Press(house->cmdRemove), Texts{"No records to delete."});
  EXPECT_EQ(Press(house->cmdSave), Texts{"Select the 'Type of House'."});
  SavedHouse();
  AddYear("2026-2027", "9000", "800");
  Press(house->cmdDelete);
  EXPECT_NE(Houses(), "");
  Press(house->cmdDelete, {Answer::Yes});
  EXPECT_EQ(Houses() + Years(), "");
  EXPECT_EQ(house->cmbHType.Text(), "");
  Pick(house->cmbHType, "Let Out");
  Run("DELETE FROM INS_ADVLOAN");
  EXPECT_EQ(Press(house->cmdSave), Texts{"First save the Main Details to save TDS Details."});
}

TEST_F(HouseLoanTest, RefusesWhatAnotherWorkstationHasChanged) {
  SavedHouse();
  Run("UPDATE INS_HLOAN SET HADDR = 'elsewhere'");
  EXPECT_EQ(AddYear("2026-2027", "9000", "800").at(0).substr(0, 21), "Row cannot be located");
  EXPECT_EQ(Years(), "");
  EXPECT_EQ(house->txtHAddr.Text(), "elsewhere");
  EXPECT_EQ(AddYear("2026-2027", "9000", "800"), Texts{"Updated"});
}

}  // namespace
}  // namespace ktl
