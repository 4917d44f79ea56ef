#include "instructions/receipts.h"

#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"

namespace ktl {

namespace {

std::optional<double> AmountOf(const Value& amount) {
  return amount.IsNull() ? std::nullopt : std::optional(amount.ToDouble());
}

}  // namespace

std::vector<Receipt> ReadReceipts(Session& session, const InstructionKey& key) {
  std::vector<Receipt> receipts;
  Recordset rs(session.Cn,
               "Select COUNTER, RCPTDATE, RCPTPRNAMT, RCPTINTAMT, RCPTAMT, REMARKS From INS_RECEIPTS Where " +
                   WhereInstruction(key).text() + " Order By RCPTDATE");
  for (; !rs.Eof(); rs.MoveNext()) {
    receipts.push_back(
        {.counter = rs["COUNTER"].ToLong(),
         .RCPTDATE = rs["RCPTDATE"].IsDate() ? std::optional(rs["RCPTDATE"].date()) : std::nullopt,
         .RCPTPRNAMT = AmountOf(rs["RCPTPRNAMT"]),
         .RCPTINTAMT = AmountOf(rs["RCPTINTAMT"]),
         .RCPTAMT = AmountOf(rs["RCPTAMT"]),
         .remarks = rs["REMARKS"].TextOrEmpty()});
  }
  return receipts;
}

}  // namespace ktl
