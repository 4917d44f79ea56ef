#include "instructions/advloan_validation.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/entry_questions.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr const char* kAmountTooHigh = "Amount should be less than 9,99,99,99,999.99";

using Checked = std::optional<EntryRefusal>;

Checked Against(std::string text, EntryField field = EntryField::None) {
  return EntryRefusal{.text = std::move(text), .field = field};
}

// Counts the entry itself when it is stored already, so the last one allowed cannot be saved again.
long TimesGiven(Session& session, const AdvLoanEntry& entry) {
  return session.data.Long(session.Sql(
      "select Count(serialno) as Total from INS_ADVLOAN Where EMPID={} And SITYPE = {} AND  SINAME = '{}'",
      entry.key.employee, entry.key.type, entry.typed.name));
}

Checked CheckLimits(Session& session, const AdvLoanEntry& entry) {
  const NameRules& rules = entry.rules;
  if (rules.AMTLIMIT > 0 && entry.amount > rules.AMTLIMIT)
    return Against("Amount should be less than : " + NumberText(rules.AMTLIMIT), EntryField::Amount);
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

Checked CheckWhoAndWhat(Session& session, const AdvLoanEntry& entry) {
  if (entry.amount > kAmountLimit) return Against(kAmountTooHigh, EntryField::Amount);
  if (!IsSerial(static_cast<double>(entry.serial)))
    return Against("Enter serial number.", EntryField::Serial);
  if (entry.key.employee == 0) return Against("Select employee.", EntryField::EmployeeName);
  if (entry.name.empty())
    return Against("Specify the " + LowerCase(entry.caption) + " name.", EntryField::Name);
  if (Length(entry.name) >= 51)
    return Against(entry.caption + " name should be within 50 characters", EntryField::Name);
  if (!NameExists(session, entry.key.type, entry.name))
    return Against("Select " + entry.caption + " Name.", EntryField::Name);
  return {};
}

bool IsAccountInUse(Session& session, const AdvLoanEntry& entry) {
  const Statement others = session.Sql(
      "Select COUNT(SERIALNO) From INS_ADVLOAN Where SITYPE = {} AND LOANACNO = '{}' AND (EMPID <> {} OR "
      "SERIALNO <> {})",
      entry.key.type, entry.account, entry.key.employee, entry.key.serial);
  return session.data.Number(others) > 0;
}

Checked CheckLoanAccount(Session& session, const AdvLoanEntry& entry, const AskToContinue& ask) {
  if (entry.key.type != InstructionType::Loan) return {};
  if (!entry.institution && !IsAdvLoanStored(session, entry.key))
    return Against("Select institution.", EntryField::Institution);
  if (entry.account.empty())
    return Against("Specify the " + entry.caption + " account number.", EntryField::Account);
  if (IsAccountInUse(session, entry) &&
      !ask("Loan Account number already exist(s). Do you want to continue ?", Icon::Question, Answer::Yes))
    return Against("", EntryField::Account);
  return {};
}

Checked CheckDateAndAmounts(Session& session, const AdvLoanEntry& entry) {
  if (!entry.date) return Against("Specify date. Format dd/mm/yyyy.", EntryField::Date);
  if (!FnBlnMonthAllowed(session.options.STARTMONTHYEAR, entry.typed.date))
    return Against("Given date cannot be before 'Start Month' set.", EntryField::Date);
  if (!entry.amountByFormula) {
    if (entry.amount == 0) return Against("Specify amount.", EntryField::Amount);
    if (entry.amount > kAmountLimit) return Against(kAmountTooHigh, EntryField::Amount);
  }
  if (entry.interest > kAmountLimit)
    return Against(std::string("Interest ") + kAmountTooHigh, EntryField::Interest);
  return {};
}

Checked CheckInstalmentInput(const AdvLoanEntry& entry) {
  if (!entry.lumpSum)
    return entry.count ? Checked() : Against("Specify number of installments.", EntryField::Count);
  // An instalment of 0 or below would never end the schedule.
  if (entry.instalment <= 0) return Against("Specify installment amount.", EntryField::Instalment);
  if (entry.instalment > kAmountLimit)
    return Against(std::string("Installment ") + kAmountTooHigh, EntryField::Instalment);
  return {};
}

Checked CheckRecovery(Session& session, const AdvLoanEntry& entry) {
  if (entry.noRecovery || !entry.newRecord || IsAdvLoanStored(session, entry.key)) return {};
  if (Checked refusal = CheckInstalmentInput(entry)) return refusal;
  if (entry.firstMonth == 0) return Against("Specify 'Recovery from' Month/Year.", EntryField::RecoverFrom);
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
  const Recordset rs(session.Cn,
                     session.Sql("Select DOJ, DOL From MAS_EMPLOYEE Where EMPID = {}", entry.key.employee));
  if (rs.Eof()) return {};
  const std::optional<Date> joined = DateIfAny(rs["DOJ"]), left = DateIfAny(rs["DOL"]);
  if (joined && *joined > *entry.date)
    return Against(entry.caption + " date should be later than date of joining.", EntryField::Date);
  if (left && *left < *entry.date)
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
Checked CheckLocks(Session& session, const AdvLoanEntry& entry) {
  const long month = MonthYearOf(*entry.date);
  const long locked =
      session.data
          .Guarding(session.Sql(
              "Select Count(MONTHYEAR) From MAS_MONTHYEAR Where LOCKEDYN = 1 And MONTHYEAR >= {}", month))
          .ToLong();
  if (locked >= 1) return Against(fmt::format("{} Month(s) locked. Cannot Save/Update.", locked));
  const long lastMonth =
      session.data
          .Guarding(session.Sql("SELECT MAX(MONTHYEAR) FROM MAS_MONTHYEAR WHERE MONTHYEAR >= {}", month))
          .ToLong();
  if (IsEmployeeLocked(session, entry.key.employee, month,
                       lastMonth == 0 ? "DEFAULT" : std::to_string(lastMonth)))
    return EntryRefusal{.text = "Employee has been locked. Cannot Save/Update.", .title = kDeniedTitle};
  return {};
}

}  // namespace

std::optional<EntryRefusal> ValidateAdvLoan(Session& session, const AdvLoanEntry& entry,
                                            const AskToContinue& ask) {
  if (session.AdvanceMgmtYN) {
    if (Checked refusal = CheckLimits(session, entry)) return refusal;
  }
  if (Checked refusal = CheckWhoAndWhat(session, entry)) return refusal;
  if (Checked refusal = CheckLoanAccount(session, entry, ask)) return refusal;
  if (Checked refusal = CheckDateAndAmounts(session, entry)) return refusal;
  if (Checked refusal = CheckRecovery(session, entry)) return refusal;
  if (Checked refusal = CheckInstalmentAgainstTotal(entry)) return refusal;
  if (Checked refusal = CheckService(session, entry)) return refusal;
  if (Checked refusal = CheckTenure(session, entry, ask)) return refusal;
  if (Checked refusal = CheckLocks(session, entry)) return refusal;
  if (AreRemarksTooLong(entry.remarks)) return Against(kRemarksTooLong, EntryField::Remarks);
  return {};
}

}  // namespace ktl
