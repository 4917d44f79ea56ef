#include "instructions/shown_rows.h"

#include "frame/session.h"
#include "frame/writing_turn.h"
#include "instructions/instruction_statements.h"

namespace ktl {

namespace {

std::string Rows(Session& session, std::string_view table, const Statement& where, const char* order) {
  return RowsAsText(session, session.Sql("Select * From {} Where {}{}", Statement(std::string(table)), where,
                                         Statement(order)));
}

}  // namespace

std::string InstructionRow(Session& session, const InstructionKey& key) {
  return Rows(session, FactsOf(key.type).table, WhereInstruction(key), "");
}

std::string ScheduleRows(Session& session, const InstructionKey& key) {
  return Rows(session, "INS_EMIDETAIL", WhereInstruction(key), " Order By MONTHYEAR, COUNTER");
}

std::string ReceiptRows(Session& session, const InstructionKey& key) {
  return Rows(session, "INS_RECEIPTS", WhereInstruction(key), " Order By COUNTER");
}

std::string InstructionAndSchedule(Session& session, const InstructionKey& key) {
  return InstructionRow(session, key) + ScheduleRows(session, key);
}

std::string MonthsTaken(Session& session, const InstructionKey& key, long firstMonth, long lastMonth) {
  if (InstructionRow(session, key).empty()) return "";
  return kNothingThere +
         Rows(session, "INS_EMIDETAIL",
              session.Sql("{} And MONTHYEAR Between {} And {}", WhereInstruction(key), firstMonth, lastMonth),
              " Order By MONTHYEAR");
}

}  // namespace ktl
