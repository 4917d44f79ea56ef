#include "company/sample_anchors.h"

#include <algorithm>

#include "company/sample_schedule.h"

namespace ktl {
namespace {

using namespace std::chrono_literals;

// Interest of a name on which the operator asked for none.
constexpr double kNoInterest = 0;
constexpr int kLender = 1;

struct AnchorLoan {
  int employee;
  SampleType type;
  const char* name;
  double amount;
  double interest;  // of the instruction: flat, or typed
  int firstMonth;
  double instalment;  // 0: no recovery
  SampleOrigin origin = SampleOrigin::Flat;
  double percent = 0;
};

constexpr int M(int year, int month) { return MonthNo(year, month); }

// The instructions of the anchors; what is odd about some of them follows in Adapt().
constexpr AnchorLoan kLoans[] = {
    {1, SampleType::Advance, "Salary Advance", 10000, kNoInterest, M(2026, 4), 3333},
    {1, SampleType::Advance, "Salary Advance", 10000, kNoInterest, M(2026, 10), 3333},
    {2, SampleType::Advance, "Festival Advance", 12000, 600, M(2026, 8), 2100},
    {3, SampleType::Advance, "Medical Advance", 12000, kNoInterest, M(2026, 10), 3000, SampleOrigin::Reducing,
     1},
    {4, SampleType::Loan, "House Building Loan", 120000, kNoInterest, M(2026, 4), 10000, SampleOrigin::Apart,
     12},
    {5, SampleType::Loan, "House Building Loan", 900000, kNoInterest, M(2025, 5), 7500, SampleOrigin::Apart,
     12},
    {5, SampleType::Loan, "Vehicle Loan", 120000, kNoInterest, M(2025, 6), 2500, SampleOrigin::Apart, 12},
    {5, SampleType::Loan, "Computer Loan", 66000, 3300, M(2025, 4), 525},
    {6, SampleType::Advance, "Salary Advance", 6000, kNoInterest, M(2026, 1), 1000},
    {7, SampleType::Loan, "Computer Loan", 12000, kNoInterest, M(2026, 7), 1000},
    {7, SampleType::Loan, "Personal Loan", 9600, kNoInterest, M(2026, 7), 800, SampleOrigin::Batch},
    {7, SampleType::Loan, "Consumer Loan", 7200, kNoInterest, M(2026, 7), 600},
    {8, SampleType::Loan, "Computer Loan", 12000, kNoInterest, M(2026, 7), 1000},
    {8, SampleType::Loan, "Personal Loan", 9600, kNoInterest, M(2026, 7), 800, SampleOrigin::Batch},
    {8, SampleType::Loan, "Consumer Loan", 7200, kNoInterest, M(2026, 7), 600},
    {9, SampleType::Loan, "Consumer Loan", 18000, kNoInterest, M(2026, 6), 1500},
    {10, SampleType::Loan, "Consumer Loan", 10800, kNoInterest, M(2026, 6), 900},
    {11, SampleType::Loan, "Vehicle Loan", 60000, kNoInterest, M(2026, 1), 2500, SampleOrigin::Apart},
    {11, SampleType::Loan, "Vehicle Loan", 48000, kNoInterest, M(2026, 7), 2000, SampleOrigin::Apart},
    {12, SampleType::Loan, "House Building Loan", 600000, kNoInterest, M(2025, 5), 5000, SampleOrigin::Apart,
     5},
    {13, SampleType::Loan, "Vehicle Loan", 38000, kNoInterest, M(2026, 4), 1600, SampleOrigin::Apart},
    {14, SampleType::Loan, "Vehicle Loan", 30000, kNoInterest, M(2026, 4), 5000, SampleOrigin::Apart},
    {15, SampleType::Advance, "Welfare Advance", 36000, kNoInterest, M(2026, 4), 3000, SampleOrigin::Apart},
    {16, SampleType::Loan, "Vehicle Loan", 60000, kNoInterest, M(2026, 4), 2500, SampleOrigin::Apart},
    {17, SampleType::Advance, "Salary Advance", 12000, kNoInterest, M(2026, 4), 1000},
    {18, SampleType::Advance, "Salary Advance", 6000, kNoInterest, M(2025, 1), 1000},
    {23, SampleType::Advance, "Tour Advance", 5000, kNoInterest, M(2026, 4), 0},
    {28, SampleType::Advance, "Salary Advance", 3000, kNoInterest, M(2026, 5), 500},
    {29, SampleType::Loan, "Consumer Loan", 2000, kNoInterest, M(2026, 7), 400},
    {30, SampleType::Loan, "Consumer Loan", 6000, kNoInterest, M(2026, 4), 500},
    {32, SampleType::Loan, "Consumer Loan", 8400, kNoInterest, M(2026, 4), 700},
    {34, SampleType::Advance, "Salary Advance", 5000, kNoInterest, M(2026, 10), 1000},
    {35, SampleType::Advance, "Salary Advance", 2600, kNoInterest, M(2026, 10), 1000},
    {36, SampleType::Advance, "Salary Advance", 6000, kNoInterest, M(2026, 10), 1000},
    {37, SampleType::Loan, "Consumer Loan", 4002, kNoInterest, M(2026, 9), 1000.5},
    {38, SampleType::Loan, "Consumer Loan", 12000, kNoInterest, M(2026, 4), 1000},
    {39, SampleType::Loan, "Consumer Loan", 12000, kNoInterest, M(2026, 5), 1000},
    {40, SampleType::Loan, "Personal Loan", 24000, kNoInterest, M(2026, 4), 2000, SampleOrigin::Reducing, 1},
    {41, SampleType::Loan, "Consumer Loan", 12000, kNoInterest, M(2025, 1), 1000},
    {42, SampleType::Loan, "Consumer Loan", 6000, kNoInterest, M(2026, 10), 1000},
    {43, SampleType::Advance, "Medical Advance", 5000, 250, M(2026, 10), 1050, SampleOrigin::Batch},
    {44, SampleType::Loan, "Consumer Loan", 4000, kNoInterest, M(2026, 7), 1000},
    {47, SampleType::Advance, "Salary Advance", 9000, kNoInterest, M(2026, 7), 1500},
    {48, SampleType::Advance, "Salary Advance", 6000, kNoInterest, M(2026, 6), 1000},
    {48, SampleType::Loan, "Vehicle Loan", 24000, kNoInterest, M(2026, 4), 1000, SampleOrigin::Apart, 12},
    {50, SampleType::Advance, "Welfare Advance", 36000, kNoInterest, M(2026, 4), 3000, SampleOrigin::Apart},
};

void SetAmount(SampleInstalment& row, double amount) {
  row.amount = row.modified = amount;
  if (row.actualPrincipal) row.actualPrincipal = row.modifiedPrincipal = amount;
}

// Instalments that no rule gives: the month's place in the schedule decides.
void SetAmounts(std::vector<SampleInstalment>& rows, std::initializer_list<std::pair<int, double>> runs) {
  std::vector<SampleInstalment> made;
  const SampleInstalment pattern = rows.front();
  for (const auto& [count, amount] : runs) {
    for (int i = 0; i < count; ++i) {
      SampleInstalment row = pattern;
      row.counter += static_cast<int>(made.size());
      row.month += static_cast<int>(made.size());
      SetAmount(row, amount);
      made.push_back(row);
    }
  }
  rows = std::move(made);
}

void Charge(SampleInstalment& row, double interest) {
  row.actualInterest = row.modifiedInterest = interest;
  row.amount = row.modified = *row.actualPrincipal + interest;
}

// Interest in all months but the first.
void ChargeFromSecondMonth(std::vector<SampleInstalment>& rows, double interest) {
  for (auto row = rows.begin() + 1; row != rows.end(); ++row) Charge(*row, interest);
}

void Adapt(SampleInstruction& made, int employee) {
  auto& rows = made.rows;
  switch (employee) {
    case 11:
      if (made.serial == 1) made.receipts = {{2026y / 6 / 20, 10000}};
      break;
    case 12:
      made.date = 2025y / 4 / 10;
      break;
    case 13:
      SetAmounts(rows, {{10, 1600}, {2, 2000}, {12, 1500}});
      break;
    case 15:
      ChargeFromSecondMonth(rows, 500);
      break;
    case 50:
      Charge(rows.front(), 270);  // what its balance comes to at the benchmark rate
      break;
    case 17:
      made.receipts = {{2026y / 8 / 10, 2000}, {2026y / 9 / 26, 1500}};
      break;
    case 18:
      for (auto& row : rows) row.recovered = row.month <= M(2025, 3);
      break;
    case 30:
      made.accountNo = "CL/'30'#[1]|";
      made.remarks = "Paid by cheque #12 \"A/c payee\" [Pune] | it's urgent";
      break;
    case 35:
      SetAmounts(rows, {{2, 1000}, {3, 200}});
      break;
    case 38:
    case 39:
      made.accountNo = "DUP/1";
      break;
    case 40:
      for (std::size_t i = rows.size() / 2; i < rows.size(); ++i) rows[i].institution = kLender + 1;
      break;
    case 44: {
      constexpr int counters[] = {1, 3, 4, 7};
      for (std::size_t i = 0; i < rows.size(); ++i) rows[i].counter = counters[i];
      break;
    }
    default:
      break;
  }
}

SampleInstruction Make(const AnchorLoan& loan, int serial) {
  SampleInstruction made;
  made.type = loan.type;
  made.serial = serial;
  made.name = loan.name;
  made.date = FirstDay(loan.firstMonth);
  made.amount = loan.amount;
  if (loan.interest > 0) made.interest = loan.interest;
  if (loan.instalment > 0) {
    made.rows = MakeSchedule({loan.origin, loan.firstMonth, loan.amount + loan.interest, loan.instalment,
                              loan.percent, loan.type == SampleType::Loan ? kLender : 0});
  }
  Adapt(made, loan.employee);
  TotalInterest(made);
  return made;
}

// Sep/2026: net pay is gross less the four deductions and less what the instructions take.
constexpr GivenSalary kGivenSalaries[] = {
    {7, 6000, 1500, 200, 400, 3000},    // net -1500
    {8, 20000, 2400, 200, 2000, 4000},  // net 9000
    {9, 1200, 0, 200, 0, 0},            // net -500
    {10, 300, 0, 200, 0, 0},            // net -800
    {37, 1200.5, 0, 200, 5000, 0},      // net -5000
    {47, 1000, 0, 200, 0, 0},           // net -700
};

SampleDetail StaffDetail(const Day& from) {
  SampleDetail row;
  row.from = from;
  row.designation = "Officer";
  row.occupation = "Administration";
  row.department = "Accounts";
  row.division = "Head Office";
  row.grade = "G3";
  return row;
}

// Two detail rows of which the later one has the lower id.
std::vector<SampleDetail> DetailsOutOfOrder(const Day& joined) {
  SampleDetail later = StaffDetail(2025y / 4 / 1);
  later.designation = "Senior Officer";
  SampleDetail earlier = StaffDetail(joined);
  earlier.to = 2025y / 3 / 31;
  return {later, earlier};
}

void AdaptPerson(SamplePerson& person) {
  auto& detail = person.details.front();
  switch (person.id) {
    case 1:
      person.name = "Meera Kulkarni";
      person.sex = "F";
      detail.department = "Finance";
      break;
    case 6:
      person.left = 2026y / 3 / 31;
      person.resigned = 2026y / 2 / 28;
      break;
    case 9:
      person.locked = true;
      break;
    case 16:
      person.tds = false;
      break;
    case 18:
      person.salaryFrom = 2025y / 4 / 1;
      break;
    case 19:
      person.joined = person.salaryFrom = detail.from = 2026y / 5 / 15;
      person.confirmed.reset();
      break;
    case 20:
      detail.head = 3;
      break;
    case 21:
      detail.branch = 3;
      break;
    case 30:
      person.name = "Melvyn D'Souza";
      break;
    case 31:
      person.details = DetailsOutOfOrder(person.joined);
      break;
    case 45:
      detail.from = person.salaryFrom = 2026y / 4 / 1;
      break;
    default:
      break;
  }
}

}  // namespace

SamplePerson AnchorPerson(int id) {
  SamplePerson person;
  person.id = id;
  person.joined = 2018y / 6 / 1;
  person.born =
      Day(std::chrono::year(1980 + id % 12), std::chrono::month(unsigned(id % 12 + 1)), std::chrono::day(15));
  person.salaryFrom = FirstDay(kFirstMonth);
  person.confirmed = 2018y / 12 / 1;
  person.details = {StaffDetail(person.joined)};
  AdaptPerson(person);
  return person;
}

std::vector<SampleInstruction> AnchorInstructions(int id) {
  std::vector<SampleInstruction> made;
  for (const auto& loan : kLoans) {
    if (loan.employee != id) continue;
    const auto same =
        std::count_if(made.begin(), made.end(), [&](const auto& other) { return other.type == loan.type; });
    made.push_back(Make(loan, static_cast<int>(same) + 1));
  }
  return made;
}

const GivenSalary* GivenSalaryOf(int employee) {
  const auto found = std::find_if(std::begin(kGivenSalaries), std::end(kGivenSalaries),
                                  [&](const auto& salary) { return salary.employee == employee; });
  return found == std::end(kGivenSalaries) ? nullptr : found;
}

}  // namespace ktl
