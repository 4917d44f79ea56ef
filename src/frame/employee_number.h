#pragma once

#include <string>

namespace ktl {

struct Session;

// How the company tells its people apart in lists: by reference number when EMPREFNOYN is on, else by number.
struct EmployeeNumbering {
  const char* column;  // REFNO or EMPID
  std::string caption;
};
EmployeeNumbering NumberingOf(const Session& session);

// Whose months a screen shows.
struct EmployeeHeader {
  std::string number;  // by the company's numbering
  std::string name;
};
// Empty texts when there is no such employee.
EmployeeHeader ReadEmployeeHeader(Session& session, long employee);

}  // namespace ktl
