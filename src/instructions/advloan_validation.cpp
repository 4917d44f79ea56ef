#include "instructions/advloan_validation.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/allotment.h"
#include "instructions/entry_questions.h"
#include "instructions/service.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr const char* kAmountTooHigh = "Amount should be less than 9,99,99,99,999.99";

using Checked = std::optional<EntryRefusal>;

// Where the checks of one employee's entry and those of an allotment to many part.
struct Differences {
  const char* interestTooHigh;
  const char* instalmentTooHigh;
  const char* noRecoveryMonth;
  bool needsCount;  // a count of 0 is refused; else it fails when the schedule is made
};
constexpr Differences kOneEmployee{"Interest Amount should be less than 9,99,99,99,999.99",
                                   "Installment Amount should be less than 9,99,99,99,999.99",
                                   "Specify 'Recovery from' Month/Year.", false};
constexpr Differences kManyEmployees{"Interest amount should be less than 9,99,99,99,999.99",
                                     "Installment amount should be less than 9,99,99,99,999.99",
                                     "Specify 'Recovery From' month.", true};

Checked Against(std::string text, EntryField field = EntryField::None) {
  return EntryRefusal{.text = std::move(text), .field = field};
}

// Counts the entry itself when it is stored already, so the last one allowed cannot be saved again.
long TimesGiven(Session& session, const AdvLoanEntry& entry) {
  return session.data
      .Guarding(session.Sql(
          "select Count(serialno) as Total from INS_ADVLOAN Where EMPID={} And SITYPE = {} AND  SINAME = '{}'",
          entry.key.employee, entry.key.type, entry.typed.name))
      .ToLong();
}

Checked AgainstAmountOf(const NameRules& rules) {
  return Against("Amount should be less than : " + NumberText(rules.AMTLIMIT), EntryField::Amount);
}

Checked CheckLimits(Session& session, const AdvLoanEntry& entry) {
  const NameRules& rules = entry.rules;
  if (rules.AMTLIMIT > 0 && entry.amount > rules.AMTLIMIT) return AgainstAmountOf(rules);
  if (rules.EMIRECCNT > 0 && Value(entry.count.value_or(0)).ToInt() > rules.EMIRECCNT) {
    return Against(fmt::format("No.of Installments should be less than : {}", rules.EMIRECCNT),
                   EntryField::Count);
  }
  if (rules.ALLOWLIMIT > 0 && TimesGiven(session, entry) >= rules.ALLOWLIMIT) {
    return Against(
        fmt::format("{} can be given only {} times in a service", entry.typed.name, rules.ALLOWLIMIT),
        EntryField::Name);
  }
  return {};
}

Checked CheckAmountLimit(const AdvLoanEntry& entry) {
  return entry.amount > kAmountLimit ? Against(kAmountTooHigh, EntryField::Amount) : Checked();
}

Checked CheckNameGiven(const AdvLoanEntry& entry) {
  if (!entry.name.empty()) return {};
  return Against("Specify the " + LowerCase(entry.caption) + " name.", EntryField::Name);
}

Checked AgainstUnknownName(const AdvLoanEntry& entry) {
  return Against("Select " + entry.caption + " Name.", EntryField::Name);
}

Checked CheckWhoAndWhat(Session& session, const AdvLoanEntry& entry) {
  if (Checked refusal = CheckAmountLimit(entry)) return refusal;
  if (!IsSerial(static_cast<double>(entry.serial)))
    return Against("Enter serial number.", EntryField::Serial);
  if (entry.key.employee == 0) return Against("Select employee.", EntryField::EmployeeName);
  if (Checked refusal = CheckNameGiven(entry)) return refusal;
  if (Length(entry.name) >= 51)
    return Against(entry.caption + " name should be within 50 characters", EntryField::Name);
  if (!NameExists(session, entry.key.type, entry.name)) return AgainstUnknownName(entry);
  return {};
}

bool IsAccountInUse(Session& session, const AdvLoanEntry& entry) {
  const Statement others = session.Sql(
      "Select COUNT(SERIALNO) From INS_ADVLOAN Where SITYPE = {} AND LOANACNO = '{}' AND (EMPID <> {} OR "
      "SERIALNO <> {})",
      entry.key.type, entry.account, entry.key.employee, entry.key.serial);
  return session.data.Guarding(others).ToLong() > 0;
}

Checked CheckInstitution(const AdvLoanEntry& entry) {
  return entry.institution ? Checked() : Against("Select institution.", EntryField::Institution);
}

Checked CheckAccount(const AdvLoanEntry& entry) {
  if (!entry.account.empty()) return {};
  return Against("Specify the " + entry.caption + " account number.", EntryField::Account);
}

