// Money is conserved: random schedules, every operation, on stored rows.
#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <random>
#include <sstream>

#include "recovery/adjustment_write.h"
#include "recovery_fixture.h"

namespace ktl {
namespace {

std::vector<double> Numbers(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<double>(stream), {}};
}

double Sum(const std::vector<double>& amounts) {
  double sum = 0;
  for (const double amount : amounts) sum += amount;
  return sum;
}

// Whole months from the end, then a part of one; a rest below one rupee is dropped.
double TakenFromEnd(const std::vector<double>& amounts, std::size_t first, double difference) {
  double left = difference;
  for (std::size_t row = amounts.size(); row-- > first && (left >= 1 || left == difference);)
    left -= std::min(left, amounts[row]);
  return difference - left;
}

// Past the program's own dialect.
void RawSql(const std::filesystem::path& file, const char* sql) {
  sqlite3* database = nullptr;
  sqlite3_open(file.c_str(), &database);
  EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  sqlite3_close(database);
}

class ConservationTest : public RecoveryTest {
 protected:
  // A schedule of up to 12 months from 100 to 900 rupees, some of them recovered.
  void Start(bool reducing) {
    Clear();
    std::vector<double> amounts(2 + random() % 11);
    for (double& amount : amounts) amount = static_cast<double>(10000 + random() % 80000) / 100;
    reducing ? Reducing(amounts, 60) : Instruction(1, amounts);
    for (std::size_t row = 0; row < amounts.size(); ++row)
      if (random() % 4 == 0) Recovered(kApr2024 + static_cast<int>(row));
    before = Numbers(Amounts(column));
    recoveredBefore = Marks();
  }
  std::string Marks() { return Amounts("EMIRECVYN"); }
  std::size_t Row() { return random() % before.size(); }
  double Paise(int upTo) {
    return static_cast<double>(100 + random() % static_cast<unsigned>(upTo * 100)) / 100;
  }
  double Grown() { return Sum(Numbers(Amounts(column))) - Sum(before); }

