#pragma once

#include <functional>
#include <string>

#include "database/recordset.h"

namespace ktl {

struct Session;

// What the formula engine's tokens say of one employee: the texts of one detail row, and the dates as
// "dd/MMM/yyyy".
struct EmployeeDetail {
  std::string DESIGNATION;
  std::string OCCUPATION;
  std::string DEPARTMENT;
  std::string DIVISION;
  std::string GRADE;
  std::string BRANCHNAME;
  std::string ATTHEADNAME;
  std::string STRUCTDESC;

  std::string DOJ;
  std::string DOL;
  std::string DOB;
  std::string SALCALCFROM;
  std::string RETIREMENTDATE;
  std::string RESIGNATIONDATE;
  std::string CONFIRMATIONDATE;
};

// Into the session's employeeDetail; what is not found or null is empty.
void LoadEmployeeDetail(Session& session, long empId, long empDetId);  // and the dates
void LoadEmployeeDates(Session& session, long empId);

// The same with what stands in the statements for the numbers, for whoever reads many employees at once.
using OpenRows = std::function<Recordset(const std::string& sql)>;
void LoadEmployeeDetail(Session& session, const std::string& empId, const std::string& empDetId,
                        const OpenRows& open);
void LoadEmployeeDates(Session& session, const std::string& empId, const OpenRows& open);

}  // namespace ktl
