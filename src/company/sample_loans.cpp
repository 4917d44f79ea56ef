#include "company/sample_loans.h"

#include <fmt/format.h>

#include <algorithm>

#include "company/company_error.h"
#include "company/random.h"
#include "company/sample_anchors.h"
#include "company/sample_premiums.h"
#include "company/sample_schedule.h"

namespace ktl {
namespace {

using namespace std::chrono_literals;

constexpr const char* kAdjusted = "Adjusted";
constexpr int kLastFirstMonth = MonthNo(2026, 10);
constexpr Day kLastReceipt = 2026y / 9 / 30;

// What is given under a name: instalments of so many rupees (a multiple of 500), so many of them.
struct Offer {
  SampleType type;
  const char* name;
  SampleOrigin origin;
  double percent;       // a month for Reducing, a year for Apart
  double flatPercent;   // of the whole amount
  int lowest, highest;  // instalment in steps of 500
  int fewest, most;     // instalments
};

constexpr Offer kAdvances[] = {
    {SampleType::Advance, "Salary Advance", SampleOrigin::Flat, 0, 0, 2, 10, 3, 10},
    {SampleType::Advance, "Festival Advance", SampleOrigin::Flat, 0, 5, 2, 4, 5, 10},
    {SampleType::Advance, "Medical Advance", SampleOrigin::Reducing, 1, 0, 2, 8, 6, 24},
    {SampleType::Advance, "Welfare Advance", SampleOrigin::Apart, 0, 0, 2, 6, 6, 24},
};

constexpr Offer kLoanOffers[] = {
    {SampleType::Loan, "Consumer Loan", SampleOrigin::Flat, 0, 0, 1, 6, 12, 36},
    {SampleType::Loan, "Personal Loan", SampleOrigin::Reducing, 1, 0, 2, 8, 12, 48},
    {SampleType::Loan, "Computer Loan", SampleOrigin::Flat, 0, 5, 2, 5, 12, 20},
    {SampleType::Loan, "Vehicle Loan", SampleOrigin::Apart, 8, 0, 4, 10, 24, 60},
    {SampleType::Loan, "Plot Purchase Loan", SampleOrigin::Apart, 6, 0, 8, 16, 36, 120},
    {SampleType::Loan, "House Building Loan", SampleOrigin::Apart, 5, 0, 8, 24, 60, 240},
};

// A month in which an employee in service can begin to pay back.
int FirstInstalmentMonth(const SamplePerson& person, Random& random) {
  const int first = std::max(kFirstMonth - 12, MonthNo(person.joined) + 2);
  const int last = std::min(kLastFirstMonth, person.left ? MonthNo(*person.left) : kLastFirstMonth);
  return random.Between(first, last);
}

void SetPaidByHand(std::vector<SampleInstalment>& rows) {
  for (auto& row : rows) row.recovered = row.month < kFirstMonth;
}

void Shift(SampleInstalment& row, double amount) {
  row.modified += amount;
  if (row.modifiedPrincipal) *row.modifiedPrincipal += amount;
  row.remarks = kAdjusted;
}

// Hundred rupees put off to the next month, here and there after Apr/2025.
void AdjustSome(std::vector<SampleInstalment>& rows, Random& random) {
  constexpr double kPutOff = 100;
  for (std::size_t i = 0; i + 1 < rows.size(); i += 2) {
    if (rows[i].month <= MonthNo(2025, 4) || !random.Percent(5)) continue;
    Shift(rows[i], -kPutOff);
    Shift(rows[i + 1], kPutOff);
  }
}

// One month taken out and entered anew behind the last one.
void MoveOneToTheEnd(std::vector<SampleInstalment>& rows, Random& random) {
  if (rows.size() < 3) return;
  const auto moved = rows.begin() + random.Between(1, static_cast<int>(rows.size()) - 2);
  SampleInstalment row = *moved;
  row.month = rows.back().month + 1;
  row.counter = rows.back().counter + 1;
  rows.erase(moved);
  rows.push_back(std::move(row));
}

std::vector<SampleReceipt> SomeReceipts(const SampleInstruction& made, Random& random) {
  std::vector<SampleReceipt> receipts;
  if (!random.Percent(12)) return receipts;
  const Day afterLast = AddDays(LastDay(made.rows.back().month), 10);
  Day date = made.date;
  for (int count = random.Between(1, 3); count > 0; --count) {
    date = random.Percent(5) ? std::max(date, afterLast) : AddDays(date, random.Between(20, 120));
    if (date > kLastReceipt) break;
    receipts.push_back({date, 500.0 * random.Between(1, 10)});
  }
  return receipts;
}

SampleInstruction MakeLoan(const Offer& offer, int serial, int firstMonth, std::optional<int> length,
                           Random& random) {
  const int count = length.value_or(random.Between(offer.fewest, offer.most));
  const double instalment = 500.0 * random.Between(offer.lowest, offer.highest);
  SampleInstruction made;
  made.type = offer.type;
  made.serial = serial;
  made.name = offer.name;
  made.amount = instalment * count;
  made.date = AddDays(FirstDay(firstMonth), -random.Between(3, 20));
  if (offer.flatPercent > 0) made.interest = made.amount * offer.flatPercent / 100;
  const double withInterest = instalment + instalment * offer.flatPercent / 100;
  made.rows = MakeSchedule({offer.origin, firstMonth, withInterest * count, withInterest, offer.percent,
                            offer.type == SampleType::Loan ? random.Between(1, 3) : 0});
  SetPaidByHand(made.rows);
  AdjustSome(made.rows, random);
  if (random.Percent(2)) MoveOneToTheEnd(made.rows, random);
  TotalInterest(made);
  return made;
}

}  // namespace

SampleLoans::SampleLoans(std::uint64_t seed, int employees, LoanTargets targets)
    : seed_(seed), employees_(employees), targets_(targets) {
  for (int id = 1; id <= std::min(employees, kAnchors); ++id) {
    for (const auto& made : AnchorInstructions(id)) {
      ++anchorLoans_;
      anchorRows_ += static_cast<long>(made.rows.size());
    }
    for (const auto& made : AnchorPremiums(id)) anchorRows_ += static_cast<long>(made.rows.size());
  }
  PlanLengths();
}

void SampleLoans::PlanLengths() {
  if (!targets_.Any()) return;
  if (employees_ <= kAnchors)
    throw CompanyError(fmt::format("A number of loans needs more than {} employees.", kAnchors));
  for (int id = kAnchors + 1; id <= employees_; ++id) {
    const Count count = CountOf(id);
    bulkLoans_ += count.advances + count.loans;
  }
  if (targets_.loans && *targets_.loans < anchorLoans_) {
    throw CompanyError(fmt::format("At least {} loans are in every company.", anchorLoans_));
  }
  if (targets_.instalments && *targets_.instalments < anchorRows_ + bulkLoans_) {
    throw CompanyError(
        fmt::format("{} instalments are the fewest for these loans.", anchorRows_ + bulkLoans_));
  }
}

SampleLoans::Count SampleLoans::CountOf(int employee) const {
  if (targets_.loans) {
    const int others = employees_ - kAnchors;
    const int rest = *targets_.loans - anchorLoans_;
    const int mine = rest / others + (employee - kAnchors <= rest % others ? 1 : 0);
    return {mine / 2, mine - mine / 2};
  }
  Random random(seed_, static_cast<std::uint64_t>(employee), Topic::LoanCount);
  const int advances = random.Percent(70) ? random.Between(1, 3) : 0;
  const int loans = random.Percent(55) ? random.Between(1, 2) : 0;
  return {advances, loans};
}

// Pairs of loans, one as much above the mean as the other is below it.
std::optional<int> SampleLoans::NextLength() {
  if (!targets_.instalments) return std::nullopt;
  const long rows = *targets_.instalments - anchorRows_;
  const long mean = rows / bulkLoans_;
  const long index = made_++;
  const bool paired = index / 2 * 2 + 1 < bulkLoans_;
  const long spread = paired ? index / 2 * 7 % (mean / 2 + 1) : 0;
  return static_cast<int>(mean + (index < rows % bulkLoans_ ? 1 : 0) + (index % 2 == 0 ? spread : -spread));
}

std::vector<SampleInstruction> SampleLoans::Make(const SamplePerson& person) {
  if (person.id <= kAnchors) return AnchorInstructions(person.id);
  const Count count = CountOf(person.id);
  std::vector<SampleInstruction> made;
  Random receipts(seed_, static_cast<std::uint64_t>(person.id), Topic::Receipt);
  const auto add = [&](const auto& offers, int number, Random random) {
    for (int serial = 1; serial <= number; ++serial) {
      const auto& offer = random.OneOf(offers);
      const int month = FirstInstalmentMonth(person, random);
      made.push_back(MakeLoan(offer, serial, month, NextLength(), random));
      made.back().receipts = SomeReceipts(made.back(), receipts);
    }
  };
  add(kAdvances, count.advances, Random(seed_, person.id, Topic::Advance));
  add(kLoanOffers, count.loans, Random(seed_, person.id, Topic::Loan));
  return made;
}

LoanWriter::LoanWriter(SqliteDatabase& database)
    : loan_(database,
            "INS_ADVLOAN (EMPID, SERIALNO, SITYPE, SINAME, LOANACNO, SIDATE, ACTAMT, INTAMT, REMARKS)"),
      instalment_(database,
                  "INS_EMIDETAIL (EMPID, SERIALNO, SITYPE, MONTHYEAR, COUNTER, EMIAMT, MDFYAMT, ACTPRNAMT, "
                  "ACTINTAMT, "
                  "MDFPRNAMT, MDFINTAMT, INTAMT, INSTID, EMIRECVYN, REMARKS)"),
      receipt_(database,
               "INS_RECEIPTS (EMPID, SERIALNO, SITYPE, COUNTER, RCPTDATE, RCPTPRNAMT, RCPTINTAMT, RCPTAMT, "
               "REMARKS)") {}

void LoanWriter::Write(int employee, const SampleInstruction& made) {
  loan_(employee, made.serial, int(made.type), made.name, made.accountNo, made.date, made.amount,
        made.interest, made.remarks);
  WriteInstalments(employee, made);
  int counter = 0;
  for (const auto& receipt : made.receipts) {
    receipt_(employee, made.serial, int(made.type), ++counter, receipt.date, receipt.amount, 0.0,
             receipt.amount, nullptr);
  }
}

void LoanWriter::WriteInstalments(int employee, const SampleInstruction& made) {
  for (const auto& row : made.rows) {
    instalment_(employee, made.serial, int(made.type), row.month, row.counter, row.amount, row.modified,
                row.actualPrincipal, row.actualInterest, row.modifiedPrincipal, row.modifiedInterest,
                row.interest, row.institution, row.recovered, row.remarks);
  }
}

void WriteHouseLoans(SqliteDatabase& database) {
  database.RunScript(R"sql(
INSERT INTO INS_HLOAN (EMPID, SERIALNO, SITYPE, HADDR, HTYPE, HCAPBORYN) VALUES
  (5, 1, 2, '14 Lotus Lane, Pune 411004', 1, 1), (12, 1, 2, '7 Temple Road, Pune 411030', 2, 0);
INSERT INTO INS_HLOAN_VAL (EMPID, SERIALNO, SITYPE, FINYEAR, PRCPAMT, INTRAMT, GRSANNVAL, MTAXPAID) VALUES
  (5, 1, 2, 2025, 82500, 94875, 0, 0), (5, 1, 2, 2026, 90000, 93150, 0, 0),
  (12, 1, 2, 2025, 55000, 26354.17, 144000, 4200);
)sql");
}

}  // namespace ktl
