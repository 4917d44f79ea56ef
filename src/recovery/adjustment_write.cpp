#include "recovery/adjustment_write.h"

#include <algorithm>

#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "runtime/errors.h"

namespace ktl {

namespace {

using RunStatement = std::function<void(const Statement&)>;

Statement ConditionOf(Session& session, const InstructionKey& key, long monthYear) {
  return session.Sql("Where EMPID={} AND SITYPE={} AND MONTHYEAR={} AND SERIALNO = {}", key.employee,
                     key.type, monthYear, key.serial);
}

// "Update INS_EMIDETAIL SET MDFYAMT = 100 Where ..."
Statement SetStatement(Session& session, const char* column, double amount, const Statement& condition) {
  return session.Sql("Update INS_EMIDETAIL SET {} = {} {}", Statement(column), amount, condition);
}

Statement SumStatement(Session& session, double amount, const char* otherColumn, const Statement& condition) {
  return session.Sql(
      "Update INS_EMIDETAIL SET MDFYAMT = {0} + (SELECT ISNULL({1}, 0) FROM INS_EMIDETAIL {2} ) {2}", amount,
      Statement(otherColumn), condition);
}

// The component and, of a reducing instruction, the sum of both.
void WriteComponent(Session& session, Component component, double amount, const Statement& condition,
                    const RunStatement& run) {
  switch (component) {
    case Component::Amount:
      return run(SetStatement(session, "MDFYAMT", amount, condition));
    case Component::Principal:
      run(SetStatement(session, "MDFPRNAMT", amount, condition));
      return run(SumStatement(session, amount, "MDFINTAMT", condition));
    case Component::Interest:
      run(SetStatement(session, "MDFINTAMT", amount, condition));
      return run(SumStatement(session, amount, "MDFPRNAMT", condition));
  }
}

bool Ask(Session& session, AdjustmentQuestion question) {
  if (question == AdjustmentQuestion::MakeItZero) {
    return session.desk.Confirm("EMI will be adjusted in negative amount. Do you want to make it zero?",
                                session.title, Answer::Yes);
  }
  return session.desk.Confirm("Adjustment Amount is negative \r\n\r\nDo you want to Continue", session.title,
                              Answer::Yes, Icon::Exclamation);
}

void SpreadInEditor(Session& session, InstructionParent& parent, Component component,
                    const EditorDifference& difference) {
  using Mode = EditorDifference::Mode;
  const InstructionKey key = parent.Key();
  const auto months = AdjustableMonths(ReadEmiMonths(session, parent), component);
  const bool saving = difference.mode == Mode::Save;
  if (difference.activeRow >= months.size()) return;
  const auto run = [&session](const Statement& sql) { session.data.ExecuteSql(sql); };
  const auto write = [&](const MonthChange& change) {
    const Statement condition = ConditionOf(session, key, change.monthYear);
    WriteComponent(session, component, change.amount, condition, run);
    if (saving && component == Component::Amount && change.amount == 0)
      run(SetStatement(session, "INTAMT", change.amount, condition));
  };
  const AdjustmentHooks hooks{[&session](AdjustmentQuestion question) { return Ask(session, question); },
                              write};
  if (!saving) {
    SpreadDifference(months, difference.activeRow, difference.amount, kEditorDeleteRules, hooks);
    return;
  }
  const SpreadOutcome outcome = SpreadDifference(
      months, difference.activeRow + 1, difference.amount - months[difference.activeRow].amount,
      component == Component::Interest ? kEditorSaveInterestRules : kEditorSaveRules, hooks);
  if (outcome.madeZero && outcome.left != 0)
    session.desk.MsgBox({.text = "Adjust value", .icon = Icon::None, .title = session.title});
}

// Runs a walk of the receipts family on one component; its failure is told in the family's words.
void WalkReceipt(
    Session& session, InstructionParent& parent, Component component, const char* errorText,
    const std::function<void(const std::vector<AdjustableMonth>&, const AdjustmentHooks&)>& walk) {
  const InstructionKey key = parent.Key();
  const auto run = [&session](const Statement& sql) { session.Cn.Execute(sql); };
  const auto write = [&](const MonthChange& change) {
    const Statement condition = ConditionOf(session, key, change.monthYear);
    if (change.deleted) {
      run(session.Sql("DELETE FROM INS_EMIDETAIL {}", condition));
    } else {
      WriteComponent(session, component, change.amount, condition, run);
    }
    if (change.flagged) RaiseFlags(session, key, change.monthYear);
  };
  try {
    walk(AdjustableMonths(ReadEmiMonths(session, parent), component),
         {[&session](AdjustmentQuestion question) { return Ask(session, question); }, write});
  } catch (const RuntimeError&) {
    session.desk.ShowError(errorText, session.title);
  }
}

void SpreadReceipt(Session& session, InstructionParent& parent, Component component,
                   const ReceiptDifference& difference) {
  WalkReceipt(session, parent, component, "Error in EMIModify", [&](const auto& months, const auto& hooks) {
    SpreadDifference(months, FirstMonthFrom(months, difference.lngFromMonth), difference.amount,
                     difference.blnDeleted ? kReceiptDeleteRules : kReceiptSaveRules, hooks);
  });
}

void TakeReceiptFromEnd(Session& session, InstructionParent& parent, Component component,
                        EmptiedMonth emptied, const ReceiptDifference& difference) {
  WalkReceipt(session, parent, component, "Error in EMIModifyLastMonth",
              [&](const auto& months, const auto& hooks) {
                TakeFromEnd(months, difference.amount, difference.lngFromMonth, difference.lngToMonth,
                            emptied, hooks);
              });
}

// The month added, 0 when none was.
long AddMonth(Session& session, InstructionParent& parent, NewMonth month) {
  if (month.amount <= 0) {
    session.Inform("EMI Adjusted Amount is Negative");
    return 0;
  }
  month.counter = parent.FnLngGetCounter();
  return AddMonthAtEnd(session, parent.Key(), month);
}

}  // namespace

void AdjustFutureMonths(Session& session, InstructionParent& parent, const EditorDifference& difference) {
  SpreadInEditor(session, parent, Component::Amount, difference);
}

void AdjustFuturePrincipal(Session& session, InstructionParent& parent, const EditorDifference& difference) {
  SpreadInEditor(session, parent, Component::Principal, difference);
}

void AdjustFutureInterest(Session& session, InstructionParent& parent, const EditorDifference& difference) {
  SpreadInEditor(session, parent, Component::Interest, difference);
}

void CreateRecoveryMonth(Session& session, InstructionParent& parent, double dblAmount) {
  AddMonth(session, parent, {.amount = dblAmount});
}

void CreateRecoveryMonthRed(Session& session, InstructionParent& parent, double dblPrincipal,
                            double dblInterest) {
  const long added =
      AddMonth(session, parent,
               {.amount = dblPrincipal,
                .furtherColumns = Statement(",ACTPRNAMT,MDFPRNAMT,ACTINTAMT,MDFINTAMT"),
                .furtherValues = session.Sql(",{0},{0},{1},{1}", dblPrincipal, std::max(dblInterest, 0.0))});
  if (added != 0)
    session.Cn.Execute(
        SumStatement(session, dblPrincipal, "MDFINTAMT", ConditionOf(session, parent.Key(), added)));
}

void EMIModify(Session& session, InstructionParent& parent, const ReceiptDifference& difference) {
  SpreadReceipt(session, parent, Component::Amount, difference);
}

void RedPrinciModify(Session& session, InstructionParent& parent, const ReceiptDifference& difference) {
  SpreadReceipt(session, parent, Component::Principal, difference);
}

void RedIntModify(Session& session, InstructionParent& parent, const ReceiptDifference& difference) {
  SpreadReceipt(session, parent, Component::Interest, difference);
}

void EMIModifyLastMonth(Session& session, InstructionParent& parent, const ReceiptDifference& difference) {
  TakeReceiptFromEnd(session, parent, Component::Amount, EmptiedMonth::Deleted, difference);
}

void RedPrinciModifyLastMonth(Session& session, InstructionParent& parent,
                              const ReceiptDifference& difference) {
  TakeReceiptFromEnd(session, parent, Component::Principal, EmptiedMonth::Deleted, difference);
}

void RedIntModifyLastMonth(Session& session, InstructionParent& parent, const ReceiptDifference& difference) {
  TakeReceiptFromEnd(session, parent, Component::Interest, EmptiedMonth::Kept, difference);
}

void AddRecoveryMonth(Session& session, InstructionParent& parent, double dblAmount) {
  const long added = AddMonth(session, parent, {.amount = dblAmount});
  if (added != 0) RaiseFlags(session, parent.Key(), added);
}

void AddRecoveryMonthRed(Session& session, InstructionParent& parent, double dblPrincipal,
                         double dblInterest) {
  const long added = AddMonth(session, parent,
                              {.amount = dblPrincipal + dblInterest,
                               .furtherColumns = Statement(",ACTPRNAMT,ACTINTAMT,MDFPRNAMT,MDFINTAMT"),
                               .furtherValues = session.Sql(",{0},{1},{0},{1}", dblPrincipal, dblInterest)});
  if (added != 0) RaiseFlags(session, parent.Key(), added);
}

void WriteMonthInterest(Session& session, const InstructionKey& key, long monthYear, double interest) {
  const Statement condition = session.Sql("WHERE SITYPE={} AND EMPID = {} AND SERIALNO = {} AND MONTHYEAR={}",
                                          key.type, key.employee, key.serial, monthYear);
  session.Cn.Execute(session.Sql("UPDATE INS_EMIDETAIL SET MDFINTAMT={} {}", interest, condition));
  session.Cn.Execute(SumStatement(session, interest, "MDFPRNAMT", condition));
}

}  // namespace ktl
