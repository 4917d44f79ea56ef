#include "frame/options.h"

#include <gtest/gtest.h>

#include "support/frame_fixture.h"

namespace ktl {
namespace {

class OptionsTest : public FrameFixture {
 protected:
  OptionsTest() { Connect(); }
};

TEST_F(OptionsTest, DefaultsStandWithoutRows) {
  for (const char* table : {"MAS_OPTSET", "MAS_OPTSETFEATURE"}) Sql("DELETE FROM " + std::string(table));
  session.options.EMPIDCAP = "of an earlier load";
  session.features.switches["LOANYN"] = true;
  LoadOptionSet(session);
  EXPECT_EQ(session.options.EMPIDCAP, "Emp ID");
  EXPECT_EQ(session.options.ENDMONTHYEAR, 22800);
  EXPECT_EQ(session.options.DEFSTRUCTID, 1);
  EXPECT_FALSE(session.features.On("LOANYN"));
  EXPECT_EQ(session.features.ATTNCALCTYPE, 1);
}

TEST_F(OptionsTest, NullsGiveWayToDefaults) {
  Sql("UPDATE MAS_OPTSET SET ROUNDTYPE = NULL, DEFSTRUCTID = NULL, REFNOCAP = NULL, DERIVABLETOTCAP = NULL, "
      "EMPREFNOYN = NULL, TDSMAR2FEB = NULL");
  Sql("UPDATE MAS_OPTSETFEATURE SET LOANYN = NULL, ADVMGALYN = NULL, AUTOPFTYPE = NULL, PFSEPARATOR = NULL");
  LoadOptionSet(session);
  EXPECT_EQ(session.options.ROUNDTYPE, 1);
  EXPECT_EQ(session.options.DEFSTRUCTID, 0);
  EXPECT_EQ(session.options.REFNOCAP, "Ref. No.");
  EXPECT_EQ(session.options.DERIVABLETOTCAP, "Derivable Total");
  EXPECT_FALSE(session.options.TDSMAR2FEB);
  EXPECT_FALSE(session.features.On("ADVMGALYN"));
  EXPECT_EQ(session.features.AUTOPFTYPE, 1);
}

TEST_F(OptionsTest, SwitchesComparedWithOneAndSwitchesConverted) {
  Sql("UPDATE MAS_OPTSET SET EMPREFNOYN = 2, TDSMAR2FEB = 2");
  Sql("UPDATE MAS_OPTSETFEATURE SET LOANYN = 2, ADVMGALYN = 2, SSSYN = 1, EMPLOCKYN = 0");
  Fill("MAS_ATTHEAD", "(ATTHEADID, OT2YN) VALUES (1, 1)");
  LoadOptionSet(session);
  EXPECT_FALSE(session.options.EMPREFNOYN);
  EXPECT_TRUE(session.options.TDSMAR2FEB);
  const std::pair<const char*, bool> switches[] = {
      {"LOANYN", false}, {"ADVMGALYN", true}, {"SSSYN", true}, {"EMPLOCKYN", false}};
  for (const auto& [name, on] : switches) EXPECT_EQ(session.features.On(name), on) << name;
  EXPECT_FALSE(session.options.hasOvertime1);
  EXPECT_TRUE(session.options.hasOvertime2);
}

TEST_F(OptionsTest, AdministratorSeesEveryClass) {
  Sql("UPDATE MAS_OPTSET SET CLASSSECURITYN = 1");
  for (const auto& [user, on] : {std::pair{"admin", false}, {"RAVI", true}}) {
    Setting("User", user);
    LoadOptionSet(session);
    EXPECT_EQ(session.options.CLASSSECURITYN, on) << user;
  }
}

TEST_F(OptionsTest, AMissingColumnIsAFailureButForOne) {
  DropColumn("MAS_OPTSET", "DERIVABLETOTCAP");
  EXPECT_NO_THROW(LoadOptionSet(session));
  EXPECT_EQ(session.options.DERIVABLETOTCAP, "Derivable Total");
  DropColumn("MAS_OPTSETFEATURE", "BAREACTSYN");
  EXPECT_THROW(LoadOptionSet(session), DatabaseError);
}

TEST_F(OptionsTest, CompaniesRenameHeadsAndTypes) {
  Fill("MAS_PULLDOWNVALUES",
       "(REFID, PDID, PDLISTNAME, PDLISTDESC) VALUES (26, 1, 'a', 'Post'), (26, 3, 'a', ''), "
       "(26, 6, 'a', 'Site'), (26, 8, 'a', 'Nothing'), (5, 2, 'a', 'Staff Loan'), (5, 4, 'a', NULL), (5, 6, "
       "'a', 'Nothing')");
  Fill("MAS_EXTCAPTION",
       "(Masterid, Caption, Transfered) VALUES (1, 'Title', 1), (2, 'Trade', 0), (5, '', 1), "
       "(6, 'Zone', 1), (19, 'Shift', 0)");
  session.captions.types[4] = "of an earlier load";
  LoadCaptions(session);
  LoadFeatureSet(session);
  const std::array<std::string, 7> groups = {"Title", "Occupation", "Department", "Division",
                                             "Grade", "Site",       "Attendance"};
  EXPECT_EQ(session.captions.groups, groups);
  EXPECT_EQ(session.captions.extended.front(), "Zone");
  EXPECT_EQ(session.captions.extended.back(), "Shift");
  EXPECT_EQ(session.captions.types.at(2), "Staff Loan");
  EXPECT_EQ(session.captions.types.at(4), "SSS");
  EXPECT_FALSE(session.captions.types.contains(6));
}

TEST_F(OptionsTest, EmployeeDetailForFormulas) {
  Fill("MAS_EMPLOYEE", "(EMPID, EMPNAME, DOJ) VALUES (1, 'Asha Rane', '05/Apr/2010')");
  Fill("MAS_BRANCH", "(BRANCHID, BRANCHNAME) VALUES (3, 'Pune')");
  Fill("MAS_ATTHEAD", "(ATTHEADID, ATTHEADNAME) VALUES (4, 'Works')");
  Fill("MAS_SALSTRUCT", "(STRUCTID, STRUCTDESC) VALUES (5, 'Staff')");
  Fill("MAS_EMPLOYEEDET",
       "(EMPDETID, EMPID, BRANCHID, ATTHEADID, STRUCTID, GRADE, EFFFROMDATE) VALUES (1, 1, 3, 4, 5, 'G2', "
       "'01/Apr/2010')");
  LoadEmployeeDetail(session, 1, 1);
  EXPECT_EQ(session.employeeDetail.BRANCHNAME + session.employeeDetail.ATTHEADNAME, "PuneWorks");
  EXPECT_EQ(session.employeeDetail.STRUCTDESC + session.employeeDetail.GRADE, "StaffG2");
  LoadEmployeeDetail(session, 1, 2);  // no such detail: the texts go, the dates stay
  EXPECT_EQ(session.employeeDetail.DOJ, "05/Apr/2010");
  EXPECT_EQ(session.employeeDetail.DOL, "");
  EXPECT_EQ(session.employeeDetail.GRADE, "");
}

}  // namespace
}  // namespace ktl
