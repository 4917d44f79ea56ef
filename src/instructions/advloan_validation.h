#pragma once

#include <functional>
#include <optional>
#include <string>

#include "instructions/advloan_data.h"
#include "instructions/schedule.h"
#include "screen/desk.h"

namespace ktl {

struct Session;

// What stands in the entry form, as typed.
struct AdvLoanEntry {
  InstructionKey key;
  std::string caption;  // the company's word for the type
  std::string serialText;
  std::string name;
  std::string institution;  // bound INSTID, "" when it matches nothing
  std::string account;
  std::string date;
  std::string amount;
  std::string interest;
  std::string remarks;
  bool noRecovery = false;
  bool lumpSum = true;  // else by count
  std::string instalment;
  std::string count;
  InstalmentRounding rounding = InstalmentRounding::NearOneRupee;
  std::string recoverFrom;
  bool newRecord = false;
  bool amountByFormula = false;  // a number of formula months has been accepted
  NameRules rules;

  double Amount() const;
  double Interest() const;
  double Instalment() const;
  long RecoverFromMonth() const;  // 0 when the text is no month
};

enum class EntryField {
  None,
  EmployeeName,
  Name,
  Institution,
  Account,
  Serial,
  Date,
  Amount,
  Interest,
  Instalment,
  Count,
  RecoverFrom,
};

// The first thing that stands against a save. A question answered with No leaves no text.
struct Refusal {
  std::string text;
  EntryField focus = EntryField::None;
  std::string title;  // "" for the application's own
};

// A question between the checks; true goes on.
using AskToContinue = std::function<bool(const std::string& text, Icon icon, Answer preset)>;

// All checks before a save, in their fixed order; nothing when the entry may be written. Nothing is changed.
std::optional<Refusal> ValidateAdvLoan(Session& session, const AdvLoanEntry& entry, const AskToContinue& ask);

}  // namespace ktl
