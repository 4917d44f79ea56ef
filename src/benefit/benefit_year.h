#pragma once

#include <string>

namespace ktl {

struct Session;

// A financial year as the benefit is reckoned.
struct BenefitYear {
  std::string text;  // as the list of years has it: "2026 - 2027"
  std::string key;   // its first year, as the tables hold it
  long firstYear = 0;
  long closingYear = 0;  // by which the income tax counts
  long firstMonth = 0;
  long lastMonth = 0;
};

// Whether it begins in March or in April is read anew. The text is one of the list of years.
BenefitYear BenefitYearOf(Session& session, const std::string& text);

}  // namespace ktl
