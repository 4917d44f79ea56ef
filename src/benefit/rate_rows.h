#pragma once

#include <optional>
#include <string>
#include <vector>

#include "benefit/benchmark_rate.h"
#include "frame/refusal.h"

namespace ktl {

struct Session;

// One rate as the table holds it.
struct RateRow {
  long id = 0;
  std::string year;  // its first year
  double rate = 0;   // percent
  std::string remarks;
  std::string loans;  // the names, each with a marker on both sides; empty on the default rate

  std::string YearText() const;  // "2026 - 2027"
};
std::vector<RateRow> ReadRates(Session& session);
long NextRateId(Session& session);
bool HasRates(Session& session, const std::string& year);
// What another workstation must not have changed while a rate of the year is worked on.
std::string RatesAsShown(Session& session, const std::string& year);

// A loan that can be named by a rate.
struct RateLoan {
  std::string number, name;
  bool ticked = false;
  bool taken = false;  // another rate of the year names it
};
// For the rate with that number and those remarks: which one it is, is found by the remarks alone.
std::vector<RateLoan> ReadRateLoans(Session& session, const std::string& year, const std::string& remarks,
                                    long id);

// A rate as typed.
struct TypedRate {
  std::string yearText;  // "" while none is chosen
  std::string rate;
  std::optional<std::string> remarks;  // none while they are hidden, as for the default rate
  std::vector<RateLoan> loans;
  std::string before;  // the rate of the row that is changed, "" for a new one

  std::string Year() const;
};
enum class RateField { None, Year, Rate, Remarks, Loans };
using RateRefusal = Refusal<RateField>;
std::optional<RateRefusal> CheckRate(const TypedRate& typed, const std::string& yearCaption);

// Writes the row of that number, a new one when the year has none of it. A number that another year has taken
// meanwhile becomes the next free one.
void SaveRate(Session& session, const TypedRate& typed, long id, bool isNew);

// The row that a typed rate means, found by year, rate and remarks; 0 when there is none.
long FindRate(Session& session, const TypedRate& typed, const std::string& remarks);
void DeleteRate(Session& session, const TypedRate& typed, long id);

}  // namespace ktl
