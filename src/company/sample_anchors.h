#pragma once

#include "company/sample_model.h"

namespace ktl {

// Employees 1 to 60, whose figures are worked out by hand.
SamplePerson AnchorPerson(int id);
std::vector<SampleInstruction> AnchorInstructions(int id);

// A month whose salary is given and not calculated.
struct GivenSalary {
  int employee;
  double gross, providentFund, professionTax, incomeTax, insurance;
};
// Of Sep/2026; null when it is calculated as any other.
const GivenSalary* GivenSalaryOf(int employee);

}  // namespace ktl
