#include "recovery/emi_entry.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "common/amounts.h"
#include "common/month_year.h"
#include "common/titles.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "instructions/schedule.h"
#include "recovery/adjustment_write.h"
#include "recovery/change_audit.h"
#include "recovery/emi_months.h"
#include "recovery/reducing_interest.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr std::size_t kRemarksLength = 100;

// The two months, one after the other and against the company's first month.
std::optional<EmiRefusal> CheckMonthRange(Session& session, const MonthRange& months) {
  const auto allowed = [&session](const std::string& month) {
    return FnBlnMonthAllowed(session.options.STARTMONTHYEAR, month);
  };
  using enum EmiField;
  if (Trim(months.fromText).empty()) return EmiRefusal{"Please Specify 'From Month'. Format mmm/yyyy.", From};
  if (Trim(months.toText).empty()) return EmiRefusal{"Please Specify 'To Month'. Format mmm/yyyy.", To};
  if (!IsDate(months.fromText)) return EmiRefusal{"Invalid 'From Month'. Format mmm/yyyy.", From};
  if (!allowed(months.fromText))
    return EmiRefusal{"'From Month' cannot be before the 'Start Month' set.", From};
  if (!IsDate(months.toText)) return EmiRefusal{"Invalid 'To Month'. Format mmm/yyyy.", To};
  if (!allowed(months.toText)) return EmiRefusal{"'To Month' cannot be before the 'Start Month' set.", To};
  if (months.from > months.to) return EmiRefusal{"'From Month' cannot be set later than 'To Month'.", From};
  return std::nullopt;
}

std::optional<EmiRefusal> CheckMonthLocks(Session& session, const MonthRange& months) {
  const long locked = CountLockedMonths(session, months.from, months.to);
  if (locked == 0) return std::nullopt;
  return EmiRefusal{LockedMonthsText(locked), EmiField::None, Icon::Exclamation};
}

std::optional<EmiRefusal> CheckAmount(const EditedAmount& amount, EmiField field) {
  if (amount.now < 0) return EmiRefusal{"Specify proper amount.", field};
  if (amount.now > kAmountLimit) return EmiRefusal{kAmountTooLarge, field};
  return std::nullopt;
}

std::optional<EmiRefusal> CheckEmployeeLock(Session& session, const InstructionKey& key,
                                            const MonthRange& months) {
  if (!IsEmployeeLocked(session, key.employee, months.from, kNoLastMonth)) return std::nullopt;
  return EmiRefusal{"Employee has been locked. Cannot Save/Update.", EmiField::None, Icon::Information,
                    kDeniedTitle};
}

// Neither month lies before the month of the instruction's date.
std::optional<EmiRefusal> CheckGivenDate(Session& session, const InstructionKey& key,
                                         const MonthRange& months) {
  if (!IsAdvanceOrLoan(key.type)) return std::nullopt;
  const Value given =
      session.data.Guarding(session.Sql("Select SIDATE From INS_ADVLOAN Where {}", WhereInstruction(key)));
  if (!given.IsDate()) return std::nullopt;
  const long givenMonth = MonthYearOf(given.date());
  if (months.from >= givenMonth && months.to >= givenMonth) return std::nullopt;
  const bool early = months.from < givenMonth;
  return EmiRefusal{fmt::format("'{} Month' cannot be before the {} given date", early ? "From" : "To",
                                FactsOf(key.type).salaryColumn),
                    early ? EmiField::From : EmiField::To, Icon::None};
}

bool MayRunThatLong(Session& session, const MonthRange& months) {
  return static_cast<double>(months.Count()) <= kLongestTenure ||
         session.desk.Confirm(kTenureQuestion, session.title, Answer::No, Icon::Exclamation);
}

void StartMonth(Recordset& row, const InstructionKey& key, long monthYear, long counter) {
  row.AddNew();
  row.Set("EMPID", key.employee);
  row.Set("SERIALNO", key.serial);
  row.Set("MONTHYEAR", monthYear);
  row.Set("SITYPE", NumberOf(key.type));
  row.Set("Counter", counter);
}

void SetActualAmounts(Recordset& row, bool reducing, double amount) {
  if (!reducing) return row.Set("EMIAMT", amount);
  row.Set("ACTPRNAMT", amount);
  row.Set("ACTINTAMT", amount);  // the principal typed goes into the actual interest too
  row.Set("EMIAMT", amount + amount);
}

void SetModifiedAmounts(Recordset& row, bool reducing, const EmiEntry& entry) {
  if (!reducing) return row.Set("MDFYAMT", entry.amount.now);
  row.Set("MDFPRNAMT", entry.amount.now);
  row.Set("MDFINTAMT", entry.interest.now);
  row.Set("MDFYAMT", entry.amount.now + entry.interest.now);
}

std::string AuditedAnswer(Answer answer) {
  switch (answer) {
    case Answer::Yes:
      return "Adjusted the EMI Amount for Future Months";
    case Answer::No:
      return "Created New Month for Recovery";
    default:
      return "Deleted with No Adjustments";
  }
}

}  // namespace

