#pragma once

#include <functional>
#include <vector>

#include "screen/controls.h"

namespace ktl {

struct Session;

// The employee by name and by number: two lists of the same people that follow each other. The label over the
// name tells who has left.
class EmployeeChoice {
 public:
  EmployeeChoice(Session& session, Screen& screen);

  Label lblEmpName;
  ComboBox cmbEmpName;
  Label lblEmpIDRef;
  ComboBox cmbEmpIDRef;
  std::function<void()> onChosen;

  // The value of a row is EMPID. The choice stays.
  void SetPeople(std::vector<ListRow> byName, std::vector<ListRow> byNumber);
  long Employee() const { return employee_; }  // 0 for none

 private:
  void cmbEmpName_Change();
  void cmbEmpIDRef_Change();
  void ShowLeaving();

  Session& session_;
  long employee_ = 0;
};

}  // namespace ktl
