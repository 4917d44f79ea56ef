#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/refusal.h"
#include "instructions/instruction_parent.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// What the tax declaration wants to know of the house behind a loan.

enum class HouseType : int { None = 0, SelfOccupied = 1, LetOut = 2, UnOccupied = 3 };  // HTYPE
std::string HouseTypeText(HouseType type);

struct HouseLoan {
  std::string address;
  HouseType type = HouseType::None;
  bool capitalBorrowed = false;  // the answer to the question of a self-occupied house
};

// A financial year of it, rupees.
struct HouseYear {
  long year = 0;  // in which it begins; 0 for none
  double principal = 0;
  double interest = 0;
  double annualValue = 0;
  double municipalTax = 0;
};
// "2026-2027"
std::string HouseYearText(long year);

std::vector<ListRow> ReadHouseTypes(Session& session);
// The years of the loan's schedule and those entered already. They begin with April, whatever the company's
// tax year is.
std::vector<ListRow> ReadYearsOfLoan(Session& session, const InstructionKey& key);
std::optional<HouseLoan> ReadHouseLoan(Session& session, const InstructionKey& key);
std::vector<HouseYear> ReadHouseYears(Session& session, const InstructionKey& key);
// The house and its years, as shown_rows.h has the others.
std::string HouseRows(Session& session, const InstructionKey& key);

enum class HouseField { None, Type, Year, Principal, Interest };
using HouseRefusal = Refusal<HouseField>;

// What stands against saving the house, in a fixed order. A self-occupied one is refused when another
// instruction of the type begins or ends within this one's months, with a house or without one; one whose
// months enclose them all passes.
std::optional<HouseRefusal> CheckHouseLoan(Session& session, const InstructionKey& key,
                                           const HouseLoan& house);
void WriteHouseLoan(Session& session, const InstructionKey& key, const HouseLoan& house);

std::optional<HouseRefusal> CheckHouseYear(Session& session, const InstructionKey& key,
                                           const HouseYear& year);
// Writes over a year that is there, and marks it for the tax side. A failure of the mark leaves the year.
void WriteHouseYear(Session& session, const InstructionKey& key, const HouseYear& year);
// The mark of the tax side stays.
void RemoveHouseYear(Session& session, const InstructionKey& key, long year);

std::optional<HouseRefusal> CheckHouseDelete(Session& session, const InstructionKey& key);
// The years, then the house.
void DeleteHouseLoan(Session& session, const InstructionKey& key);

}  // namespace ktl
