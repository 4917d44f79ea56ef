#include "company/sample_masters.h"

#include <algorithm>
#include <stdexcept>

namespace ktl {
namespace {

constexpr auto kNone = std::nullopt;

constexpr SampleName kNames[] = {
    // type, name, account, tds, preference, amount, times, instalments, rate, reducing, separate, benefit,
    // section
    {SampleType::Advance, "Salary Advance", "2101", false, 1, 50000, 5, 10},
    {SampleType::Advance, "Festival Advance", "2102", false, 2, 20000, 1, 10, 5},
    {SampleType::Advance, "Medical Advance", "2103", false, 3, 100000, 3, 24, 1, true},
    {SampleType::Advance, "Tour Advance", kNone},
    {SampleType::Advance, "Welfare Advance", "2105", false, 4, kNone, kNone, kNone, kNone, false, true, true},
    {SampleType::Loan, "House Building Loan", "2201", true, 1, 5000000, 1, 240, 0.7, true, true, true},
    {SampleType::Loan, "Plot Purchase Loan", "2202", true, 6, kNone, kNone, kNone, kNone, false, true, true},
    {SampleType::Loan, "Vehicle Loan", "2203", false, 2, kNone, 2, 60, kNone, false, true, true},
    {SampleType::Loan, "Computer Loan", "2204", false, 3, 100000, 2, 36, 5},
    {SampleType::Loan, "Personal Loan", "2205", false, 4, kNone, 3, 48, 1, true},
    {SampleType::Loan, "Consumer Loan", "2206", false, 5},
    {SampleType::Loan, "Staff Welfare Loan", kNone},
    {SampleType::Insurance, "Life Cover Policy", "2301", true, kNone, kNone, kNone, kNone, kNone, false,
     false, false, 1},
    {SampleType::Insurance, "Endowment Policy", "2302", true, kNone, kNone, kNone, kNone, kNone, false, false,
     false, 1},
    {SampleType::Insurance, "Pension Policy", "2303", true, kNone, kNone, kNone, kNone, kNone, false, false,
     false, 2},
    {SampleType::Insurance, "Household Policy", "2304"},
    {SampleType::Sss, "SSS Contribution", "2401", true, kNone, kNone, kNone, kNone, kNone, false, false,
     false, 3},
    {SampleType::Sss, "Voluntary SSS", "2402"},
    {SampleType::GroupInsurance, "Group Term Cover", "2501"},
    {SampleType::GroupInsurance, "Group Medical Cover", "2502", true, kNone, kNone, kNone, kNone, kNone,
     false, false, false, 4},
    {SampleType::Incentive, "Quarterly Incentive", "2701", true},
    {SampleType::Incentive, "Half Yearly Incentive", "2702"},
    {SampleType::Incentive, "Annual Performance Pay", "2703"},
};

struct Formula {
  int id;
  const char* name;
  const char* text;
};

constexpr Formula kFormulas[] = {
    {1, "Twice the basic pay", "Component{BASIC} * 2"},
    {2, "Tenth of the gross", R"(KLRound((GrossSalary) * 0.1, 10, "N"))"},
    {3, "Provident fund of the month", "CV{BASIC} * 0.12"},
    {4, "By department", R"(KLIF(EmpDet{Department} = "Finance", 5000, 3000))"},
    {5, "By cost centre", R"(KLIF(EmpDet{Cost Centre} = "CC-100", 100, 50))"},
    {6, "Unless with quarter", R"(KLIF(EmpCustDet{Quarter} = "Y", 0, 2500))"},
    {7, "By open advances", "CustQry{OpenAdvances} * 100"},
    {8, "By years of service", R"(KLYearDiff(Emp{DOJ}, CDate("01/Sep/2026")) * 1000)"},
    {9, "In service, female",
     R"(KLIF(Emp{DOL} > CDate("01/Jan/2099"), 1, 0) + KLIF(Emp{SEX} = "F", 500, 0))"},
    {10, "Provident fund, limited",
     R"(KLIF((PFYN) = "Y", KLSubjectToMax(Component{BASIC} * 0.12, 1800), 0))"},
    {11, "Provident fund wages", R"(KLIF((RESPFYN) = "Y", 15000, Component{BASIC}))"},
    {12, "Insured by the state", R"(KLIF((ESIYN) = "Y", 1, 2))"},
    {13, "Profession tax", R"(KLIF((PTGroup) = "Maharashtra", 200, 0))"},
    {14, "By month", "KLIF((SalaryMonth) >= 24316, 1000, 900)"},
    {15, "Night shifts and overtime", "UNIT{NIGHT SHIFT} * 150 + OT1UNIT + OT2UNIT"},
    {16, "Basic pay by days", "Component{BASIC} / Days{Salary Calendar Days} * Days{Pay Days}"},
    {17, "By present days",
     "Days{Present Days} * 50 + (Days{Total Pay Days} - Days{Total Present Days}) * 0"},
    {18, "By casual leave", "Leave{CL} * 100"},
    {19, "Reimbursements",
     "ReimAllot{MEDICAL} + ReimClaim{MEDICAL} + ReimUnclaim{MEDICAL} + ReimUnclaim{FUEL}"},
    {20, "By holidays",
     "((GenHoliday) + (WeekHoliday)) * 10 + (TotalGenHoliday) * 0 + (TotalWeekHoliday) * 0 + Days{Pay Days} "
     "* 0"},
    {21, "Adjusted hours with days", "(AdjHours) * 20 + Days{Pay Days} * 0"},
    {22, "Adjusted hours", "(AdjHours) * 20"},
    {23, "Division in the unused branch", "KLIF(1 = 2, 1 / 0, 3)"},
    {24, "Unknown head", "Component{BONUS}"},
    {25, "Letter case of a token", "days{Pay Days}"},
    {26, "Month of a date", R"(KLMonthYear("01/Sep/2026"))"},
    {27, "Twice the basic pay again", "Component{BASIC} * 2"},
};

struct SalaryHead {
  int deduction;
  int row;
  const char* name;
  std::optional<const char*> kind;
};

constexpr SalaryHead kHeads[] = {
    {0, 0, "BASIC", kNone},
    {0, 1, "HRA", kNone},
    {0, 2, "CONVEYANCE", kNone},
    {0, 3, "SPECIAL ALLOWANCE", kNone},
    {0, 4, "NIGHT SHIFT", "C"},
    {0, 5, "MEDICAL", kNone},
    {0, 100, "OT1", kNone},
    {0, 101, "OT2", kNone},
    {0, 102, "GRATUITY PROV", kNone},
    {1, 1, "PF", kNone},
    {1, 2, "ESI", kNone},
    {1, 3, "PT", kNone},
    {1, 4, "TDS", kNone},
};

void WriteNames(SqliteDatabase& database) {
  RowWriter write(
      database,
      "INS_MASTER (SITYPE, SINAME, ACCCODE, TDSYN, SIPREF, AMTLIMIT, ALLOWLIMIT, EMIRECCNT, INTRRATE, "
      "REDUCINGBALYN, SEPPIYN, SBIIFBYN, TDSREFNO)");
  for (const auto& n : kNames) {
    write(int(n.type), n.name, n.account, n.tds, n.preference, n.amountLimit, n.timesAllowed, n.instalments,
          n.interestRate, n.reducing, n.separate, n.benefit, n.taxSection);
  }
}

void WriteFormulas(SqliteDatabase& database) {
  RowWriter write(database, "MAS_FORMULA (FORMULAID, FORMULANAME, FORMULA)");
  for (const auto& formula : kFormulas) write(formula.id, formula.name, formula.text);
  RowWriter query(database, "MAS_FORMULACUSTOM (MODULEID, FNAME, FQUERY)");
  query(1, "OpenAdvances", "SELECT COUNT(*) FROM INS_ADVLOAN WHERE EMPID = $EMPID$ AND SITYPE = 1");
}

void WriteSalaryHeads(SqliteDatabase& database) {
  RowWriter write(database, "MAS_SALARYHEAD (PAYTYPEYN, SALHEADROWID, SALHEADING, CALCFLDTYPE)");
  for (const auto& head : kHeads) write(head.deduction, head.row, head.name, head.kind);
}

// Lists that are short enough to stand as statements.
constexpr const char* kLists = R"sql(
INSERT INTO MAS_PTGRP (PTGRPID, PTGRPNAME) VALUES (1, 'Maharashtra'), (2, 'Karnataka'), (3, 'Tamil Nadu');
INSERT INTO MAS_BRANCH (BRANCHID, BRANCHNAME, PTGROUPID) VALUES
  (1, 'Pune Head Office', 1), (2, 'Mumbai', 1), (3, 'Bengaluru', 2), (4, 'Chennai', 3), (5, 'Delhi', NULL);
INSERT INTO MAS_SALSTRUCT (STRUCTID, STRUCTDESC) VALUES (1, 'Staff'), (2, 'Officers'), (3, 'Workmen'), (4, 'Contract');
INSERT INTO SLC_SALSTRUCTDET (STRUCTID, FORMULAID, PAYTYPEYN, SALHEADROWID) VALUES
  (1, 15, 0, 4), (1, 20, 0, 3), (2, 0, 0, 0), (3, 15, 0, 4), (4, 0, 0, 0);
INSERT INTO MAS_TDSREF (TDSREFNO, TDSREF, TYPEID) VALUES
  (1, '80C Life Insurance', 2), (2, '80CCC Pension', 2), (3, '80C Superannuation', 2), (4, '80D Medical', 2),
  (8, '80G Donations', 2), (9, '24(b) Interest', 1);
INSERT INTO MAS_INSTITUTION (INSTID, INSTNAME, TYPEID) VALUES
  (1, 'Kaveri Housing Finance', 2), (2, 'Deccan Co-operative Bank', 2), (3, 'Malabar Credit Society', 2),
  (4, 'Sahyadri Life Assurance', 3), (5, 'Godavari Mutual Life', 3), (6, 'Narmada General Cover', 3),
  (7, 'Staff Superannuation Trust', 4), (8, 'Sahyadri Group Assurance', 5), (9, 'Narmada Group Medical', 5);
INSERT INTO MAS_LOANINT (INTID, FINANCIALYEAR, INTEREST, LOANTYPE, LOANNAME) VALUES
  (1, '2025', 9.10, '', ''),
  (2, '2025', 8.60, 'Housing', '#$#House Building Loan#$##$#Plot Purchase Loan#$#'),
  (3, '2026', 9.00, '', ''),
  (4, '2026', 8.50, 'Housing', '#$#House Building Loan#$##$#Plot Purchase Loan#$#'),
  (5, '2026', 10.25, 'Vehicles', '#$#Vehicle Loan#$#');
INSERT INTO MAS_EMPCUSCAPTION (COLID, COLNAME, EXPRYN) VALUES (1, 'Quarter', 1), (2, 'Vehicle No', 1), (3, 'Blood Group', 0);
INSERT INTO MAS_EXTCAPTION (Masterid, Caption, Transfered, EXPEDITORYN) VALUES
  (1, 'Designation', 0, 0), (2, 'Occupation', 0, 0), (3, 'Department', 0, 0), (4, 'Division', 0, 0),
  (5, 'Band', 1, 1), (6, 'Cost Centre', 0, 1), (7, 'Project', 0, 1), (8, 'Shift', 0, 0),
  (9, '', 0, 0), (10, '', 0, 0), (11, '', 0, 0), (12, '', 0, 0), (13, '', 0, 0), (14, '', 0, 0), (15, '', 0, 0),
  (16, '', 0, 0), (17, '', 0, 0), (18, '', 0, 0), (19, '', 0, 0);
)sql";

}  // namespace

