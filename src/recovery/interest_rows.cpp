#include "recovery/interest_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "common/amounts.h"
#include "common/month_year.h"
#include "common/titles.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "recovery/emi_entry.h"
#include "recovery/emi_months.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

Statement JoinOf(Session& session, const InstructionKey& key, const std::string& name) {
  return session.Sql(
      "FROM INS_EMIDETAIL IED, INS_ADVLOAN ILA WHERE IED.EMPID=ILA.EMPID AND IED.SITYPE=ILA.SITYPE AND "
      "IED.SERIALNO=ILA.SERIALNO AND IED.SITYPE={} AND IED.EMPID={} AND IED.SERIALNO={} AND ILA.SINAME='{}'",
      key.type, key.employee, key.serial, name);
}

// The editor's four amounts, none of them null, and their sums.
struct Amounts {
  double actualPrincipal, actualInterest, modifiedPrincipal, modifiedInterest;

  explicit Amounts(const ScheduleMonth& month)
      : actualPrincipal(month.ACTPRNAMT.value_or(0)),
        actualInterest(month.ACTINTAMT.value_or(0)),
        modifiedPrincipal(month.MDFPRNAMT.value_or(0)),
        modifiedInterest(month.MDFINTAMT.value_or(0)) {}

  double Actual() const { return actualPrincipal + actualInterest; }
  double Modified() const { return modifiedPrincipal + modifiedInterest; }
  bool operator==(const Amounts&) const = default;
};

std::string Parts(double principal, double interest, double total) {
  return fmt::format("{} + {} = {}", ShownAmount(principal), ShownAmount(interest), ShownAmount(total));
}

// ":Apr/2010 Actual ... (old), Modified ... (old)", "" for a month that stays as it is.
std::string AuditOfMonth(Session& session, const ScheduleMonth& month, const Statement& join) {
  const Recordset stored(session.Cn,
                         session.Sql("SELECT IED.ACTPRNAMT, IED.ACTINTAMT, IED.EMIAMT, IED.MDFPRNAMT, "
                                     "IED.MDFINTAMT, IED.MDFYAMT {} AND IED.MONTHYEAR={}",
                                     join, month.monthYear));
  if (stored.Eof()) return "";
  const ScheduleMonth old = ReadScheduleMonth(stored);
  const Amounts now(month), before(old);
  if (before == now) return "";
  return fmt::format(":{}:Actual = {} ({}):Modified = {} ({})", FnStrFormatMonthYear(month.monthYear),
                     Parts(now.actualPrincipal, now.actualInterest, now.Actual()),
                     Parts(before.actualPrincipal, before.actualInterest, old.EMIAMT.value_or(0)),
                     Parts(now.modifiedPrincipal, now.modifiedInterest, now.Modified()),
                     Parts(before.modifiedPrincipal, before.modifiedInterest, old.MDFYAMT.value_or(0)));
}

void WriteMonth(Session& session, const ScheduleMonth& month, const Statement& join) {
  const Amounts now(month);
  session.Cn.Execute(session.Sql(
      "UPDATE INS_EMIDETAIL SET ACTPRNAMT = {}, ACTINTAMT = {}, EMIAMT = {}, MDFPRNAMT = {}, MDFINTAMT = {}, "
      "MDFYAMT = {} {} AND IED.MONTHYEAR={}",
      now.actualPrincipal, now.actualInterest, now.Actual(), now.modifiedPrincipal, now.modifiedInterest,
      now.Modified(), join, month.monthYear));
}

// The list's first column.
constexpr std::size_t kMonthColumn = 0;

using CellLines = std::vector<std::vector<std::string>>;

CellLines LinesOf(const std::string& block) {
  CellLines lines;
  for (const std::string& line : Split(ReplaceAll(block, "\r", ""), "\n")) {
    if (line.empty()) continue;
    std::vector<std::string>& cells = lines.emplace_back(Split(line, "\t"));
    for (std::string& cell : cells) cell = Trim(cell);
  }
  return lines;
}

// Those whose headings the cells are; none when a cell is no heading.
std::vector<std::size_t> HeadedColumns(const std::vector<std::string>& cells, const Grid& list) {
  std::vector<std::size_t> columns;
  for (const std::string& cell : cells) {
    const auto column = std::ranges::find(list.columns, cell, &GridColumn::caption);
    if (column == list.columns.end()) return {};
    columns.push_back(static_cast<std::size_t>(column - list.columns.begin()));
  }
  return columns;
}

// Behind the last row when there is no such month.
std::size_t RowOfMonth(const Grid& list, const std::string& month) {
  std::size_t row = 0;
  while (row < list.rows.size() && list.Text(row, kMonthColumn) != month) ++row;
  return row;
}

}  // namespace

