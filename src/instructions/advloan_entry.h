#pragma once

#include <optional>
#include <string>

#include "instructions/advloan_data.h"
#include "instructions/schedule.h"

namespace ktl {

// The texts that stand in the entry form.
struct TypedAdvLoan {
  std::string serial, name, account, date, amount, interest, remarks;
  std::string instalment, count, recoverFrom;
};

// The number that was typed as a serial number; 0 when it is not whole or too large for any table.
long TypedSerial(const std::string& text);

// An advance or a loan as it is to be given, rupees. What is typed is read here and nowhere else; the texts
// stay for the audit, which quotes them.
struct AdvLoanEntry {
  InstructionKey key;
  std::string caption;  // the company's word for the type
  NameRules rules;
  std::optional<long> institution;  // INSTID
  bool noRecovery = false;
  bool lumpSum = true;  // else by count
  InstalmentRounding rounding = InstalmentRounding::NearOneRupee;
  bool newRecord = false;
  bool amountByFormula = false;  // a number of formula months has been accepted
  TypedAdvLoan typed;

  // Of the texts; a text that is no number is 0.
  long serial = 0;                     // 0 when it is no serial number
  std::string name, account, remarks;  // trimmed
  std::optional<Date> date;
  double amount = 0;
  double interest = 0;
  double instalment = 0;
  std::optional<double> count;  // nothing when nothing is typed
  long firstMonth = 0;          // month-year, 0 when the text is no month

  void ReadTyped(TypedAdvLoan texts);

  double Total() const { return amount + interest; }
  // The schedule of it; the rate of a reducing name counts under advanced management alone.
  ScheduleTerms Terms(bool advancedManagement) const;
};

}  // namespace ktl
