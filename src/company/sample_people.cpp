#include "company/sample_people.h"

#include <fmt/format.h>

#include <algorithm>

#include "company/random.h"
#include "company/sample_anchors.h"

namespace ktl {
namespace {

using namespace std::chrono_literals;

struct FirstName {
  const char* name;
  const char* sex;
};

constexpr FirstName kFirstNames[] = {
    {"Aditi", "F"},   {"Ajay", "M"},    {"Anita", "F"},   {"Arun", "M"},   {"Bhavna", "F"},  {"Bharat", "M"},
    {"Chitra", "F"},  {"Chetan", "M"},  {"Deepa", "F"},   {"Dinesh", "M"}, {"Esha", "F"},    {"Eknath", "M"},
    {"Falguni", "F"}, {"Firoz", "M"},   {"Gauri", "F"},   {"Ganesh", "M"}, {"Hema", "F"},    {"Harish", "M"},
    {"Indu", "F"},    {"Ishaan", "M"},  {"Jaya", "F"},    {"Jatin", "M"},  {"Kavita", "F"},  {"Kiran", "M"},
    {"Lata", "F"},    {"Lokesh", "M"},  {"Madhuri", "F"}, {"Mohan", "M"},  {"Nandini", "F"}, {"Naveen", "M"},
    {"Padma", "F"},   {"Prakash", "M"}, {"Radha", "F"},   {"Rajesh", "M"}, {"Sarita", "F"},  {"Suresh", "M"},
    {"Tara", "F"},    {"Tushar", "M"},  {"Uma", "F"},     {"Uday", "M"},   {"Vidya", "F"},   {"Vijay", "M"},
    {"Yamini", "F"},  {"Yash", "M"},    {"Zeenat", "F"},  {"Zubin", "M"},  {"Swati", "F"},   {"Sanjay", "M"},
};

constexpr const char* kLastNames[] = {
    "Acharya", "Agarwal",   "Bhat",    "Bose",   "Chauhan", "Chopra", "Das",      "Deshpande",
    "Dixit",   "Fernandes", "Gaikwad", "Ghosh",  "Gupta",   "Hegde",  "Iyer",     "Jadhav",
    "Jain",    "Joshi",     "Kale",    "Kamath", "Kapoor",  "Khan",   "Kulkarni", "Kumar",
    "Lobo",    "Mane",      "Mehta",   "Menon",  "Mishra",  "Naik",   "Nair",     "Pandey",
    "Patel",   "Patil",     "Pillai",  "Rao",    "Reddy",   "Sawant", "Shah",     "Sharma",
    "Shetty",  "Shinde",    "Singh",   "Thakur", "Tiwari",  "Varma",  "Verma",    "Yadav"};

constexpr const char* kDepartments[] = {"Accounts", "Finance",  "Stores",    "Production",
                                        "Quality",  "Despatch", "Personnel", "Sales"};
constexpr const char* kDivisions[] = {"Head Office", "Plant", "Projects", "Services"};
constexpr const char* kDesignations[] = {"Helper",    "Operator",       "Technician",     "Clerk",
                                         "Assistant", "Officer",        "Supervisor",     "Engineer",
                                         "Executive", "Senior Officer", "Deputy Manager", "Manager"};
constexpr const char* kOccupations[] = {"Administration", "Machining", "Assembly",
                                        "Maintenance",    "Accounts",  "Security"};
constexpr const char* kGrades[] = {"G1", "G2", "G3", "G4", "G5", "G6"};
constexpr int kLowestBasic[] = {12000, 16000, 22000, 32000, 48000, 70000};

// Unique, and in another order than the employees' numbers.
std::string ReferenceNo(int id) {
  constexpr long kBlock = 100000;
  const long block = id / kBlock;
  const long place = (id % kBlock * 38197L + 52711L) % kBlock;
  return block == 0 ? fmt::format("K{:05}", place) : fmt::format("K{}{:05}", block, place);
}

void NamePerson(SamplePerson& person, Random random) {
  const auto& first = random.OneOf(kFirstNames);
  person.name = fmt::format("{} {}", first.name, random.OneOf(kLastNames));
  person.sex = first.sex;
}

Day DayBetween(Random& random, const Day& first, const Day& last) {
  const auto days = (std::chrono::sys_days(last) - std::chrono::sys_days(first)).count();
  return AddDays(first, random.Between(0, static_cast<int>(days)));
}

// The same day some months away; a month too short gives its last day.
Day AddMonths(const Day& day, int months) {
  const auto moved = day + std::chrono::months(months);
  return moved.ok() ? moved : Day(moved.year() / moved.month() / std::chrono::last);
}

void SetService(SamplePerson& person, Random random) {
  constexpr Day kAsOf = 2026y / 9 / 30;
  person.joined = DayBetween(random, 2005y / 1 / 1, 2026y / 8 / 31);
  person.born = AddMonths(person.joined, -12 * random.Between(21, 56) - random.Between(0, 11));
  person.salaryFrom = std::max(person.joined, FirstDay(kFirstMonth));
  if (random.Percent(8)) {
    const Day left = DayBetween(random, 2024y / 6 / 30, 2026y / 8 / 31);
    if (left > AddMonths(person.joined, 3)) {
      person.left = left;
      person.resigned = AddMonths(left, -1);
    }
  }
  const Day confirmed = AddMonths(person.joined, 6);
  if (confirmed <= kAsOf) person.confirmed = confirmed;
}

SampleDetail FirstDetail(const SamplePerson& person, Random& random) {
  constexpr int kBranches[] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 5, 5};
  SampleDetail row;
  row.from = person.joined;
  row.branch = random.OneOf(kBranches);
  row.structure = random.Between(1, 4);
  constexpr int kOfficeHeads[] = {1, 5};
  constexpr int kFloorHeads[] = {2, 4, 6};
  row.head = row.structure == 2   ? random.OneOf(kOfficeHeads)
             : row.structure == 3 ? random.OneOf(kFloorHeads)
             : row.structure == 4 ? 3
                                  : 1;
  row.designation = random.OneOf(kDesignations);
  row.occupation = random.OneOf(kOccupations);
  row.department = random.OneOf(kDepartments);
  row.division = random.OneOf(kDivisions);
  row.grade = random.OneOf(kGrades);
  return row;
}

// Promotions and transfers on a first of April, one in five of them in the middle of a month.
void SetDetails(SamplePerson& person, Random random) {
  person.details = {FirstDetail(person, random)};
  const int chance = random.Between(1, 10);
  const int rows = chance <= 6 ? 1 : chance <= 9 ? 2 : 3;
  for (int year = 2028 - rows; year <= 2026; ++year) {
    Day from{std::chrono::year(year), std::chrono::April, std::chrono::day(1)};
    if (random.Percent(20)) from = AddDays(from, 44);
    if (from <= person.joined || (person.left && from > *person.left)) continue;
    person.details.back().to = AddDays(from, -1);
    SampleDetail row = person.details.back();
    row.from = from;
    row.to.reset();
    row.designation = random.OneOf(kDesignations);
    row.department = random.OneOf(kDepartments);
    person.details.push_back(row);
  }
}

void SetPay(SamplePerson& person, Random random) {
  const std::string_view grade = person.details.front().grade;
  const int step = grade[1] - '1';
  person.basic = kLowestBasic[step] + 500 * random.Between(0, 4 + 6 * step);
  person.special = step == 0 ? 0 : static_cast<int>(person.basic) / 1000 * 10 * random.Between(0, 50);
  person.rises = true;
  const double gross = person.basic * 1.4 + 1600 + 1250 + person.special;
  person.esi = gross <= 21000;
  person.pf = random.Percent(85);
  person.pfRestricted = random.Percent(30);
  person.ptZero = random.Percent(2);
  person.tds = random.Percent(80);
  person.locked = random.Percent(1);
}

constexpr int kNoClasses = 46;  // the anchor without extended details

}  // namespace