std::vector<ScheduleMonth> ReadInterestRows(Session& session, const InstructionKey& key,
                                            const std::string& name) {
  std::vector<ScheduleMonth> months;
  Recordset rs(session.Cn,
               session.Sql("SELECT ILA.*, IED.ACTPRNAMT AS ACTPrinciple, IED.ACTINTAMT AS ACTINTEREST, "
                           "IED.MONTHYEAR, IED.MDFPRNAMT AS MDFPrinciple, IED.MDFINTAMT AS MDFINTEREST {} "
                           "ORDER BY IED.MONTHYEAR",
                           JoinOf(session, key, name)));
  for (; !rs.Eof(); rs.MoveNext()) {
    months.push_back({.monthYear = rs["MONTHYEAR"].ToLong(),
                      .ACTPRNAMT = rs["ACTPrinciple"].NumberOr0(),
                      .ACTINTAMT = rs["ACTINTEREST"].NumberOr0(),
                      .MDFPRNAMT = rs["MDFPrinciple"].NumberOr0(),
                      .MDFINTAMT = rs["MDFINTEREST"].NumberOr0()});
  }
  return months;
}

EmployeeLabels ReadEmployeeLabels(Session& session, long employee) {
  const Recordset rs(
      session.Cn, session.Sql("SELECT EMPID, REFNO, EMPNAME FROM MAS_EMPLOYEE Where EMPID = {}", employee));
  if (rs.Eof()) return {};
  return {session.options.REFNOCAP + " : " + rs["REFNO"].TextOrEmpty(),
          "Emp. Name : " + rs["EMPNAME"].TextOrEmpty()};
}

std::optional<Refusal<NoField>> CheckInterestRows(Session& session, const InstructionKey& key,
                                                  const std::vector<ScheduleMonth>& months) {
  using Refused = Refusal<NoField>;
  const auto tooLarge = [](const ScheduleMonth& month) {
    const Amounts now(month);
    return std::max({now.actualPrincipal, now.actualInterest, now.modifiedPrincipal, now.modifiedInterest}) >
           kAmountLimit;
  };
  const long first = months.front().monthYear;
  const long locked = CountLockedMonthsAtOnce(session, first, months.back().monthYear);
  if (locked > 0) return Refused{fmt::format("{} month(s) locked.  Cannot save.", locked)};
  if (IsEmployeeLocked(session, key.employee, first, kNoLastMonth))
    return Refused{.text = "Employee has been locked. Cannot Save.", .title = kDeniedTitle};
  if (std::ranges::any_of(months, tooLarge)) return Refused{kAmountTooLarge};
  return std::nullopt;
}

void WriteInterestRows(Session& session, const InstructionKey& key, const std::string& name,
                       const std::vector<ScheduleMonth>& months) {
  const Statement join = JoinOf(session, key, name);
  const bool audited = FnBlnAuditOn(session);
  std::string changes;
  double interest = 0;
  for (const ScheduleMonth& month : months) {
    if (audited) changes += AuditOfMonth(session, month, join);
    WriteMonth(session, month, join);
    RaiseFlags(session, key, month.monthYear);
    interest += month.MDFINTAMT.value_or(0);
  }
  session.Cn.Execute(session.Sql(
      "UPDATE INS_ADVLOAN SET INTAMT = {} WHERE SITYPE={} AND SERIALNO = {} AND EMPID = {} AND SINAME='{}'",
      interest, key.type, key.serial, key.employee, name));
  if (!audited) return;
  const std::string caption = InstructionCaption(session, key.type);
  AuditInstruction(session, key.employee, caption + " Interest Updated",
                   fmt::format(":::SI Type = {}:SI Name = {}:Serial No. = {}::Interest Amount "
                               "Details:Principle + Interest = EMI Amount:{}",
                               caption, name, key.serial, changes));
}

std::string RefusedAmount(const std::string& text) {
  if (Trim(text).empty()) return "";
  const std::optional<double> amount = ParseNumber(Trim(text));
  if (!amount || *amount < 0) return "Specify proper amount.";
  return *amount > kAmountLimit ? kAmountTooLarge : "";
}

std::optional<std::vector<PlacedAmount>> PlaceBlock(const std::string& block, const GridRange& selection,
                                                    const Grid& list) {
  CellLines lines = LinesOf(block);
  if (lines.empty() || list.rows.empty()) return std::nullopt;
  std::vector<std::size_t> columns = HeadedColumns(lines.front(), list);
  GridRange room = selection;
  if (!columns.empty()) {
    lines.erase(lines.begin());
    if (lines.empty()) return std::nullopt;
    room.lastRow = list.rows.size() - 1;
  } else {
    if (room.Rows() == 1 && room.Columns() == 1) {  // the corner that the block starts in
      room.lastRow = list.rows.size() - 1;
      room.lastColumn = list.columns.size() - 1;
    }
    columns.resize(lines.front().size());
    std::iota(columns.begin(), columns.end(), room.firstColumn);
    if (room.firstColumn == kMonthColumn || columns.back() > room.lastColumn) return std::nullopt;
  }
  std::vector<PlacedAmount> placed;
  for (std::size_t line = 0; line < lines.size(); ++line) {
    if (lines[line].size() != columns.size()) return std::nullopt;
    std::size_t row = room.firstRow + line;
    if (columns.front() == kMonthColumn) row = RowOfMonth(list, lines[line].front());
    if (row > room.lastRow || row >= list.rows.size()) return std::nullopt;
    for (std::size_t cell = 0; cell < columns.size(); ++cell) {
      if (columns[cell] == kMonthColumn) continue;
      const std::string& text = lines[line][cell];
      if (text.empty() || !RefusedAmount(text).empty()) return std::nullopt;
      placed.push_back({row, columns[cell], *ParseNumber(text)});
    }
  }
  return placed;
}

}  // namespace ktl
