#include "instructions/schedule.h"

#include "common/amounts.h"
#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

double NextMultiple(double instalment, double unit) {
  const double whole = TruncateDecimals(RoundHalfEven(instalment) / unit, 0);
  if (instalment - whole * unit > 0) return whole * unit + unit;
  return whole != 0 ? whole * unit : instalment;
}

double Rounded(double instalment, InstalmentRounding rounding) {
  switch (rounding) {
    case InstalmentRounding::NearOneRupee:
      return RoundByPattern(instalment, "####");
    case InstalmentRounding::NearTenRupee:
      return NextMultiple(instalment, 10);
    case InstalmentRounding::NearFiftyRupee:
      return NextMultiple(instalment, 50);
    case InstalmentRounding::None:
      return RoundByPattern(instalment, "####.##");
  }
  return instalment;
}

void AddScheduleRow(Recordset& rows, const InstructionKey& key, const ScheduleRow& row, long institution,
                    ScheduleForm form) {
  rows.AddNew();
  rows.Set("EMPID", key.employee);
  rows.Set("SERIALNO", key.serial);
  rows.Set("MONTHYEAR", row.monthYear);
  rows.Set("SITYPE", NumberOf(key.type));
  rows.Set("Counter", row.counter);
  if (row.interest) rows.Set("INTAMT", *row.interest);
  rows.Set("EMIAMT", row.emiAmount);
  rows.Set("MDFYAMT", row.emiAmount);
  if (!row.interest && form == ScheduleForm::Screen) {
    rows.Set("ACTPRNAMT", row.emiAmount);
    rows.Set("MDFPRNAMT", row.emiAmount);
  }
  rows.Set("INSTID", key.type == InstructionType::Loan ? institution : 0L);
  rows.Update();
}

}  // namespace

double InstalmentOf(const ScheduleTerms& terms) {
  if (terms.instalment) return *terms.instalment;
  if (terms.count == 0) throw RuntimeError::DivisionByZero();
  return Rounded(terms.total / terms.count, terms.rounding);
}

bool RunsPastLastMonth(const ScheduleTerms& terms) {
  double instalment = 0;
  try {
    instalment = InstalmentOf(terms);
  } catch (const RuntimeError&) {
    return false;
  }
  long month = terms.firstMonth;
  for (double remaining = terms.total; remaining > 0; remaining -= instalment)
    if (month++ > kLastMonthYear) return true;
  return false;
}

std::vector<ScheduleRow> GenerateSchedule(const ScheduleTerms& terms) {
  const double instalment = InstalmentOf(terms);
  if (!(instalment > 0)) throw RuntimeError::InvalidProcedureCall();
  std::vector<ScheduleRow> rows;
  double remaining = terms.total;
  for (long month = terms.firstMonth; remaining > 0; ++month) {
    if (month > kLastMonthYear) throw RuntimeError::Overflow();
    ScheduleRow row{
        static_cast<long>(rows.size()) + 1, month, remaining < instalment ? remaining : instalment, {}};
    if (terms.reducingRate > 0) {
      row.interest = terms.reducingRate / 100 * remaining;
      row.emiAmount += *row.interest;
    }
    rows.push_back(row);
    remaining -= instalment;
  }
  return rows;
}

bool WriteSchedule(Session& session, const InstructionKey& key, const ScheduleTerms& terms, long institution,
                   ScheduleForm form) {
  if (HasSchedule(session, key)) return false;
  const std::vector<ScheduleRow> schedule = GenerateSchedule(terms);
  Recordset rows(session.Cn, "Select * From INS_EMIDETAIL", OpenMode::AddOnly);
  for (const ScheduleRow& row : schedule) AddScheduleRow(rows, key, row, institution, form);
  rows.Close();
  return true;
}

std::vector<OpenMonth> SpreadOver(std::vector<OpenMonth> months, double total) {
  if (months.empty()) return months;
  const double share = FnDblRoundUp(RoundTwoPlaces(total / static_cast<double>(months.size())));
  double left = total;
  for (OpenMonth& month : months) {
    if (share <= left)
      month.modifiedAmount += share;
    else if (left > 0)
      month.modifiedAmount += left;
    left -= share;
  }
  return months;
}

}  // namespace ktl
