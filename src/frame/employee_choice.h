#pragma once

#include <functional>
#include <string>
#include <vector>

#include "screen/controls.h"

namespace ktl {

struct Session;

// The employee by name and by number: two lists of the same people that follow each other. The label over the
// name tells who has left.
class EmployeeChoice {
  Screen& screen_;  // the controls register with it

 public:
  EmployeeChoice(Session& session, Screen& screen, const char* numberBox = "cmbEmpIDRef");

  Label lblEmpName{screen_, "lblEmpName", "Employee Name"};
  ComboBox cmbEmpName{screen_, "cmbEmpName"};
  Label lblEmpIDRef{screen_, "lblEmpIDRef"};
  ComboBox cmbEmpIDRef;
  std::function<void()> onChosen;

  // The value of a row is EMPID. The choice stays.
  void SetPeople(std::vector<ListRow> byName, std::vector<ListRow> byNumber);
  long Employee() const { return employee_; }  // 0 for none
  std::string Words() const;                   // "Meera Kulkarni (K90908)"; "" for none

 private:
  void cmbEmpName_Change();
  void cmbEmpIDRef_Change();
  void ShowLeaving();

  Session& session_;
  long employee_ = 0;
};

}  // namespace ktl