const SampleName& NameRules(SampleType type, std::string_view name) {
  const auto found = std::find_if(std::begin(kNames), std::end(kNames), [&](const auto& rules) {
    return rules.type == type && name == rules.name;
  });
  if (found == std::end(kNames)) throw std::logic_error("no instruction name " + std::string(name));
  return *found;
}

void WriteMasters(SqliteDatabase& database) {
  database.RunScript(kLists);
  WriteNames(database);
  WriteFormulas(database);
  WriteSalaryHeads(database);
}

void WriteMonths(SqliteDatabase& database) {
  constexpr int kAttendanceOpen =
      MonthNo(2025, 1);  // a locked month without its attendance lock, to be repaired
  RowWriter month(database, "MAS_MONTHYEAR (MONTHYEAR, LOCKEDYN, ATTLOCKYN, CALCSTARTDATE, CALCENDDATE)");
  RowWriter range(database, "MAS_MONTHSALDATE (MONTHYEAR, CALCSTARTDATE, CALCENDDATE)");
  for (int m = kFirstMonth; m <= kLastMonth; ++m) {
    month(m, m <= kLastLockedMonth, m <= kLastAttendanceLock && m != kAttendanceOpen, FirstDay(m),
          LastDay(m));
    range(m, FirstDay(m), LastDay(m));
  }
}

}  // namespace ktl
