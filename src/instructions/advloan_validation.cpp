#include "instructions/advloan_validation.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr const char* kAmountTooHigh = "Amount should be less than 9,99,99,99,999.99";
constexpr double kLongestTenure = 360;  // months

using Checked = std::optional<Refusal>;

Checked Refuse(std::string text, EntryField focus = EntryField::None) {
  return Refusal{std::move(text), focus};
}
Checked EndQuietly(EntryField focus = EntryField::None) { return Refusal{"", focus}; }

double Number(const std::string& text) { return clsGenCmn::FnDblTrimVal(text); }

bool IsStored(Session& session, const AdvLoanEntry& entry) {
  return session.data.FnBlnRecExists("Select SERIALNO From INS_ADVLOAN Where " +
                                     WhereInstruction(entry.key).text());
}

// Counts the entry itself when it is stored already, so the last one allowed cannot be saved again.
long TimesGiven(Session& session, const AdvLoanEntry& entry) {
  return session.data
      .FnVarGetDbValue(
          fmt::format("select Count(serialno) as Total from INS_ADVLOAN Where EMPID={} And SITYPE = {} AND "
                      " SINAME = '{}'",
                      entry.key.employee, entry.key.type, SqlText(session, entry.name)),
          0)
      .ToLong();
}

Checked CheckLimits(Session& session, const AdvLoanEntry& entry) {
  const NameRules& rules = entry.rules;
  if (rules.AMTLIMIT > 0 && entry.Amount() > rules.AMTLIMIT) {
    return Refuse("Amount should be less than : " + NumberText(rules.AMTLIMIT), EntryField::Amount);
  }
  if (rules.EMIRECCNT > 0 && Value(Number(entry.count)).ToInt() > rules.EMIRECCNT) {
    return Refuse(fmt::format("No.of Installments should be less than : {}", rules.EMIRECCNT),
                  EntryField::Count);
  }
  if (rules.ALLOWLIMIT > 0 && TimesGiven(session, entry) >= rules.ALLOWLIMIT) {
    return Refuse(fmt::format("{} can be given only {} times in a service", entry.name, rules.ALLOWLIMIT),
                  EntryField::Name);
  }
  return {};
}

Checked CheckWhoAndWhat(Session& session, const AdvLoanEntry& entry) {
  if (entry.Amount() > kAmountLimit) return Refuse(kAmountTooHigh, EntryField::Amount);
  if (Number(entry.serialText) <= 0) return Refuse("Enter serial number.", EntryField::Serial);
  if (entry.key.employee == 0) return Refuse("Select employee.", EntryField::EmployeeName);
  const std::string name = Trim(entry.name);
  if (name.empty()) return Refuse("Specify the " + LowerCase(entry.caption) + " name.", EntryField::Name);
  if (Length(name) >= 51) {
    return Refuse(entry.caption + " name should be within 50 characters", EntryField::Name);
  }
  if (!NameExists(session, name)) return Refuse("Select " + entry.caption + " Name.", EntryField::Name);
  return {};
}

Checked CheckLoanAccount(Session& session, const AdvLoanEntry& entry, const AskToContinue& ask) {
  if (entry.key.type != InstructionType::Loan) return {};
  if (entry.institution.empty() && !IsStored(session, entry)) {
    return Refuse("Select institution.", EntryField::Institution);
  }
  const std::string account = Trim(entry.account);
  if (account.empty())
    return Refuse("Specify the " + entry.caption + " account number.", EntryField::Account);
  const Value others = session.data.FnVarGetDbValue(
      fmt::format(
          "Select COUNT(SERIALNO) From INS_ADVLOAN Where SITYPE = {} AND LOANACNO = '{}' AND (EMPID <> {} OR "
          "SERIALNO <> {})",
          entry.key.type, SqlText(session, account), entry.key.employee, entry.key.serial),
      0);
  if (others.NumberOr0() > 0 &&
      !ask("Loan Account number already exist(s). Do you want to continue ?", Icon::Question, Answer::Yes)) {
    return EndQuietly(EntryField::Account);
  }
  return {};
}

Checked CheckDateAndAmounts(Session& session, const AdvLoanEntry& entry) {
  if (!IsDate(entry.date)) return Refuse("Specify date. Format dd/mm/yyyy.", EntryField::Date);
  if (!FnBlnMonthAllowed(session.options.STARTMONTHYEAR, entry.date)) {
    return Refuse("Given date cannot be before 'Start Month' set.", EntryField::Date);
  }
  if (!entry.amountByFormula) {
    if (entry.Amount() == 0) return Refuse("Specify amount.", EntryField::Amount);
    if (entry.Amount() > kAmountLimit) return Refuse(kAmountTooHigh, EntryField::Amount);
  }
  if (entry.Interest() > kAmountLimit)
    return Refuse(std::string("Interest ") + kAmountTooHigh, EntryField::Interest);
  return {};
}