MonthRange::MonthRange(std::string typedFrom, std::string typedTo)
    : fromText(std::move(typedFrom)),
      toText(std::move(typedTo)),
      from(FnLngMonthYear(fromText)),
      to(FnLngMonthYear(toText)) {}

EditedAmount::EditedAmount(std::string typed, std::string tag)
    : text(std::move(typed)),
      textBefore(std::move(tag)),
      now(clsGenCmn::FnDblTrimVal(text)),
      before(clsGenCmn::FnDblTrimVal(textBefore)) {
  if (std::fabs(now) > kAmountLimit) return;  // refused as it was typed
  const double paise = RoundByPattern(now, "0.00");
  if (paise == now) return;
  now = paise;
  text = ShownAmount(paise);
}

std::optional<EmiRefusal> CheckEmiEntry(Session& session, const InstructionKey& key, const EmiEntry& entry) {
  if (entry.lngCounter < 1) return EmiRefusal{"Select record or click 'New'.", EmiField::New};
  if (const auto refusal = CheckMonthRange(session, entry.months)) return refusal;
  if (const auto refusal = CheckAmount(entry.amount, EmiField::Amount)) return refusal;
  if (const auto refusal = CheckAmount(entry.interest, EmiField::Interest)) return refusal;
  if (const auto refusal = CheckGivenDate(session, key, entry.months)) return refusal;
  if (HasInstitution(key.type) && entry.institution == 0)
    return EmiRefusal{"Select Institution.", EmiField::Institution};
  if (!MayRunThatLong(session, entry.months)) return EmiRefusal{"", EmiField::To};
  if (const auto refusal = CheckMonthLocks(session, entry.months)) return refusal;
  return CheckEmployeeLock(session, key, entry.months);
}

bool RecoversTooMuch(const InstructionTotals& totals, double amountBefore, const EmiEntry& entry) {
  const double entered = static_cast<double>(entry.months.Count()) * entry.amount.now;
  return totals.emi - amountBefore + totals.receipts + entered > totals.amount + totals.interest;
}

bool WriteEmiMonths(Session& session, InstructionParent& parent, const EmiEntry& entry) {
  const InstructionKey key = parent.Key();
  const bool reducing = parent.ComponentsApart();
  bool added = false;
  for (long month = entry.months.from; month <= entry.months.to; ++month) {
    Recordset row(
        session.Cn,
        session.Sql("Select * From INS_EMIDETAIL Where EMPID = {} And SERIALNO = {} And MONTHYEAR = "
                    "{} And SITYPE = {}",
                    key.employee, key.serial, month, key.type),
        OpenMode::Update);
    if (row.Eof()) {
      StartMonth(row, key, month, parent.FnLngGetCounter());
      SetActualAmounts(row, reducing, entry.amount.now);
      added = true;
    }
    row.Set("INSTID", entry.institution);
    SetModifiedAmounts(row, reducing, entry);
    row.Set("REMARKS", Left(Trim(entry.remarks), kRemarksLength));
    row.Update();
    row.Close();
    RaiseFlags(session, key, month);
  }
  return added;
}

void AdjustSavedMonths(Session& session, InstructionParent& parent, Answer answer, const EmiEntry& entry,
                       std::size_t row, const ScheduleMonth& before) {
  using Mode = EditorDifference::Mode;
  const auto lost = [&entry](const EditedAmount& amount) {
    return (amount.before - amount.now) * static_cast<double>(entry.months.Count());
  };
  const bool reducing = parent.ComponentsApart();
  if (answer == Answer::Yes && reducing) {
    AdjustFuturePrincipal(session, parent, {Mode::Save, row, AmountOf(before, Component::Principal)});
    AdjustFutureInterest(session, parent, {Mode::Save, row, AmountOf(before, Component::Interest)});
  } else if (answer == Answer::Yes) {
    AdjustFutureMonths(session, parent, {Mode::Save, row, AmountOf(before, Component::Amount)});
  } else if (answer == Answer::No && reducing) {
    CreateRecoveryMonthRed(session, parent, lost(entry.amount), lost(entry.interest));
  } else if (answer == Answer::No) {
    CreateRecoveryMonth(session, parent, lost(entry.amount));
  }
}

void AuditSavedMonths(Session& session, const InstructionKey& key, const std::string& caption, bool reducing,
                      const EmiEntry& entry, bool added) {
  // Months that were only updated show the old amount too.
  const auto audited = [added](const std::string& now, const std::string& before) {
    return added ? now : fmt::format("{} ({})", now, before);
  };
  const EditedAmount &amount = entry.amount, &interest = entry.interest;
  AuditChange(session, key, caption, " EMI's Created/Updated",
              fmt::format("::From Month = {}:To Month = {}", entry.months.fromText, entry.months.toText) +
                  (reducing ? AuditedComponents(audited(amount.text, amount.textBefore),
                                                audited(interest.text, interest.textBefore),
                                                audited(AuditedSum(amount.now + interest.now),
                                                        AuditedSum(amount.before + interest.before)))
                            : "::EMI Amount = " + audited(amount.text, amount.textBefore)));
}

