#include "recovery/emi_entry.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "common/titles.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "instructions/instruction_type.h"
#include "recovery/emi_months.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr std::size_t kRemarksLength = 100;

std::optional<EmiRefusal> CheckAmount(const EmiEntry& entry) {
  if (entry.amount.Now() < 0) return EmiRefusal{"Specify proper amount.", EmiField::Amount};
  if (!FnBlnWithinLimit(entry.amount.text, kAmountLimit))
    return EmiRefusal{"Amount should be less than 9,99,99,99,999.99", EmiField::Amount};
  return std::nullopt;
}

// Neither month lies before the month of the instruction's date.
std::optional<EmiRefusal> CheckGivenDate(Session& session, const InstructionKey& key,
                                         const MonthRangeText& months) {
  if (!IsAdvanceOrLoan(key.type)) return std::nullopt;
  const Value given =
      session.data.FnVarGetDbValue("Select SIDATE From INS_ADVLOAN Where " + WhereInstruction(key).text());
  if (!given.IsDate()) return std::nullopt;
  const long givenMonth = MonthYearOf(given.date());
  const auto refuse = [&key](const char* which, EmiField field) {
    return EmiRefusal{
        fmt::format("'{} Month' cannot be before the {} given date", which, FactsOf(key.type).salaryColumn),
        field, Icon::None};
  };
  if (months.FromMonth() < givenMonth) return refuse("From", EmiField::From);
  if (months.ToMonth() < givenMonth) return refuse("To", EmiField::To);
  return std::nullopt;
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
  if (!reducing) return row.Set("MDFYAMT", entry.amount.Now());
  row.Set("MDFPRNAMT", entry.amount.Now());
  row.Set("MDFINTAMT", entry.interest.Now());
  row.Set("MDFYAMT", entry.amount.Now() + entry.interest.Now());
}

}  // namespace

long MonthRangeText::FromMonth() const { return FnLngMonthYear(from); }
long MonthRangeText::ToMonth() const { return FnLngMonthYear(to); }

double EditedAmount::Now() const { return clsGenCmn::FnDblTrimVal(text); }
double EditedAmount::Before() const { return clsGenCmn::FnDblTrimVal(tag); }

std::optional<EmiRefusal> CheckMonthRange(Session& session, const MonthRangeText& months) {
  const long startMonth = session.options.STARTMONTHYEAR;
  if (Trim(months.from).empty())
    return EmiRefusal{"Please Specify 'From Month'. Format mmm/yyyy.", EmiField::From};
  if (Trim(months.to).empty()) return EmiRefusal{"Please Specify 'To Month'. Format mmm/yyyy.", EmiField::To};
  if (!IsDate(months.from)) return EmiRefusal{"Invalid 'From Month'. Format mmm/yyyy.", EmiField::From};
  if (!FnBlnMonthAllowed(startMonth, months.from))
    return EmiRefusal{"'From Month' cannot be before the 'Start Month' set.", EmiField::From};
  if (!IsDate(months.to)) return EmiRefusal{"Invalid 'To Month'. Format mmm/yyyy.", EmiField::To};
  if (!FnBlnMonthAllowed(startMonth, months.to))
    return EmiRefusal{"'To Month' cannot be before the 'Start Month' set.", EmiField::To};
  if (months.FromMonth() > months.ToMonth())
    return EmiRefusal{"'From Month' cannot be set later than 'To Month'.", EmiField::From};
  return std::nullopt;
}

std::optional<EmiRefusal> CheckMonthLocks(Session& session, const MonthRangeText& months) {
  const long locked = CountLockedMonths(session, months.FromMonth(), months.ToMonth());
  if (locked == 0) return std::nullopt;
  return EmiRefusal{LockedMonthsText(locked), EmiField::None, Icon::Exclamation};
}

std::optional<EmiRefusal> CheckEmiEntry(Session& session, const InstructionKey& key, const EmiEntry& entry) {
  if (entry.lngCounter < 1) return EmiRefusal{"Select record or click 'New'.", EmiField::New};
  if (const auto refusal = CheckMonthRange(session, entry.months)) return refusal;
  if (const auto refusal = CheckAmount(entry)) return refusal;
  if (const auto refusal = CheckGivenDate(session, key, entry.months)) return refusal;
  if (HasInstitution(key.type) && entry.institution.empty())
    return EmiRefusal{"Select Institution.", EmiField::Institution};
  if (const auto refusal = CheckMonthLocks(session, entry.months)) return refusal;
  if (IsEmployeeLocked(session, key.employee, entry.months.FromMonth(), kNoLastMonth)) {
    return EmiRefusal{"Employee has been locked. Cannot Save/Update.", EmiField::None, Icon::Information,
                      kDeniedTitle};
  }
  return std::nullopt;
}

bool WriteEmiMonths(Session& session, InstructionParent& parent, const EmiEntry& entry) {
  const InstructionKey key = parent.Key();
  const bool reducing = parent.ComponentsApart();
  const long institution = HasInstitution(key.type) ? static_cast<long>(Val(entry.institution)) : 0;
  bool added = false;
  for (long month = entry.months.FromMonth(); month <= entry.months.ToMonth(); ++month) {
    Recordset row(
        session.Cn,
        fmt::format("Select * From INS_EMIDETAIL Where EMPID = {} And SERIALNO = {} And MONTHYEAR = "
                    "{} And SITYPE = {}",
                    key.employee, key.serial, month, key.type),
        OpenMode::Update);
    if (row.Eof()) {
      StartMonth(row, key, month, parent.FnLngGetCounter());
      SetActualAmounts(row, reducing, entry.amount.Now());
      added = true;
    }
    row.Set("INSTID", institution);
    SetModifiedAmounts(row, reducing, entry);
    row.Set("REMARKS", Left(Trim(entry.remarks), kRemarksLength));
    row.Update();
    row.Close();
    RaiseEditMode(session, key.employee, OneMonth(month), AttendanceWording::EmployeeFirst);
  }
  return added;
}

}  // namespace ktl