  std::mt19937 random{5021};
  std::string column = "MDFYAMT";
  std::vector<double> before;
  std::string recoveredBefore;
};

TEST_F(ConservationTest, TheEditorPlacesTheWholeDifferenceAndFlagsNothing) {
  using Mode = EditorDifference::Mode;
  for (int run = 0; run < 150; ++run) {
    const bool reducing = run % 3 != 0;
    column = !reducing ? "MDFYAMT" : run % 3 == 1 ? "MDFPRNAMT" : "MDFINTAMT";
    Start(reducing);
    const auto operation = !reducing      ? AdjustFutureMonths
                           : run % 3 == 1 ? AdjustFuturePrincipal
                                          : AdjustFutureInterest;
    const std::size_t row = Row();
    const bool deleting = run % 2 == 0;
    const double difference = deleting || run % 4 == 1 ? Paise(300) : -Paise(40);
    const std::vector<double> recovered = Numbers(recoveredBefore);
    const auto first = recovered.begin() + static_cast<std::ptrdiff_t>(deleting ? row : row + 1);
    const bool open = std::count(first, recovered.end(), 0) > 0;
    operation(session, *parent,
              {deleting ? Mode::Delete : Mode::Save, row, deleting ? difference : before[row] + difference});
    ASSERT_NEAR(Grown(), open ? difference : 0, 0.001) << run;
    ASSERT_EQ(Flagged(), "") << run;
    ASSERT_EQ(Marks(), recoveredBefore) << run;
    if (reducing) {
      const std::vector<double> totals = Numbers(Amounts());
      const std::vector<double> sums = Numbers(Amounts("MDFPRNAMT + MDFINTAMT"));
      for (std::size_t month = 0; month < totals.size(); ++month)
        ASSERT_NEAR(totals[month], sums[month], 1e-6) << run;
    }
  }
}

TEST_F(ConservationTest, ReceiptsFallOnTheMonthsFromTheirsOnAndFlagThose) {
  for (int run = 0; run < 150; ++run) {
    const bool reducing = run % 2 == 1;
    column = reducing ? "MDFPRNAMT" : "MDFYAMT";
    Start(reducing);
    const std::size_t row = Row();
    const bool deleted = run % 3 == 0;
    const double difference = run % 3 == 1 ? -Paise(300) : Paise(90);
    (reducing ? RedPrinciModify : EMIModify)(session, *parent,
                                             {difference, kApr2024 + static_cast<int>(row),
                                              kApr2024 + static_cast<int>(before.size()) - 1, deleted});
    ASSERT_NEAR(Grown(), deleted ? difference : -difference, 0.001) << run;
    const std::vector<double> after = Numbers(Amounts(column));
    std::string changed;
    for (std::size_t month = 0; month < after.size(); ++month)
      if (after[month] != before[month]) changed += (changed.empty() ? "" : " ") + std::to_string(month);
    ASSERT_EQ(Flagged(), changed) << run;
    ASSERT_TRUE(std::equal(after.begin(), after.begin() + static_cast<std::ptrdiff_t>(row), before.begin()))
        << run;
  }
}

TEST_F(ConservationTest, AnOverpaymentComesOffTheEnd) {
  for (int run = 0; run < 150; ++run) {
    const bool reducing = run % 2 == 1;
    column = reducing ? "MDFPRNAMT" : "MDFYAMT";
    Start(reducing);
    const std::size_t row = Row();
    const double difference = Paise(3000);
    (reducing ? RedPrinciModifyLastMonth : EMIModifyLastMonth)(
        session, *parent,
        {difference, kApr2024 + static_cast<int>(row), kApr2024 + static_cast<int>(before.size()) - 1});
    ASSERT_NEAR(Grown(), -TakenFromEnd(before, row, difference), 0.001) << run;
    for (const double amount : Numbers(Amounts(column))) ASSERT_GT(amount, 0) << run;  // a month at 0 is gone
  }
}

TEST_F(ConservationTest, ANewMonthHoldsWhatIsGiven) {
  Reducing({100, 200}, 10);
  CreateRecoveryMonth(session, *parent, 50.5);
  CreateRecoveryMonthRed(session, *parent, 30, -4);
  AddRecoveryMonth(session, *parent, 20);
  AddRecoveryMonthRed(session, *parent, 15, 2.5);
  EXPECT_EQ(Amounts("MONTHYEAR - 24292"), "0 1 2 3 4 5");
  EXPECT_EQ(Amounts("COUNTER"), "1 2 3 4 5 6");
  EXPECT_EQ(Amounts(), "110 210 50.5 30 20 17.5");
  EXPECT_EQ(Amounts("EMIAMT"), "110 210 50.5 30 20 17.5");
  EXPECT_EQ(Amounts("ACTPRNAMT"), "100 200 0 30 0 15");
  EXPECT_EQ(Amounts("MDFINTAMT"), "10 10 0 0 0 2.5");
  EXPECT_EQ(Amounts("INSTID"), "5 5 5 5 5 5");
  EXPECT_EQ(Flagged(), "4 5");
  EXPECT_EQ(parent->countersAsked, 4);
  for (const double amount : {0.0, -1.0}) {
    CreateRecoveryMonth(session, *parent, amount);
    CreateRecoveryMonthRed(session, *parent, amount, 7);
  }
  EXPECT_EQ(desk.TakeTexts(), std::vector<std::string>(4, "EMI Adjusted Amount is Negative"));
  CreateRecoveryMonthRed(session, *parent, 40, 6);
  EXPECT_EQ(company.Rows("SELECT EMIAMT, MDFYAMT, ACTINTAMT FROM INS_EMIDETAIL WHERE COUNTER = 7"),
            "40|46|6");
  company.Execute("DELETE FROM INS_EMIDETAIL");
  CreateRecoveryMonth(session, *parent, 10);  // behind no month there is no next one
  EXPECT_EQ(Amounts(), "");
}

TEST_F(ConservationTest, AFailureIsPassedOverOrEndsWithItsWords) {
  Instruction(1, {100, 100, 100});
  RawSql(company.File(), "ALTER TABLE INS_EMIDETAIL RENAME COLUMN INTAMT TO OTHER");
  desk.WillAnswer({Answer::Yes});
  AdjustFutureMonths(session, *parent, {EditorDifference::Mode::Save, 0, -300});
  EXPECT_EQ(Amounts(), "100 0 0");  // although the statement on INTAMT failed
  EXPECT_EQ(desk.TakeTexts().back(), "Adjust value");
  RawSql(company.File(), "ALTER TABLE SLC_SALARYCALC_E RENAME COLUMN EDITMODEYN TO OTHER");
  EMIModify(session, *parent, {-50, kApr2024, kApr2024 + 2});
  EMIModifyLastMonth(session, *parent, {150, kApr2024, kApr2024 + 2});
  EXPECT_EQ(desk.TakeTexts(),
            (std::vector<std::string>{"Error in EMIModify", "Error in EMIModifyLastMonth"}));
  EXPECT_EQ(Amounts(), "117 0");  // what was written before the failure stays
}

}  // namespace
}  // namespace ktl
