#include "company/sample_salary.h"

#include <algorithm>
#include <cmath>

#include "company/random.h"
#include "company/sample_anchors.h"
#include "company/sample_attendance.h"

namespace ktl {
namespace {

constexpr int kShortMonth = MonthNo(2026, 9);
constexpr double kConveyance = 1600;
constexpr double kMedical = 1250;
constexpr double kNightShift = 150;
constexpr int kNightShiftHead = 4;
constexpr double kNotTaken = -1;  // the salary's mark that it left an instalment out

double Rupees(double amount) { return std::floor(amount + 0.5); }

struct Rate {
  double basic, hra, conveyance, special, medical;
  double Gross() const { return basic + hra + conveyance + special + medical; }
};

// Raised in April of each year of the sample.
Rate RateOf(const SamplePerson& person, int month) {
  const int from = std::max(MonthNo(person.joined), kFirstMonth);
  const int rises = person.rises ? std::max(0, (month - 4) / 12 - (from - 4) / 12) : 0;
  const double basic = Rupees(person.basic * std::pow(1.05, rises));
  return {basic, Rupees(basic * 0.4), kConveyance, person.special, kMedical};
}

bool HasRate(const SamplePerson& person) { return person.id != 22; }

int NightShifts(const SamplePerson& person, const SampleDetail* detail, int month) {
  if (person.id == 1) return 6;
  return detail && detail->structure == 3 ? (person.id + month) % 8 : 0;
}

}  // namespace

struct SalaryWriter::Pay {
  double calendarDays = 0, payDays = 0, presentDays = 0;
  double basic = 0, hra = 0, conveyance = 0, special = 0, nightShift = 0, medical = 0;
  double providentFund = 0, stateInsurance = 0, professionTax = 0, incomeTax = 0;
  std::optional<double> insurance;
  int indicator = 0;
  bool toRecalculate = false;

  double Heads() const { return basic + hra + conveyance + special + nightShift + medical; }
};

// What the instructions take, or pay, in one month; nothing where there is no instalment.
struct SalaryWriter::Taken {
  std::array<std::optional<double>, 8> ofType;

  std::optional<double>& operator[](SampleType type) { return ofType[static_cast<std::size_t>(type)]; }
  const std::optional<double>& operator[](SampleType type) const {
    return ofType[static_cast<std::size_t>(type)];
  }

