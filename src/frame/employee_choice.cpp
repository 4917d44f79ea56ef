#include "frame/employee_choice.h"

#include "frame/handler_guard.h"
#include "frame/session.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr Colour kWarningColour = 0x2020C0;

}  // namespace

EmployeeChoice::EmployeeChoice(Session& session, Screen& screen, const char* numberBox)
    : screen_(screen), cmbEmpIDRef(screen, numberBox), session_(session) {
  const HandlerGuard on(session, *this, ErrorStyle::NumberFirst);
  cmbEmpName.onChange = on(&EmployeeChoice::cmbEmpName_Change);
  cmbEmpIDRef.onChange = on(&EmployeeChoice::cmbEmpIDRef_Change);
  cmbEmpName.beside = &cmbEmpIDRef;
  cmbEmpIDRef.beside = &cmbEmpName;
}

void EmployeeChoice::SetPeople(std::vector<ListRow> byName, std::vector<ListRow> byNumber) {
  cmbEmpName.SetRows(std::move(byName));
  cmbEmpIDRef.SetRows(std::move(byNumber));
}

std::string EmployeeChoice::Words() const {
  return employee_ == 0 ? "" : cmbEmpName.Text() + " (" + cmbEmpIDRef.Text() + ")";
}

void EmployeeChoice::cmbEmpName_Change() {
  employee_ = static_cast<long>(Val(cmbEmpName.BoundText()));
  ShowLeaving();
  cmbEmpIDRef.SetBoundText(cmbEmpName.BoundText());
  if (onChosen) onChosen();
}

void EmployeeChoice::cmbEmpIDRef_Change() {
  if (cmbEmpIDRef.BoundText() != cmbEmpName.BoundText()) cmbEmpName.SetBoundText(cmbEmpIDRef.BoundText());
}

void EmployeeChoice::ShowLeaving() {
  std::optional<Date> left;
  if (employee_ != 0) {
    left = DateIfAny(session_.data.FnVarGetDbValue(
        session_.Sql("select DOL from mas_employee where empid= {}", employee_), ""));
  }
  lblEmpName.caption = left ? " Employee Left " : "Employee Name";
  lblEmpName.foreColour = left ? kWarningColour : kNoColour;
  lblEmpName.toolTip = left ? FormatDate(*left, "dd/mmm/yyyy") : "";
}

}  // namespace ktl
