#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "instructions/advloan_data.h"
#include "instructions/instruction_parent.h"
#include "instructions/schedule.h"
#include "screen/grid_list.h"

namespace ktl {

// The lists of the entry of advances and loans. Their colours tell what the rows say; amounts count as they
// are shown, to the paisa.

inline constexpr Colour kRecoveredColour = 0xC0FFC0;  // also "Amount Paid"
inline constexpr Colour kRecoveryEqualColour = 0xFFC0C0;
inline constexpr Colour kRecoveryUnequalColour = 0xB0B0FF;

double AsShown(const std::optional<double>& amount);
double SumAsShown(const std::vector<ScheduleMonth>& months, ScheduleMonth::Amount ScheduleMonth::*amount);

// An employee's instructions.
class InstructionGrid {
 public:
  // The account is shown of loans only.
  enum Column : std::size_t {
    kSerial,
    kName,
    kAccount,
    kDate,
    kAmount,
    kInterest,
    kEmi,
    kRecovered,
    kReceipts,
    kRemarks
  };

  explicit InstructionGrid(Grid& grid) : grid_(grid), list_(grid) {}

  void Describe(InstructionType type, const std::string& caption);
  void Show(std::vector<AdvLoanListRow> rows, long serial);
  // The instruction of the serial number becomes the active line; 0 for none.
  void Mark(long serial);
  const AdvLoanListRow* Active() const { return list_.Active(); }
  InstructionTotals TotalsOf(long serial) const;

 private:
  void Paint(std::size_t line, const AdvLoanListRow& row);

  Grid& grid_;
  GridList<AdvLoanListRow> list_;
};

// The schedule of one instruction.
class ScheduleGrid {
 public:
  // The institution is shown of loans only.
  enum Column : std::size_t {
    kTick,
    kCounter,
    kMonth,
    kRecovered,
    kActualPrincipal,
    kActualInterest,
    kActualAmount,
    kModifiedPrincipal,
    kModifiedInterest,
    kInterestAmount,
    kModifiedAmount,
    kInstitution
  };

  explicit ScheduleGrid(Grid& grid) : grid_(grid), list_(grid) {}

  void Describe(InstructionType type);
  // The principal and interest of the months, and the interest of a reducing balance.
  void ShowColumns(bool apart, bool reducing);
  void Lock(bool locked);  // both ticks of every month
  void Show(std::vector<ScheduleMonth> months);
  // As a person has marked the line.
  void ShowStored(std::size_t line) { list_.ShowAgain(line); }
  void SetRecovered(std::size_t line, bool recovered);
  void TickAllOpen(bool ticked);

  const ScheduleMonth& At(std::size_t line) const { return *list_.At(line); }
  bool AnyRecovered() const { return !RecoveredMonths().empty(); }
  std::set<long> RecoveredMonths() const;
  std::vector<ScheduleMonth> Ticked() const;
  // Neither ticked nor recovered.
  std::vector<OpenMonth> OpenMonths() const;

 private:
  void Paint(std::size_t line, const ScheduleMonth& month);

  Grid& grid_;
  GridList<ScheduleMonth> list_;
};
}  // namespace ktl
