#pragma once

#include "instructions/instruction_parent.h"
#include "support/workstation.h"

namespace ktl {

// What the children need of an entry screen: the figures of one instruction of employee 17, as they stood at
// the last refresh.
class SmallParent final : public InstructionParent {
 public:
  SmallParent(Session& session, InstructionKey instruction, bool apart);

  InstructionKey Key() const override { return key; }
  std::string InstructionName() const override { return "Car Loan"; }
  InstructionTotals Totals() const override { return totals_; }
  std::set<long> RecoveredMonths() const override { return recovered_; }
  bool ComponentsApart() const override { return reducing; }
  void RefreshDetail() override;
  void RefreshEMI() override;
  void RefreshReceipts() override {}
  void UpdateOverview() override {}
  long FnLngGetCounter() override;

  InstructionKey key;
  bool reducing;
  int countersAsked = 0;

 private:
  Session& session_;
  InstructionTotals totals_;
  std::set<long> recovered_;
};

inline constexpr int kApr2024 = 24292;

// A company with employee 17, the months Apr/2024 to Mar/2027, and instructions with serial number 1.
class RecoveryTest : public WorkstationTest {
 protected:
  RecoveryTest();

  // Of 01/Apr/2024, those with institutions of Deccan Bank; a month an amount from Apr/2024 on. Of a
  // reducing one the amounts are principals, each with that interest.
  SmallParent& Instruction(InstructionType type, const std::vector<double>& amounts);
  SmallParent& Reducing(const std::vector<double>& principals, double interest);
  // The same as the entry screen makes it: no components, INTAMT alone.
  SmallParent& ReducingAsMade(const std::vector<double>& principals, double interest);
  void TakeComponentsAway();
  void Clear();               // takes every instruction and flag away
  void Recovered(int month);  // marked by hand
  // "1000 700 1075": the modified amounts in the order of the months; another column when named.
  std::string Amounts(const std::string& column = "MDFYAMT");
  // The months that the salary side is to calculate again, as numbers behind Apr/2024: "0 2 3".
  std::string Flagged();
  bool AuditHas(const std::string& text) { return LastAudit().find(text) != std::string::npos; }
  // Opens a screen on the parent.
  template <typename ScreenType>
  ScreenType& Open() {
    return Workstation::Open<ScreenType>(*parent);
  }

  std::unique_ptr<SmallParent> parent;

 private:
  void AddInstruction(InstructionType type, double total);
};

}  // namespace ktl