Checked CheckInstalmentInput(const AdvLoanEntry& entry) {
  if (entry.lumpSum) {
    // An instalment of 0 or below would never end the schedule.
    if (Trim(entry.instalment).empty() || entry.Instalment() <= 0) {
      return Refuse("Specify installment amount.", EntryField::Instalment);
    }
    if (entry.Instalment() > kAmountLimit) {
      return Refuse(std::string("Installment ") + kAmountTooHigh, EntryField::Instalment);
    }
    return {};
  }
  if (Trim(entry.count).empty()) return Refuse("Specify number of installments.", EntryField::Count);
  return {};
}

Checked CheckRecovery(Session& session, const AdvLoanEntry& entry) {
  if (entry.noRecovery || !entry.newRecord || IsStored(session, entry)) return {};
  if (Checked refusal = CheckInstalmentInput(entry)) return refusal;
  const long month = entry.RecoverFromMonth();
  if (month == 0) return Refuse("Specify 'Recovery from' Month/Year.", EntryField::RecoverFrom);
  if (month < FnLngMonthYear(entry.date)) {
    return Refuse("Recovery month cannot be before the " + LowerCase(entry.caption) + " date.",
                  EntryField::RecoverFrom);
  }
  return {};
}

// Does not ask whether there is any recovery.
Checked CheckInstalmentAgainstTotal(const AdvLoanEntry& entry) {
  if (!entry.lumpSum || entry.amountByFormula) return {};
  if (entry.Instalment() <= entry.Amount() + entry.Interest()) return {};
  return Refuse(
      "Installment amount cannot exceed the sum of " + LowerCase(entry.caption) + " taken and interest.",
      EntryField::Instalment);
}

// A date equal to either passes, whatever the messages say.
Checked CheckService(Session& session, const AdvLoanEntry& entry) {
  const Recordset rs(session.Cn,
                     fmt::format("Select DOJ, DOL From MAS_EMPLOYEE Where EMPID = {}", entry.key.employee));
  if (rs.Eof()) return {};
  const Date date = *ParseDate(entry.date);
  if (rs["DOJ"].IsDate() && rs["DOJ"].date() > date) {
    return Refuse(entry.caption + " date should be later than date of joining.", EntryField::Date);
  }
  if (rs["DOL"].IsDate() && rs["DOL"].date() < date) {
    return Refuse(entry.caption + " date should be before date of leaving.", EntryField::Date);
  }
  return {};
}

double TenureOf(const AdvLoanEntry& entry) {
  if (!entry.lumpSum) return Number(entry.count);
  if (entry.Instalment() <= 0) return 0;
  return RoundHalfEven((entry.Amount() + entry.Interest()) / entry.Instalment());
}

Checked CheckTenure(const AdvLoanEntry& entry, const AskToContinue& ask) {
  if (entry.noRecovery || !entry.newRecord) return {};
  const double tenure = TenureOf(entry);
  if (tenure > static_cast<double>(kLastMonthYear - entry.RecoverFromMonth())) throw RuntimeError::Overflow();
  if (tenure > kLongestTenure && !ask("Re-payment tenure exceeds 30 years.\r\nDo you want to continue?",
                                      Icon::Exclamation, Answer::No)) {
    return EndQuietly();
  }
  return {};
}

// A lock at any month from the date on refuses.
Checked CheckLocks(Session& session, const AdvLoanEntry& entry) {
  const long month = FnLngMonthYear(entry.date);
  const long locked =
      session.data
          .FnVarGetDbValue(
              fmt::format("Select Count(MONTHYEAR) From MAS_MONTHYEAR Where LOCKEDYN = 1 And MONTHYEAR >= {}",
                          month),
              0)
          .ToLong();
  if (locked >= 1) return Refuse(fmt::format("{} Month(s) locked. Cannot Save/Update.", locked));
  const long lastMonth =
      session.data
          .FnVarGetDbValue(
              fmt::format("SELECT MAX(MONTHYEAR) FROM MAS_MONTHYEAR WHERE MONTHYEAR >= {}", month), 0)
          .ToLong();
  if (IsEmployeeLocked(session, entry.key.employee, month,
                       lastMonth == 0 ? "DEFAULT" : std::to_string(lastMonth))) {
    return Refusal{"Employee has been locked. Cannot Save/Update.", EntryField::None, kDeniedTitle};
  }
  return {};
}

}  // namespace

double AdvLoanEntry::Amount() const { return Number(amount); }
double AdvLoanEntry::Interest() const { return Number(interest); }
double AdvLoanEntry::Instalment() const { return Number(instalment); }

long AdvLoanEntry::RecoverFromMonth() const { return FnLngMonthYear(FnStrCorrectMonth(recoverFrom)); }

std::optional<Refusal> ValidateAdvLoan(Session& session, const AdvLoanEntry& entry,
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
  if (Checked refusal = CheckTenure(entry, ask)) return refusal;
  return CheckLocks(session, entry);
}

}  // namespace ktl
