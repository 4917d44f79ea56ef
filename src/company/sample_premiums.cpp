#include "company/sample_premiums.h"

#include <fmt/format.h>

#include <algorithm>

#include "company/random.h"

namespace ktl {
namespace {

// How often, in months.
constexpr int kMonthly = 1;
constexpr int kQuarterly = 3;
constexpr int kHalfYearly = 6;
constexpr int kYearly = 12;

struct Premium {
  int employee;  // of an anchor
  SampleType type;
  const char* name;
  int firstMonth;
  int lastMonth;
  int step;
  double amount;
  int institution;  // of INS_EMIDETAIL; an incentive has none
  double fundPercent = 0;
  bool professionTax = false;
};

constexpr int M(int year, int month) { return MonthNo(year, month); }

constexpr Premium kAnchorPremiums[] = {
    {24, SampleType::Insurance, "Life Cover Policy", M(2025, 4), kLastMonth, kMonthly, 500, 4},
    {24, SampleType::Insurance, "Endowment Policy", M(2025, 4), kLastMonth, kYearly, 6000, 5},
    {25, SampleType::Sss, "SSS Contribution", kFirstMonth, kLastMonth, kMonthly, 1000, 7},
    {26, SampleType::GroupInsurance, "Group Term Cover", M(2025, 4), kLastMonth, kQuarterly, 300, 8},
    {27, SampleType::Incentive, "Quarterly Incentive", M(2025, 6), kLastMonth, kQuarterly, 6000, 0, 50, true},
    {48, SampleType::Insurance, "Life Cover Policy", M(2026, 4), kLastMonth, kMonthly, 400, 4},
    {48, SampleType::Sss, "Voluntary SSS", M(2026, 4), kLastMonth, kMonthly, 750, 7},
    {48, SampleType::GroupInsurance, "Group Medical Cover", M(2026, 6), kLastMonth, kMonthly, 150, 9},
    {48, SampleType::Incentive, "Quarterly Incentive", M(2025, 9), kLastMonth, kQuarterly, 4000, 0},
};

SampleInstruction Make(const Premium& premium, int employee, int serial) {
  SampleInstruction made;
  made.type = premium.type;
  made.serial = serial;
  made.name = premium.name;
  if (premium.type != SampleType::Incentive) {
    made.accountNo = fmt::format("P{}/{:05}-{}", int(premium.type), employee, serial);
  }
  made.firstMonth = premium.firstMonth;
  made.lastMonth = premium.lastMonth;
  made.fundPercent = premium.fundPercent;
  made.professionTax = premium.professionTax;
  for (int month = premium.firstMonth; month <= premium.lastMonth; month += premium.step) {
    SampleInstalment row;
    row.month = month;
    row.counter = static_cast<int>(made.rows.size()) + 1;
    row.amount = row.modified = premium.amount;
    row.institution = premium.institution;
    row.recovered = month < kFirstMonth;
    made.rows.push_back(row);
  }
  return made;
}

// Premiums of one employee behind the anchors, each with a month that lies in his service.
class Draw final {
 public:
  Draw(std::uint64_t seed, const SamplePerson& person)
      : random_(seed, static_cast<std::uint64_t>(person.id), Topic::Premium), person_(person) {}

  std::vector<SampleInstruction> All() {
    constexpr const char* kPolicies[] = {"Life Cover Policy", "Endowment Policy", "Pension Policy"};
    constexpr int kPolicySteps[] = {kMonthly, kMonthly, kYearly};
    for (int count = random_.Between(0, 3); count > 0; --count) {
      Add({0, SampleType::Insurance, random_.OneOf(kPolicies), Start(), 0, random_.OneOf(kPolicySteps),
           Amount(3, 20), random_.Between(4, 6)});
    }
    if (random_.Percent(60))
      Add({0, SampleType::Sss, "SSS Contribution", Start(), 0, kMonthly, Amount(5, 20), 7});
    Add({0, SampleType::GroupInsurance, "Group Term Cover", Start(), 0, kQuarterly, Amount(1, 4), 8});
    if (random_.Percent(25)) AddIncentive();
    return std::move(made_);
  }

 private:
  int Start() {
    const int earliest = std::max(kFirstMonth, MonthNo(person_.joined) + 1);
    const int drawn = kFirstMonth + 3 * random_.Between(0, 8);
    return std::max(earliest, person_.left ? std::min(drawn, MonthNo(*person_.left)) : drawn);
  }
  double Amount(int lowest, int highest) { return 100.0 * random_.Between(lowest, highest); }

  void AddIncentive() {
    const bool half = random_.Percent(40);
    Add({0, SampleType::Incentive, half ? "Half Yearly Incentive" : "Quarterly Incentive", Start(), 0,
         half ? kHalfYearly : kQuarterly, Amount(20, 100), 0});
  }
  // Of those who left, every other one's premiums run past the leaving.
  void Add(Premium premium) {
    const bool endsInTime = person_.left && person_.id % 2 == 0;
    premium.lastMonth = std::max(endsInTime ? MonthNo(*person_.left) : kLastMonth, premium.firstMonth);
    const auto same = std::count_if(made_.begin(), made_.end(),
                                    [&](const auto& other) { return other.type == premium.type; });
    made_.push_back(Make(premium, person_.id, static_cast<int>(same) + 1));
  }

  Random random_;
  const SamplePerson& person_;
  std::vector<SampleInstruction> made_;
};

}  // namespace

std::vector<SampleInstruction> AnchorPremiums(int employee) {
  std::vector<SampleInstruction> made;
  for (const auto& premium : kAnchorPremiums) {
    if (premium.employee != employee) continue;
    const bool second = !made.empty() && made.back().type == premium.type;
    made.push_back(Make(premium, employee, second ? 2 : 1));
  }
  if (employee == 24) {
    // Taken out of the schedule once, and entered again with another amount.
    made[1].rows[1].amount = 0;
    made[1].rows[1].modified = 500;
  }
  return made;
}

std::vector<SampleInstruction> MakePremiums(std::uint64_t seed, const SamplePerson& person) {
  return person.id <= kAnchors ? AnchorPremiums(person.id) : Draw(seed, person).All();
}

PremiumWriter::PremiumWriter(SqliteDatabase& database)
    : premium_(database,
               "INS_OTHER (EMPID, SERIALNO, SITYPE, OTHNAME, OTHNO, STARTMY, ENDMY, REMARKS, PFYN, PFPER, "
               "ESIYN, ESIPER, PTYN)") {}

void PremiumWriter::Write(int employee, const SampleInstruction& made) {
  if (made.type == SampleType::Incentive) {
    premium_(employee, made.serial, int(made.type), made.name, made.accountNo, made.firstMonth,
             made.lastMonth, made.remarks, made.fundPercent > 0, made.fundPercent, 0, 0.0,
             made.professionTax);
  } else {
    premium_(employee, made.serial, int(made.type), made.name, made.accountNo, made.firstMonth,
             made.lastMonth, made.remarks, nullptr, nullptr, nullptr, nullptr, nullptr);
  }
}

}  // namespace ktl