Checked CheckLoanAccount(Session& session, const AdvLoanEntry& entry, const AskToContinue& ask) {
  if (entry.key.type != InstructionType::Loan) return {};
  if (!IsAdvLoanStored(session, entry.key)) {
    if (Checked refusal = CheckInstitution(entry)) return refusal;
  }
  if (Checked refusal = CheckAccount(entry)) return refusal;
  if (IsAccountInUse(session, entry) &&
      !ask("Loan Account number already exist(s). Do you want to continue ?", Icon::Question, Answer::Yes))
    return Against("", EntryField::Account);
  return {};
}

Checked CheckDate(Session& session, const AdvLoanEntry& entry) {
  if (!entry.date) return Against("Specify date. Format dd/mm/yyyy.", EntryField::Date);
  if (!FnBlnMonthAllowed(session.options.STARTMONTHYEAR, entry.typed.date))
    return Against("Given date cannot be before 'Start Month' set.", EntryField::Date);
  return {};
}

Checked CheckAmountGiven(const AdvLoanEntry& entry) {
  if (entry.amountByFormula || entry.amount != 0) return {};
  return Against("Specify amount.", EntryField::Amount);
}

Checked CheckInterest(const AdvLoanEntry& entry, const Differences& differences) {
  if (entry.interest <= kAmountLimit) return {};
  return Against(differences.interestTooHigh, EntryField::Interest);
}

Checked CheckInstalmentInput(const AdvLoanEntry& entry, const Differences& differences) {
  if (!entry.lumpSum) {
    if (differences.needsCount ? entry.count.value_or(0) != 0 : entry.count.has_value()) return {};
    return Against("Specify number of installments.", EntryField::Count);
  }
  // An instalment of 0 or below would never end the schedule.
  if (entry.instalment <= 0) return Against("Specify installment amount.", EntryField::Instalment);
  if (entry.instalment > kAmountLimit) return Against(differences.instalmentTooHigh, EntryField::Instalment);
  return {};
}

Checked CheckRecovery(const AdvLoanEntry& entry, const Differences& differences) {
  if (Checked refusal = CheckInstalmentInput(entry, differences)) return refusal;
  if (entry.firstMonth == 0) return Against(differences.noRecoveryMonth, EntryField::RecoverFrom);
  if (entry.firstMonth < MonthYearOf(*entry.date)) {
    return Against("Recovery month cannot be before the " + LowerCase(entry.caption) + " date.",
                   EntryField::RecoverFrom);
  }
  return {};
}

// Does not ask whether there is any recovery.
Checked CheckInstalmentAgainstTotal(const AdvLoanEntry& entry) {
  if (!entry.lumpSum || entry.amountByFormula || entry.instalment <= entry.Total()) return {};
  return Against(
      "Installment amount cannot exceed the sum of " + LowerCase(entry.caption) + " taken and interest.",
      EntryField::Instalment);
}

// A date equal to either passes, whatever the messages say.
Checked CheckService(Session& session, const AdvLoanEntry& entry) {
  const Service service = ReadService(session, entry.key.employee);
  if (service.joined && *service.joined > *entry.date)
    return Against(entry.caption + " date should be later than date of joining.", EntryField::Date);
  if (service.left && *service.left < *entry.date)
    return Against(entry.caption + " date should be before date of leaving.", EntryField::Date);
  return {};
}

double TenureOf(const AdvLoanEntry& entry) {
  if (!entry.lumpSum) return entry.count.value_or(0);
  return entry.instalment <= 0 ? 0 : RoundHalfEven(entry.Total() / entry.instalment);
}

Checked CheckTenure(Session& session, const AdvLoanEntry& entry, const AskToContinue& ask) {
  if (entry.noRecovery || !entry.newRecord) return {};
  if (RunsPastLastMonth(entry.Terms(session.AdvanceMgmtYN))) throw RuntimeError::Overflow();
  if (TenureOf(entry) > kLongestTenure && !ask(kTenureQuestion, Icon::Exclamation, Answer::No))
    return Against("");
  return {};
}

// A lock at any month from the date on refuses.
long LockedMonthsFrom(Session& session, long month) {
  return session.data
      .Guarding(session.Sql(
          "Select Count(MONTHYEAR) From MAS_MONTHYEAR Where LOCKEDYN = 1 And MONTHYEAR >= {}", month))
      .ToLong();
}

// Up to where an employee's lock counts, as the statement takes it.
std::string EndOfLock(Session& session, long month) {
  const long lastMonth =
      session.data
          .Guarding(session.Sql("SELECT MAX(MONTHYEAR) FROM MAS_MONTHYEAR WHERE MONTHYEAR >= {}", month))
          .ToLong();
  return lastMonth == 0 ? "DEFAULT" : std::to_string(lastMonth);
}

