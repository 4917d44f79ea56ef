#pragma once

#include "company/sample_model.h"

namespace ktl {

// How the rows of an instruction came about.
enum class SampleOrigin {
  Flat,      // the entry screen, no interest apart
  Reducing,  // the entry screen, interest on the balance of each month
  Batch,     // multiple allotment: no principal is written
  Apart,     // the interest editor: principal and interest in all six columns
};

struct SampleTerms {
  SampleOrigin origin = SampleOrigin::Flat;
  int firstMonth = 0;
  double total = 0;       // to be recovered, without the interest of Reducing and Apart
  double instalment = 0;  // the last one takes what is left
  double percent = 0;     // a month for Reducing, a year for Apart
  int institution = 0;
};

std::vector<SampleInstalment> MakeSchedule(const SampleTerms& terms);

// The total interest of an instruction whose months carry interest: kept in the instruction as the plain sum,
// and for a name with a reducing balance in the months' own interest as well, so that the refresh of totals
// changes nothing.
void TotalInterest(SampleInstruction& instruction);

}  // namespace ktl
