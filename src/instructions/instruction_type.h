#pragma once

#include <string>
#include <string_view>

namespace ktl {

struct Session;

// SITYPE, the kind of an instruction. 6 is not used.
enum class InstructionType : int {
  None = 0,  // of screens that are opened without a type; has no facts
  Advance = 1,
  Loan = 2,
  Insurance = 3,
  Sss = 4,
  GroupInsurance = 5,
  Incentive = 7,
};

// The type as a column holds it.
constexpr int NumberOf(InstructionType type) { return static_cast<int>(type); }

// Advances and loans stand in INS_ADVLOAN, all others in INS_OTHER.
constexpr bool IsAdvanceOrLoan(InstructionType type) {
  return type == InstructionType::Advance || type == InstructionType::Loan;
}

// Loans, insurance, SSS and group insurance name an institution month by month.
constexpr bool HasInstitution(InstructionType type) {
  return type >= InstructionType::Loan && type <= InstructionType::GroupInsurance;
}

// What differs from type to type.
struct TypeFacts {
  InstructionType type;
  std::string_view word;        // whatever the company calls the type: "Group Insurance"
  std::string_view table;       // of the instructions
  std::string_view nameColumn;  // of that table
  std::string_view
      salaryColumn;              // what a calculated salary took, "GRPINSURANCE"; also the word of some boxes
  std::string_view salaryHead;   // the same with the table in front, SE or SD: "SD.GRPINSURANCE"
  std::string_view receiptWord;  // "Receipt" of advances, "Deposit" of the others
  int report;                    // its number for the report program
  int masterPortCode;            // of the tax flags that a saved name marks, 0 for none
};

// Throws RuntimeError 5 for a type without facts.
const TypeFacts& FactsOf(InstructionType type);

// The word that the company shows the type under, "" when it has none.
std::string InstructionCaption(Session& session, InstructionType type);

}  // namespace ktl
