#include "frame/employee_detail.h"

#include <fmt/format.h>

#include "frame/session.h"

namespace ktl {

namespace {

std::string DateText(const Value& value) {
  if (value.IsNull()) return "";
  return value.IsDate() ? FormatDate(value.date(), "DD/MMM/YYYY")
                        : FormatDateText(value.ToText(), "DD/MMM/YYYY");
}

OpenRows RowsOf(Session& session) {
  return [&session](const std::string& sql) { return Recordset(session.Cn, sql); };
}

}  // namespace

void LoadEmployeeDetail(Session& session, long empId, long empDetId) {
  LoadEmployeeDetail(session, std::to_string(empId), std::to_string(empDetId), RowsOf(session));
}

void LoadEmployeeDates(Session& session, long empId) {
  LoadEmployeeDates(session, std::to_string(empId), RowsOf(session));
}

void LoadEmployeeDetail(Session& session, const std::string& empId, const std::string& empDetId,
                        const OpenRows& open) {
  EmployeeDetail detail;
  const Recordset row = open(fmt::format(
      "Select ED.*,BRANCHNAME, ATTHEADNAME, STRUCTDESC From MAS_EMPLOYEEDET ED "
      "INNER JOIN MAS_BRANCH MB ON ED.BRANCHID = MB.BRANCHID "
      "INNER JOIN MAS_ATTHEAD MA ON MA.ATTHEADID = ED.ATTHEADID "
      "INNER JOIN MAS_SALSTRUCT MS ON MS.STRUCTID = ED.STRUCTID Where EMPID = {} And EMPDETID = {}",
      empId, empDetId));
  if (!row.Eof()) {
    detail.DESIGNATION = row["DESIGNATION"].TextOrEmpty();
    detail.OCCUPATION = row["OCCUPATION"].TextOrEmpty();
    detail.DEPARTMENT = row["DEPARTMENT"].TextOrEmpty();
    detail.DIVISION = row["DIVISION"].TextOrEmpty();
    detail.GRADE = row["GRADE"].TextOrEmpty();
    detail.BRANCHNAME = row["BRANCHNAME"].TextOrEmpty();
    detail.ATTHEADNAME = row["ATTHEADNAME"].TextOrEmpty();
    detail.STRUCTDESC = row["STRUCTDESC"].TextOrEmpty();
  }
  session.employeeDetail = detail;
  LoadEmployeeDates(session, empId, open);
}

void LoadEmployeeDates(Session& session, const std::string& empId, const OpenRows& open) {
  EmployeeDetail& detail = session.employeeDetail;
  const Recordset row =
      open(fmt::format("Select DOJ, DOL, DOB, SALCALCFROM, RETIREMENTDATE, RESIGNATIONDATE, CONFIRMATIONDATE "
                       "From MAS_EMPLOYEE Where EMPID = {}",
                       empId));
  const auto date = [&](std::string_view column) {
    return row.Eof() ? std::string() : DateText(row[column]);
  };
  detail.DOJ = date("DOJ");
  detail.DOL = date("DOL");
  detail.DOB = date("DOB");
  detail.SALCALCFROM = date("SALCALCFROM");
  detail.RETIREMENTDATE = date("RETIREMENTDATE");
  detail.RESIGNATIONDATE = date("RESIGNATIONDATE");
  detail.CONFIRMATIONDATE = date("CONFIRMATIONDATE");
}

}  // namespace ktl
