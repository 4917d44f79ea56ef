// Money is conserved: random schedules, every operation, on stored rows.
#include <fmt/format.h>

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

// The operations on one of the amounts of a month.
struct Family {
  decltype(&AdjustFutureMonths) edit;
  decltype(&EMIModify) spread, takeFromEnd;
  const char* column;
};
constexpr Family kAmount = {AdjustFutureMonths, EMIModify, EMIModifyLastMonth, "MDFYAMT"};
constexpr Family kPrincipal = {AdjustFuturePrincipal, RedPrinciModify, RedPrinciModifyLastMonth, "MDFPRNAMT"};
constexpr Family kInterest = {AdjustFutureInterest, RedIntModify, RedIntModifyLastMonth, "MDFINTAMT"};

class ConservationTest : public RecoveryTest {
 public:
  // A schedule of up to 12 months from 100 to 900 rupees, some of them recovered.
  void Start(bool reducing) {
    Clear();
    std::vector<double> amounts(2 + random() % 11);
    for (double& amount : amounts) amount = static_cast<double>(10000 + random() % 80000) / 100;
    reducing ? Reducing(amounts, 60) : Instruction(InstructionType::Advance, amounts);
    for (std::size_t month = 0; month < amounts.size(); ++month)
      if (random() % 4 == 0) Recovered(kApr2024 + static_cast<int>(month));
  }
  // False when no month is left to edit.
  bool PrepareEdit() {
    company.Execute("UPDATE SLC_SALARYCALC_E SET EDITMODEYN = 0");
    parent->RefreshEMI();
    family = !parent->reducing ? &kAmount : random() % 2 == 0 ? &kInterest : &kPrincipal;
    before = Numbers(Amounts(family->column));
    if (before.empty()) return false;
    row = random() % before.size();
    difference = static_cast<double>(100 + random() % 30000) / 100;
    return true;
  }
  // A share is rounded to the paisa first: half a paisa a month may be left unplaced.
  void Expect(double grown, std::size_t firstTouched) {
    after = Numbers(Amounts(family->column));
    ASSERT_NEAR(Sum(after) - Sum(before), grown, 0.001 + 0.005 * static_cast<double>(before.size()));
    const auto touched = before.begin() + static_cast<std::ptrdiff_t>(firstTouched);
    ASSERT_TRUE(std::equal(before.begin(), touched, after.begin()));
    const char* torn = "SELECT * FROM INS_EMIDETAIL WHERE ABS(MDFYAMT - MDFPRNAMT - MDFINTAMT) > 0.001";
    ASSERT_EQ(parent->reducing ? company.Rows(torn) : "", "");
  }
  ReceiptDifference Received(double amount, bool deleted = false) {
    const int last = kApr2024 + static_cast<int>(before.size()) - 1;
    return {amount, kApr2024 + static_cast<int>(row), last, deleted};
  }

  void ChangeInEditor() {
    using Mode = EditorDifference::Mode;
    const bool deleting = random() % 2 == 0;
    if (!deleting && random() % 2 == 0) difference = -difference;
    const std::string marks = Amounts("EMIRECVYN");
    const std::vector<double> recovered = Numbers(marks);
    const std::size_t first = deleting ? row : row + 1;
    const bool open =
        std::count(recovered.begin() + static_cast<std::ptrdiff_t>(first), recovered.end(), 0) > 0;
    family->edit(
        session, *parent,
        {deleting ? Mode::Delete : Mode::Save, row, deleting ? difference : before[row] + difference});
    Expect(open ? difference : 0, first);
    ASSERT_EQ(Flagged(), "");
    ASSERT_EQ(Amounts("EMIRECVYN"), marks);
  }
  void SpreadReceipt() {
    const bool deleted = random() % 3 == 0;
    if (!deleted && random() % 2 == 0) difference = -difference;
    family->spread(session, *parent, Received(difference, deleted));
    Expect(deleted ? difference : -difference, row);
    std::string changed;
    for (std::size_t month = 0; month < after.size(); ++month)
      if (after[month] != before[month]) changed += (changed.empty() ? "" : " ") + std::to_string(month);
    ASSERT_EQ(Flagged(), changed);
  }
  void TakeReceiptFromEnd() {
    family->takeFromEnd(session, *parent, Received(difference *= 5));
    Expect(-TakenFromEnd(before, row, difference), row);
    const auto emptied = std::count(after.begin(), after.end(), 0);
    ASSERT_TRUE(emptied == 0 || family == &kInterest);  // a month at 0 is gone, but for its interest
  }
  void AddMonth() {
    const bool flagged = random() % 2 == 0;
    const double interest = difference / 2;
    if (parent->reducing) {
      (flagged ? AddRecoveryMonthRed : CreateRecoveryMonthRed)(session, *parent, difference, interest);
    } else {
      (flagged ? AddRecoveryMonth : CreateRecoveryMonth)(session, *parent, difference);
    }
    Expect(family == &kInterest ? interest : difference, before.size());
    ASSERT_EQ(Flagged(), flagged ? std::to_string(before.size()) : "");
  }

  std::mt19937 random{5021};
  const Family* family = nullptr;
  std::vector<double> before, after;  // its amounts
  std::size_t row = 0;
  double difference = 0;
};

// Nothing is made zero, so that not a paisa may go.
TEST_F(ConservationTest, EverySequenceOfEditsPlacesWhatItIsGiven) {
  using Edit = void (ConservationTest::*)();
  constexpr Edit kEdits[] = {&ConservationTest::ChangeInEditor, &ConservationTest::SpreadReceipt,
                             &ConservationTest::TakeReceiptFromEnd, &ConservationTest::AddMonth};
  for (int run = 0; run < 200; ++run) {
    Start(run % 3 != 0);
    for (int edit = 0; edit < 6 && PrepareEdit(); ++edit) {
      SCOPED_TRACE(fmt::format("schedule {}, edit {}", run, edit));
      if (desk.AnswersLeft() == 0) desk.WillAnswer({Answer::No});
      (this->*kEdits[random() % std::size(kEdits)])();
      if (HasFatalFailure()) return;
    }
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
  Instruction(InstructionType::Advance, {100, 100, 100});
  company.Alter("ALTER TABLE INS_EMIDETAIL RENAME COLUMN INTAMT TO OTHER");
  desk.WillAnswer({Answer::Yes});
  AdjustFutureMonths(session, *parent, {EditorDifference::Mode::Save, 0, -300});
  EXPECT_EQ(Amounts(), "100 0 0");  // although the statement on INTAMT failed
  EXPECT_EQ(desk.TakeTexts().back(), "Adjust value");
  company.Alter("ALTER TABLE SLC_SALARYCALC_E RENAME COLUMN EDITMODEYN TO OTHER");
  EMIModify(session, *parent, {-50, kApr2024, kApr2024 + 2});
  EMIModifyLastMonth(session, *parent, {150, kApr2024, kApr2024 + 2});
  EXPECT_EQ(desk.TakeTexts(),
            (std::vector<std::string>{"Error in EMIModify", "Error in EMIModifyLastMonth"}));
  EXPECT_EQ(Amounts(), "117 0");  // what was written before the failure stays
}

}  // namespace
}  // namespace ktl