  static Taken In(const SampleBook& book, int month) {
    Taken taken;
    for (const auto& instruction : book.instructions) {
      for (const auto& row : instruction.rows) {
        if (row.month != month) continue;
        auto& sum = taken[instruction.type];
        sum = sum.value_or(0) + row.modified;
      }
    }
    return taken;
  }
};

SalaryWriter::SalaryWriter(SqliteDatabase& database, std::uint64_t seed, int salaryTo)
    : seed_(seed),
      salaryTo_(salaryTo),
      earnings_(database,
                "SLC_SALARYCALC_E (SALID, EMPID, EMPDETID, MONTHYEAR, NETAMOUNT, ETOTAL, INDICATOR, "
                "EDITMODEYN, NOD, NDP, "
                "SALCALDAYS, SIEARNING, BASIC, OT1, OT2, GRATUITYPROV, ECOMP01, ECOMP02, ECOMP03, ECOMP04, "
                "ECOMP05)"),
      deductions_(database,
                  "SLC_SALARYCALC_D (SALID, ADVANCE, LOAN, INSURANCE, SSS, GRPINSURANCE, DCOMP01, DCOMP02, "
                  "DCOMP03, DCOMP04)"),
      rateEarnings_(database,
                    "SLC_SALARYRATE_E (SALRATEID, EMPID, EMPDETID, MONTHYEAR, TOTALENTERED, BASIC, OT1, OT2, "
                    "GRATUITYPROV, "
                    "ECOMP01, ECOMP02, ECOMP03, ECOMP04, ECOMP05)"),
      rateDeductions_(database, "SLC_SALARYRATE_D (SALRATEID, DCOMP01, DCOMP02, DCOMP03, DCOMP04)"),
      units_(database, "SLC_COMPCALCDET (EMPID, MONTHYEAR, STRUCTID, PAYTYPEYN, SALHEADROWID, UNIT)"),
      attendance_(database, "HVN_ATTENDANCE (EMPID, MONTHYEAR, EDITMODEYN, UNITLOCKYN)") {}

void SalaryWriter::Write(const SampleBook& book) {
  const SamplePerson& person = book.person;
  WriteRates(person);
  const int first = std::max(MonthNo(person.salaryFrom), kFirstMonth);
  int last = person.left ? std::min(salaryTo_, MonthNo(*person.left)) : salaryTo_;
  if (person.id == 6) last = MonthNo(2026, 2);  // left in March, whose salary is not made yet
  for (int month = first; month <= last; ++month) WriteMonth(book, month);
}

void SalaryWriter::WriteRates(const SamplePerson& person) {
  if (!HasRate(person)) return;
  const auto write = [&](const SampleDetail& detail, int month) {
    const Rate rate = RateOf(person, month);
    rateEarnings_(nextRate_, person.id, detail.id, month, rate.Gross(), rate.basic, 0.0, 0.0, 0.0, rate.hra,
                  rate.conveyance, rate.special, 0.0, rate.medical);
    rateDeductions_(nextRate_, Rupees(rate.basic * 0.12), 0.0, 200.0, Rupees(rate.Gross() * 0.05));
    ++nextRate_;
  };
  for (const auto& detail : person.details) {
    const int from = std::max(MonthNo(detail.from), kFirstMonth);
    const int to = detail.to ? std::max(MonthNo(*detail.to), from) : salaryTo_;
    write(detail, from);
    for (int month = from + 1; person.rises && month <= to; ++month) {
      if (month % 12 == 4) write(detail, month);
    }
  }
}

// Employees who are short of pay in one month: most of it was leave without pay.
double SalaryWriter::LeaveWithoutPay(const SamplePerson& person, int month, const Taken& taken) {
  const bool shortNet = person.id > kAnchors && person.id % 25 == 7 && month == kShortMonth;
  return shortNet && (taken[SampleType::Advance] || taken[SampleType::Loan]) ? 24 : 0;
}

SalaryWriter::Pay SalaryWriter::Calculate(const SamplePerson& person, const SampleDetail* detail, int month,
                                          double lossOfPay) {
  const Day first = std::max(FirstDay(month), person.salaryFrom);
  const Day last = person.left ? std::min(LastDay(month), *person.left) : LastDay(month);
  const double inService = double((std::chrono::sys_days(last) - std::chrono::sys_days(first)).count() + 1);
  Pay pay;
  pay.calendarDays = detail && detail->head == 4 ? 26 : DaysIn(month);
  pay.payDays = std::max(0.0, pay.calendarDays - (DaysIn(month) - inService) - lossOfPay);
  const double share = pay.payDays / pay.calendarDays;
  const Rate rate = HasRate(person) ? RateOf(person, month) : Rate{};
  pay.basic = Rupees(rate.basic * share);
  pay.hra = Rupees(rate.hra * share);
  pay.conveyance = Rupees(rate.conveyance * share);
  pay.special = Rupees(rate.special * share);
  pay.medical = Rupees(rate.medical * share);
  pay.nightShift = NightShifts(person, detail, month) * kNightShift;
  const double gross = pay.Heads();
  if (person.pf) pay.providentFund = Rupees(pay.basic * 0.12);
  if (person.esi) pay.stateInsurance = std::ceil(gross * 0.0075);
  if (gross > 10000 && !person.ptZero) pay.professionTax = 200;
  if (person.tds) pay.incomeTax = Rupees(gross * 0.05);
  return pay;
}

SalaryWriter::Pay SalaryWriter::Given(const GivenSalary& given, const Pay& calculated) {
  Pay pay;
  pay.calendarDays = calculated.calendarDays;
  pay.payDays = pay.presentDays = calculated.payDays;
  pay.basic = std::floor(given.gross / 2);
  pay.special = given.gross - pay.basic;
  pay.providentFund = given.providentFund;
  pay.professionTax = given.professionTax;
  pay.incomeTax = given.incomeTax;
  if (given.insurance > 0) pay.insurance = given.insurance;
  return pay;
}

// Of another detail in the same month.
SalaryWriter::Pay SalaryWriter::SecondPay() {
  Pay pay;
  pay.basic = 1000;
  pay.incomeTax = 50;
  return pay;
}

void SalaryWriter::WriteMonth(const SampleBook& book, int month) {
  const SamplePerson& person = book.person;
  Taken taken = Taken::In(book, month);
  if (person.id == 29 && month == MonthNo(2026, 7)) taken[SampleType::Loan] = kNotTaken;
  if (person.id == 29 && month == MonthNo(2026, 8)) taken[SampleType::Loan].reset();
  const SampleDetail* detail = DetailOn(person, LastDay(month));
  Pay pay = Calculate(person, detail, month, LeaveWithoutPay(person, month, taken));
  pay.presentDays = std::max(0.0, pay.payDays - LeaveDays(book, month));
  if (const auto* given = GivenSalaryOf(person.id); given && month == kShortMonth) pay = Given(*given, pay);
  if (person.id == 28 && month == kShortMonth) pay.indicator = 1;
  pay.toRecalculate = person.id > kAnchors && month == salaryTo_ &&
                      Random(seed_, std::uint64_t(person.id), Topic::Salary).Percent(3);

  WriteSalary(person.id, month, detail ? std::optional(detail->id) : std::nullopt, pay, taken);
  if (person.id == 32 && month == MonthNo(2026, 7))
    WriteSalary(person.id, month, std::nullopt, SecondPay(), Taken{});
  attendance_(person.id, month, pay.toRecalculate, month <= kLastLockedMonth);
  if (pay.nightShift > 0) {
    units_(person.id, month, detail ? detail->structure : 1, 0, kNightShiftHead,
           pay.nightShift / kNightShift);
  }
}

void SalaryWriter::WriteSalary(int employee, int month, std::optional<int> detail, const Pay& pay,
                               const Taken& taken) {
  const double gross = pay.Heads() + taken[SampleType::Incentive].value_or(0);
  const auto insurance = pay.insurance ? pay.insurance : taken[SampleType::Insurance];
  double net = gross - pay.providentFund - pay.stateInsurance - pay.professionTax - pay.incomeTax;
  for (const auto& amount : {taken[SampleType::Advance], taken[SampleType::Loan], insurance,
                             taken[SampleType::Sss], taken[SampleType::GroupInsurance]}) {
    net -= std::max(0.0, amount.value_or(0));
  }
  earnings_(nextSalary_, employee, detail, month, net, gross, pay.indicator, pay.toRecalculate, pay.payDays,
            pay.presentDays, pay.calendarDays, taken[SampleType::Incentive], pay.basic, 0.0, 0.0, 0.0,
            pay.hra, pay.conveyance, pay.special, pay.nightShift, pay.medical);
  deductions_(nextSalary_, taken[SampleType::Advance], taken[SampleType::Loan], insurance,
              taken[SampleType::Sss], taken[SampleType::GroupInsurance], pay.providentFund,
              pay.stateInsurance, pay.professionTax, pay.incomeTax);
  ++nextSalary_;
}

}  // namespace ktl