const SampleDetail* DetailOn(const SamplePerson& person, const Day& day) {
  const SampleDetail* found = nullptr;
  for (const auto& row : person.details) {
    if (row.from <= day && (!found || row.from > found->from)) found = &row;
  }
  return found;
}

SamplePerson SamplePeople::Make(int id) {
  SamplePerson person;
  person.id = id;
  NamePerson(person, Random(seed_, id, Topic::Person));
  if (id <= kAnchors) {
    SamplePerson anchor = AnchorPerson(id);
    if (anchor.name.empty()) {
      anchor.name = person.name;
      anchor.sex = person.sex;
    }
    person = std::move(anchor);
  } else {
    SetService(person, Random(seed_, id, Topic::Service));
    SetDetails(person, Random(seed_, id, Topic::Detail));
    SetPay(person, Random(seed_, id, Topic::Pay));
  }
  person.refNo = ReferenceNo(id);
  for (auto& row : person.details) row.id = nextDetail_++;
  return person;
}

PeopleWriter::PeopleWriter(SqliteDatabase& database)
    : employee_(database,
                "MAS_EMPLOYEE (EMPID, REFNO, EMPNAME, DOJ, DOL, DOB, SEX, SALCALCFROM, RETIREMENTDATE, "
                "RESIGNATIONDATE, "
                "CONFIRMATIONDATE, PFYN, PFRESTRICTYN, ESIYN, PTZEROYN, TDSYN, lockyn)"),
      detail_(database,
              "MAS_EMPLOYEEDET (EMPDETID, EMPID, EFFFROMDATE, EFFTODATE, BRANCHID, ATTHEADID, STRUCTID, "
              "DESIGNATION, "
              "OCCUPATION, DEPARTMENT, DIVISION, GRADE)"),
      classes_(database,
               "MAS_EMPLOYEEEXTDET (EMPEXTID, EMPID, EFFFROMDATE, EXTCLASS05, EXTCLASS06, EXTCLASS07, "
               "EXTCLASS08)"),
      custom_(database, "MAS_EMPLOYEECUSTOM (EMPID, FIELD1, FIELD2, FIELD3)"),
      fundHistory_(database, "MAS_PFEFFFROMEXT (EMPID, PFEFFFROM, PFYN)"),
      insuranceHistory_(database, "MAS_EMPLOYEEEXT (EMPID, ESIYN, ESIEFFFROM)") {}

