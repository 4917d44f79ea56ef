#include "recovery/modInterestMaster.h"
#include "recovery/reducing_interest.h"
#include "recovery_fixture.h"

namespace ktl {
namespace {

Date Day(int year, int month, int day) { return *Date::FromYmd(year, month, day); }

TEST(ReducingInterestTest, EveryCaseOfBothBases) {
  // Apr 2024 has 30 days, May 31, June 30; a principal of 10000 each month.
  std::vector<ScheduleMonth> months;
  for (const long month : {kApr2024, kApr2024 + 1, kApr2024 + 2})
    months.push_back({.monthYear = month, .MDFPRNAMT = 10000});
  const Date never = Day(2099, 12, 31), start = Day(2024, 4, 15), leaving = Day(2024, 5, 10);
  const struct {
    const char* what;
    double firstMonths;
    bool daysBasis;
    bool exactDates;
    Date leaving;
    std::vector<double> interests;
  } cases[] = {
      {"a twelfth of the year", 1, false, false, never, {1200, 1100, 1000}},
      {"an offset of two", 3, false, false, never, {3600, 1100, 1000}},
      {"days of the month: 1183.56, 1121.10, 986.30", 1, true, false, never, {1184, 1121, 986}},
      {"days are rounded before the offset", 2, true, false, never, {2368, 1121, 986}},
      {"from the start, both days counted: 1200 * 16 / 30", 3, false, true, never, {640, 1100, 1000}},
      {"the same by days: 120000 * 0.12 * 16 / 365", 1, true, true, never, {631, 1121, 986}},
      {"to the leaving day, nothing behind: 1100 * 10 / 31", 1, false, true, leaving, {640, 355, 0}},
      {"the same by days: 110000 * 0.12 * 10 / 365", 1, true, true, leaving, {631, 362, 0}},
      {"left in the first month: 1200 * 20 / 30", 1, false, true, Day(2024, 4, 20), {800, 0, 0}},
      {"leaving counts only with exact dates", 1, false, false, leaving, {1200, 1100, 1000}},
  };
  for (const auto& c : cases) {
    const InterestTerms terms{0.12, c.firstMonths, c.daysBasis, c.exactDates, 120000, start, c.leaving};
    EXPECT_EQ(ReducingInterest(months, terms), c.interests) << c.what;
  }
}

class InterestEditor : public RecoveryTest {};

TEST_F(InterestEditor, ComputesAndWritesBack) {
  Reducing({10000, 10000, 10000}, 0);
  company.Execute("UPDATE INS_ADVLOAN SET ACTAMT = 120000");
  modInterestMaster& editor = Open<modInterestMaster>();
  Click(editor.cmdRedBalance);
  for (const char* rate : {"", "0", "abc", "-0"}) {
    editor.txtInterestRate.SetText(rate);
    Click(editor.cmdUpdateRedBal);
  }
  EXPECT_EQ(desk.TakeTexts(), std::vector<std::string>(4, "Enter Interest Rate"));
  Type(editor.txtInterestRate, "12");
  Click(editor.cmdUpdateRedBal);
  EXPECT_EQ(Amounts("MDFINTAMT"), "0 0 0");  // in the grid only
  TypeCell(editor.fpgSIMaster, 1, modInterestMaster::kActualInterest, "1000.50");
  Click(editor.lblCopyPaste);
  Click(editor.cmdSave);
  EXPECT_EQ(Amounts("MDFINTAMT"), "1200 1000.5 1000");
  EXPECT_EQ(Amounts("MDFYAMT"), "11200 11000.5 11000");
  EXPECT_EQ(Amounts("EMIAMT"), "11200 11000.5 11000");
  EXPECT_EQ(company.One("SELECT INTAMT FROM INS_ADVLOAN").ToDouble(), 3200.5);
  EXPECT_EQ(Flagged(), "0 1 2");
  EXPECT_TRUE(AuditHas(
      "Loan Interest Updated:::SI Type = Loan:SI Name = Car Loan:Serial No. = 1::Interest "
      "Amount Details:Principle + Interest = EMI Amount::Apr/2024:Actual = 10000.00 + 1200.00 = 11200.00 "
      "(10000.00 + 0.00 = 10000.00):Modified"));
  EXPECT_EQ(desk.TakeTexts(), std::vector<std::string>{"Updated"});
}

TEST_F(InterestEditor, RefusesLocksAndKeepsWhatItShows) {
  Reducing({100.005, 200}, 1.2345);
  modInterestMaster& editor = Open<modInterestMaster>();
  EXPECT_EQ(editor.fpgSIMaster.Text(0, modInterestMaster::kModifiedInterest), "1.23");
  Click(editor.cmdSave);
  EXPECT_EQ(Amounts("MDFINTAMT"), "1.2345 1.2345");  // shown with two decimals, written as it is
  company.Lock(kApr2024 + 1);
  Click(editor.cmdSave);
  company.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 0");
  company.Row("SEC_EMPLOCK").With("EMPID", 17).With("MONTHYEAR", kApr2024 + 1).With("LOCKYN", 1);
  TypeCell(editor.fpgSIMaster, 0, modInterestMaster::kModifiedInterest, "9");
  desk.WillAnswer({Answer::Yes});
  editor.Unload();
  EXPECT_FALSE(editor.IsUnloaded());  // what could not be saved is not thrown away
  EXPECT_EQ(desk.TakeTexts(), (std::vector<std::string>{"Updated", "1 month(s) locked.  Cannot save.",
                                                        "Do you want to save the changes?",
                                                        "Employee has been locked. Cannot Save."}));
  EXPECT_EQ(Amounts("MDFINTAMT"), "1.2345 1.2345");
  company.Execute("DELETE FROM INS_EMIDETAIL");
  EXPECT_TRUE(Open<modInterestMaster>().IsUnloaded());
  EXPECT_EQ(desk.TakeTexts(),
            std::vector<std::string>{"Save the record first, and then enter interest details."});
}

TEST_F(InterestEditor, PastesOnlyWhatFits) {
  Reducing({100, 200}, 1);
  modInterestMaster& editor = Open<modInterestMaster>();
  const GridRange modified{0, modInterestMaster::kModifiedPrincipal, 1, modInterestMaster::kModifiedInterest};
  const GridRange last{1, modInterestMaster::kModifiedInterest, 1, modInterestMaster::kModifiedInterest};
  std::string huge;
  for (int row = 0; row < 2500; ++row) huge += "1\t2\t3\t4\n";
  for (const std::string block :
       {"1\t2\t3", "1\n2\n3", "1\t2\n3", "one\ttwo", "", "-1", "9999999999999", huge.c_str(),
        "Month/Year\tModified Int. Amt", "Month/Year\tModified Int. Amt\nJun/2024\t5",
        "Month/Year\tModified Int. Amt\nMay/2024\tfive"})
    editor.fpgSIMaster_Paste(modified, block);
  editor.fpgSIMaster_Paste({0, modInterestMaster::kMonth, 0, modInterestMaster::kMonth}, "1");
  editor.fpgSIMaster_Paste(last, "1\t2");
  EXPECT_EQ(desk.TakeTexts(), std::vector<std::string>(13, "Selected range is invalid to paste."));
  editor.fpgSIMaster_Paste(modified, "1,150.50\t7\r\n250\t8\r\n");
  editor.fpgSIMaster_Paste({0, modInterestMaster::kActualPrincipal, 0, modInterestMaster::kActualPrincipal},
                           "5\t6\n7\t8");
  // A copy of the list finds its months and columns wherever it is pasted.
  editor.fpgSIMaster_Paste(last, "Month/Year\tModified Int. Amt\nMay/2024\t9.506\nApr/2024\t7\n");
  Click(editor.cmdSave);
  EXPECT_EQ(Amounts(), "1157.5 259.51");
  EXPECT_EQ(Amounts("EMIAMT"), "11 15");
}

TEST_F(InterestEditor, TakesAmountsOfTwoPlacesAndNothingElse) {
  ReducingAsMade({100, 200}, 1);
  modInterestMaster& editor = Open<modInterestMaster>();
  const struct {
    const char* typed;
    const char* shown;
    const char* box;
  } cases[] = {
      {"12.345", "12.35", ""},
      {"abc", "12.35", "Specify proper amount."},
      {"12ab", "12.35", "Specify proper amount."},
      {"-1", "12.35", "Specify proper amount."},
      {"10000000000", "12.35", "Amount should be less than 9,99,99,99,999.99"},
      {"9,99,99,99,999.99", "9999999999.99", ""},
      {"", "0.00", ""},
      {"1,000.5", "1000.50", ""},
  };
  for (const auto& c : cases) {
    TypeCell(editor.fpgSIMaster, 0, modInterestMaster::kModifiedInterest, c.typed);
    EXPECT_EQ(editor.fpgSIMaster.Text(0, modInterestMaster::kModifiedInterest), c.shown) << c.typed;
    EXPECT_EQ(desk.TakeTexts(), *c.box == 0 ? std::vector<std::string>{} : std::vector<std::string>{c.box});
  }
  Click(editor.cmdSave);
  EXPECT_EQ(Amounts(), "1100.5 201");  // the months came without components
  // Only what was changed is told, and what was stored before.
  EXPECT_TRUE(AuditHas("Amount::Apr/2024:Actual = 100.00 + 1.00 = 101.00 (100.00 + 1.00 = 101.00):Modified"));
  EXPECT_FALSE(AuditHas("May/2024"));
  Click(editor.cmdRedBalance);
  Type(editor.txtInterestRate, "9999999999");
  Type(editor.txtMonthOffSet, "9999");
  Click(editor.cmdUpdateRedBal);
  desk.TakeTexts();
  Click(editor.cmdSave);
  EXPECT_EQ(desk.TakeTexts(), std::vector<std::string>{"Amount should be less than 9,99,99,99,999.99"});
  EXPECT_EQ(Amounts(), "1100.5 201");
}

}  // namespace
}  // namespace ktl