std::optional<EmiRefusal> CheckMonthDelete(Session& session, const InstructionKey& key, long monthYear) {
  if (IsMonthLocked(session, monthYear))
    return EmiRefusal{"Month/Year locked. Cannot delete.", EmiField::None, Icon::Exclamation};
  if (!IsEmployeeLocked(session, key.employee, monthYear, kNoLastMonth)) return std::nullopt;
  return EmiRefusal{"Employee has been locked. Cannot Delete.", EmiField::None, Icon::Information,
                    kDeniedTitle};
}

void DeleteEmiMonth(Session& session, const InstructionKey& key, const ScheduleMonth& month) {
  session.Cn.Execute(session.Sql(
      "Delete From INS_EMIDETAIL Where EMPID = {} And SERIALNO = {} And MONTHYEAR = {} And SITYPE = "
      "{} And COUNTER = {}",
      key.employee, key.serial, month.monthYear, key.type, month.counter));
  RaiseFlags(session, key, month.monthYear);
}

void AdjustDeletedMonth(Session& session, InstructionParent& parent, Answer answer, std::size_t row,
                        const ScheduleMonth& deleted) {
  using Mode = EditorDifference::Mode;
  const double amount = AmountOf(deleted, Component::Amount);
  const double principal = AmountOf(deleted, Component::Principal);
  const double interest = AmountOf(deleted, Component::Interest);
  const bool reducing = parent.ComponentsApart();
  if (answer == Answer::Yes && reducing) {
    AdjustFuturePrincipal(session, parent, {Mode::Delete, row, principal});
    AdjustFutureInterest(session, parent, {Mode::Delete, row, interest});
  } else if (answer == Answer::Yes) {
    AdjustFutureMonths(session, parent, {Mode::Delete, row, amount});
  } else if (answer == Answer::No && reducing) {
    if (principal + interest != 0) CreateRecoveryMonthRed(session, parent, principal, interest);
  } else if (answer == Answer::No && amount != 0) {
    CreateRecoveryMonth(session, parent, amount);
  }
}

void AuditDeletedMonth(Session& session, const InstructionKey& key, const std::string& caption, bool reducing,
                       const ScheduleMonth& month, std::optional<Answer> answer) {
  const auto shown = [&month](Component component) { return ShownAmount(AmountOf(month, component)); };
  std::string detail = ":Month/Year = " + FnStrFormatMonthYear(month.monthYear);
  if (reducing) {
    detail += AuditedComponents(
        shown(Component::Principal), shown(Component::Interest),
        AuditedSum(AmountOf(month, Component::Principal) + AmountOf(month, Component::Interest)));
  } else {
    detail += "::EMI Amount = " + shown(Component::Amount);
    if (answer) detail += ":EMI Adjustment = " + AuditedAnswer(*answer);
  }
  AuditChange(session, key, caption, " EMI's Deleted", detail);
}

std::optional<PanelRefusal> CheckInterestPanel(Session& session, const InstructionKey& key,
                                               const InterestPanel& panel,
                                               const std::vector<ScheduleMonth>& months) {
  using enum EmiField;
  if (const auto refusal = CheckMonthRange(session, panel.months)) return PanelRefusal{*refusal};
  if (panel.rate == 0) return PanelRefusal{{"Enter Interest Rate.", Rate}};
  if (panel.rate < 0) return PanelRefusal{{"Specify proper Interest.", Rate}};
  if (const auto refusal = CheckMonthLocks(session, panel.months)) return PanelRefusal{*refusal};
  if (const auto refusal = CheckEmployeeLock(session, key, panel.months)) return PanelRefusal{*refusal};
  if (panel.rate >= 100) return PanelRefusal{{"Specify proper Interest.", Rate}, true};
  if (!months.empty() && panel.months.from < months.front().monthYear) return PanelRefusal{{"", From}, true};
  if (!months.empty() && panel.months.to > months.back().monthYear) return PanelRefusal{{"", To}, true};
  const auto inRange = [&panel](const ScheduleMonth& month) { return panel.months.Holds(month.monthYear); };
  if (std::ranges::none_of(months, inRange)) return PanelRefusal{{"Specify proper EMI months", From}};
  return std::nullopt;
}

void WriteInterests(Session& session, const InstructionKey& key, const InterestPanel& panel,
                    const std::vector<ScheduleMonth>& months) {
  const std::vector<double> interests = ReducingInterest(
      months, ReadInterestTerms(
                  session, key,
                  {.rate = panel.rate / 100, .daysBasis = panel.daysBasis, .exactDates = panel.exactDates}));
  for (std::size_t row = 0; row < months.size(); ++row) {
    if (!panel.months.Holds(months[row].monthYear)) continue;
    WriteMonthInterest(session, key, months[row].monthYear, interests[row]);
    RaiseFlags(session, key, months[row].monthYear);
  }
}

}  // namespace ktl
