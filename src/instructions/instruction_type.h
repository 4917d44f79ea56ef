#pragma once

#include <string>

namespace ktl {

struct Session;

// SITYPE, the kind of an instruction. 6 is not used.
inline constexpr int kAdvanceType = 1;
inline constexpr int kLoanType = 2;
inline constexpr int kInsuranceType = 3;
inline constexpr int kSssType = 4;
inline constexpr int kGroupInsuranceType = 5;
inline constexpr int kIncentiveType = 7;

// Advances and loans stand in INS_ADVLOAN, all others in INS_OTHER.
constexpr bool IsAdvanceOrLoan(int siType) { return siType == kAdvanceType || siType == kLoanType; }

// Loans, insurance, SSS and group insurance name an institution month by month.
constexpr bool HasInstitution(int siType) { return siType >= kLoanType && siType <= kGroupInsuranceType; }

// The word that the company shows the type under, "" when it has none.
std::string InstructionCaption(Session& session, int siType);

}  // namespace ktl
