#pragma once

#include <cstddef>

#include "recovery/emi_months.h"

namespace ktl {

struct Session;

// The operations that push a difference through a schedule, on the stored rows.

// The EMI editor's family. Works on the months as stored, which are read again for each operation; a
// statement that fails is passed over. Raises no flags for the months that it changes.
struct EditorDifference {
  enum class Mode { Save, Delete };
  Mode mode = Mode::Save;
  std::size_t activeRow = 0;  // of the saved month, or where the deleted one stood
  double amount = 0;          // what the saved month held before, or what was deleted
};
void AdjustFutureMonths(Session& session, InstructionParent& parent, const EditorDifference& difference);
void AdjustFuturePrincipal(Session& session, InstructionParent& parent, const EditorDifference& difference);
void AdjustFutureInterest(Session& session, InstructionParent& parent, const EditorDifference& difference);
// Add a month behind the last one; an amount of 0 or below is refused with a message.
void CreateRecoveryMonth(Session& session, InstructionParent& parent, double dblAmount);
void CreateRecoveryMonthRed(Session& session, InstructionParent& parent, double dblPrincipal,
                            double dblInterest);

// The receipts family. Counts months by date, whether recovered or not, and raises the flags of those that it
// changes. The first failure ends an operation with its "Error in ..." box; what is written stays.
struct ReceiptDifference {
  double amount = 0;  // received more (above 0) or less, or the amount of the deleted receipt
  long lngFromMonth = 0;
  long lngToMonth = 0;
  bool blnDeleted = false;
};
void EMIModify(Session& session, InstructionParent& parent, const ReceiptDifference& difference);
void RedPrinciModify(Session& session, InstructionParent& parent, const ReceiptDifference& difference);
void RedIntModify(Session& session, InstructionParent& parent, const ReceiptDifference& difference);
void EMIModifyLastMonth(Session& session, InstructionParent& parent, const ReceiptDifference& difference);
void RedPrinciModifyLastMonth(Session& session, InstructionParent& parent,
                              const ReceiptDifference& difference);
void RedIntModifyLastMonth(Session& session, InstructionParent& parent, const ReceiptDifference& difference);
void AddRecoveryMonth(Session& session, InstructionParent& parent, double dblAmount);
void AddRecoveryMonthRed(Session& session, InstructionParent& parent, double dblPrincipal,
                         double dblInterest);

// Writes the interest of one month and the sum with its principal.
void WriteMonthInterest(Session& session, const InstructionKey& key, long monthYear, double interest);

}  // namespace ktl
