#pragma once

#include <optional>
#include <string>
#include <vector>

#include "instructions/instruction_parent.h"
#include "runtime/date.h"
#include "screen/grid_list.h"

namespace ktl {

struct Session;

// A payment outside the salary, rupees. What is null in the row is not there.
struct Receipt {
  long counter = 0;
  std::optional<Date> RCPTDATE;
  std::optional<double> RCPTPRNAMT, RCPTINTAMT, RCPTAMT;
  std::string remarks;
};

// In the order of their dates.
std::vector<Receipt> ReadReceipts(Session& session, const InstructionKey& key);

// As every list of receipts shows them.
std::vector<GridList<Receipt>::Column> ReceiptColumns(InstructionType type);
inline const std::vector<std::size_t> kSummedReceiptColumns = {2, 3, 4};

}  // namespace ktl