void PeopleWriter::Write(const SamplePerson& p) {
  employee_(p.id, p.refNo, p.name, p.joined, p.left, p.born, p.sex, p.salaryFrom, AddMonths(p.born, 12 * 58),
            p.resigned, p.confirmed, p.pf, p.pfRestricted, p.esi, p.ptZero, p.tds, p.locked);
  for (const auto& row : p.details) {
    detail_(row.id, p.id, row.from, row.to, row.branch, row.head, row.structure, row.designation,
            row.occupation, row.department, row.division, row.grade);
  }
  WriteClasses(p);
  WriteHistory(p);
}

void PeopleWriter::WriteClasses(const SamplePerson& p) {
  constexpr const char* kBands[] = {"A", "B", "C"};
  constexpr const char* kCentres[] = {"CC-200", "CC-100", "CC-300", "CC-400"};
  constexpr const char* kProjects[] = {"Monsoon", "Harvest"};
  constexpr const char* kBloodGroups[] = {"O+", "A+", "B+", "AB-"};
  if (p.id != kNoClasses) {
    classes_(p.id, p.id, std::min<Day>(p.joined, 2024y / 1 / 1), kBands[p.id % 3], kCentres[p.id % 4],
             kProjects[p.id % 2], "Day");
  }
  custom_(p.id, p.id % 4 == 0 ? "Y" : "N", fmt::format("MH12 K{:04}", p.id % 10000), kBloodGroups[p.id % 4]);
}

// Employee 33 came under the state insurance and later left the provident fund.
void PeopleWriter::WriteHistory(const SamplePerson& p) {
  if (p.id != 33) return;
  fundHistory_(p.id, MonthNo(2024, 4), 1);
  fundHistory_(p.id, MonthNo(2026, 6), 0);
  insuranceHistory_(p.id, 1, MonthNo(2026, 4));
}

}  // namespace ktl
