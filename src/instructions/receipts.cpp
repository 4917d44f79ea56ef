#include "instructions/receipts.h"

#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "instructions/list_columns.h"

namespace ktl {

std::vector<Receipt> ReadReceipts(Session& session, const InstructionKey& key) {
  std::vector<Receipt> receipts;
  Recordset rs(session.Cn, session.Sql("Select COUNTER, RCPTDATE, RCPTPRNAMT, RCPTINTAMT, RCPTAMT, REMARKS "
                                       "From INS_RECEIPTS Where {} Order By RCPTDATE",
                                       WhereInstruction(key)));
  for (; !rs.Eof(); rs.MoveNext()) {
    receipts.push_back({.counter = rs["COUNTER"].ToLong(),
                        .RCPTDATE = DateIfAny(rs["RCPTDATE"]),
                        .RCPTPRNAMT = NumberIfAny(rs["RCPTPRNAMT"]),
                        .RCPTINTAMT = NumberIfAny(rs["RCPTINTAMT"]),
                        .RCPTAMT = NumberIfAny(rs["RCPTAMT"]),
                        .remarks = rs["REMARKS"].TextOrEmpty()});
  }
  return receipts;
}

std::vector<GridList<Receipt>::Column> ReceiptColumns(InstructionType type) {
  return {
      {{"Counter", CellType::Number, 70, true},
       [](const Receipt& row) { return std::to_string(row.counter); }},
      {{std::string(FactsOf(type).receiptWord) + " Date", CellType::Date, 110},
       [](const Receipt& row) { return row.RCPTDATE ? FormatDate(*row.RCPTDATE, "dd/mm/yyyy") : ""; }},
      {{"Principle Amt.", CellType::Number, 120}, Amount(&Receipt::RCPTPRNAMT)},
      {{"Interest Amt.", CellType::Number, 120}, Amount(&Receipt::RCPTINTAMT)},
      {{"Total Amount", CellType::Number, 120}, Amount(&Receipt::RCPTAMT)},
      {{"Remarks", CellType::Text, 220}, &Receipt::remarks},
  };
}

}  // namespace ktl