Checked CheckLocks(Session& session, const AdvLoanEntry& entry) {
  const long month = MonthYearOf(*entry.date);
  const long locked = LockedMonthsFrom(session, month);
  if (locked >= 1) return Against(fmt::format("{} Month(s) locked. Cannot Save/Update.", locked));
  if (IsEmployeeLocked(session, entry.key.employee, month, EndOfLock(session, month)))
    return EntryRefusal{.text = "Employee has been locked. Cannot Save/Update.", .title = kDeniedTitle};
  return {};
}

// The limits of the name are read and only this is made of them: no amount and no count is too high. How
// often it was given is not asked at all.
Checked CheckLimitsOfMany(const AdvLoanEntry& entry) {
  if (entry.amount < 0) return AgainstAmountOf(entry.rules);
  static_cast<void>(Value(entry.count.value_or(0)).ToInt());  // fails beyond 32767
  return {};
}

Checked CheckRecoveryOfMany(Session& session, const AdvLoanEntry& entry, const AskToContinue& ask) {
  if (entry.noRecovery) return {};
  if (Checked refusal = CheckRecovery(entry, kManyEmployees)) return refusal;
  if (Checked refusal = CheckInstalmentAgainstTotal(entry)) return refusal;
  return CheckTenure(session, entry, ask);
}

Checked CheckLocksOfMany(Session& session, const AdvLoanEntry& entry, const std::vector<long>& employees) {
  const long month = MonthYearOf(*entry.date);
  const long locked = LockedMonthsFrom(session, month);
  if (locked >= 1) return Against(fmt::format("{} month(s) locked.  Cannot save.", locked));
  if (!IsAnyLocked(session, employees, month, EndOfLock(session, month))) return {};
  return EntryRefusal{.text = kSomeEmployeeLocked, .icon = Icon::Exclamation, .title = kDeniedTitle};
}

}  // namespace

std::optional<EntryRefusal> ValidateAdvLoan(Session& session, const AdvLoanEntry& entry,
                                            const AskToContinue& ask) {
  if (session.AdvanceMgmtYN) {
    if (Checked refusal = CheckLimits(session, entry)) return refusal;
  }
  if (Checked refusal = CheckWhoAndWhat(session, entry)) return refusal;
  if (Checked refusal = CheckLoanAccount(session, entry, ask)) return refusal;
  if (Checked refusal = CheckDate(session, entry)) return refusal;
  if (Checked refusal = CheckAmountGiven(entry)) return refusal;
  if (Checked refusal = CheckInterest(entry, kOneEmployee)) return refusal;
  if (!entry.noRecovery && entry.newRecord && !IsAdvLoanStored(session, entry.key)) {
    if (Checked refusal = CheckRecovery(entry, kOneEmployee)) return refusal;
  }
  if (Checked refusal = CheckInstalmentAgainstTotal(entry)) return refusal;
  if (Checked refusal = CheckService(session, entry)) return refusal;
  if (Checked refusal = CheckTenure(session, entry, ask)) return refusal;
  if (Checked refusal = CheckLocks(session, entry)) return refusal;
  if (AreRemarksTooLong(entry.remarks)) return Against(kRemarksTooLong, EntryField::Remarks);
  return {};
}

std::optional<EntryRefusal> ValidateAllotment(Session& session, const AdvLoanEntry& entry,
                                              const std::vector<long>& employees, const AskToContinue& ask) {
  if (Checked refusal = CheckNameGiven(entry)) return refusal;
  if (!IsNameListed(session, entry.key.type, entry.name)) return AgainstUnknownName(entry);
  if (session.AdvanceMgmtYN) {
    if (Checked refusal = CheckLimitsOfMany(entry)) return refusal;
  }
  if (entry.key.type == InstructionType::Loan) {
    if (Checked refusal = CheckAccount(entry)) return refusal;
    if (Checked refusal = CheckInstitution(entry)) return refusal;
  }
  if (Checked refusal = CheckDate(session, entry)) return refusal;
  if (Checked refusal = CheckAmountGiven(entry)) return refusal;
  if (Checked refusal = CheckAmountLimit(entry)) return refusal;
  if (Checked refusal = CheckInterest(entry, kManyEmployees)) return refusal;
  if (Checked refusal = CheckRecoveryOfMany(session, entry, ask)) return refusal;
  if (Checked refusal = CheckLocksOfMany(session, entry, employees)) return refusal;
  if (AreRemarksTooLong(entry.remarks)) return Against(kRemarksTooLong, EntryField::Remarks);
  return {};
}

}  // namespace ktl
