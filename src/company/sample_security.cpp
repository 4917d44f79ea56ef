#include "company/sample_security.h"

#include <fmt/format.h>

namespace ktl {
namespace {

// The numbers of a screen's buttons run on; a form's captions stand in their order. Without a caption a
// number is still known to the rights.
struct Buttons {
  int form;
  int first;
  std::initializer_list<const char*> captions;
};

const Buttons kButtons[] = {
    // Advances: entry, names, month view, multiple allotment, instalments, receipts.
    {48,
     198,
     {"Master", "Formula", "Save", "Delete", "Monthly", "Multiple Allotment", "Accept", "Formulate",
      "Delete EMI", "EMI", "Receipts"}},
    {49, 209, {"Save", "Delete"}},
    {50, 211, {"Save"}},
    {51, 212, {"Filter", "Save", "Master", "Formula", "Formulate", "Accept"}},
    {52, 218, {"Save", "Delete"}},
    {53, 220, {"Save", "Delete"}},
    // The same of loans.
    {54,
     222,
     {"Master", "Institution", "Formula", "Save", "Delete", "Monthly", "Multiple Allotment", "Accept",
      "Formulate", "Delete EMI", "EMI", "Deposits"}},
    {55, 234, {"Save", "Delete"}},
    {56, 236, {"Save"}},
    {57, 237, {"Filter", "Save", "Master", "Institution", "Formula", "Formulate", "Accept"}},
    {58, 244, {"Save", "Delete", "Institution"}},
    {59, 247, {"Save", "Delete"}},
    // Insurance, group insurance, SSS and incentives: entry, names, month view and instalments.
    {60, 249, {"Master", "Institution", "Save", "Delete", "Monthly", "Delete EMI", "EMI Details"}},
    {61, 256, {"Save", "Delete"}},
    {62, 258, {"Save"}},
    {63, 259, {"Save", "Delete", "Institution"}},
    {64,
     262,
     {"Master", "Institution", "Save", "Delete", "Monthly", "Multiple Allotment", "Delete EMI",
      "EMI Details"}},
    {65, 270, {"Save", "Delete"}},
    {66, 272, {"Save"}},
    {67, 273, {"Save", "Delete", "Institution"}},
    {69, 280, {"Master", "Institution", "Save", "Delete", "Monthly", "Delete EMI", "EMI Details"}},
    {70, 287, {"Save", "Delete"}},
    {71, 289, {"Save"}},
    {72, 290, {"Save", "Delete", "Institution"}},
    {73, 293, {"Master", "Save", "Delete", "Monthly", "Multiple Allotment", "Delete EMI", "EMI Details"}},
    {74, 300, {"Save", "Delete"}},
    {75, 302, {"Save"}},
    {76, 303, {"Save", "Delete"}},
    // The month view of all types, and the summary.
    {78, 341, {"Save"}},
    {79, 612, {"Summary"}},
};

void WriteButtons(SqliteDatabase& database) {
  RowWriter write(database, "SEC_BUTDET (BUTID, FORMID, BUTNAME)");
  for (const auto& buttons : kButtons) {
    int number = buttons.first;
    for (const char* caption : buttons.captions) write(number++, buttons.form, caption);
  }
}

void WriteLockHistory(SqliteDatabase& database) {
  constexpr int kUnknownUser = 99;
  RowWriter write(database, "SEC_MONTHLOCKHISTORY (MONTHYEAR, LOCKEDYN, UNAME, CHANGEDDATE, KTLUSERID)");
  for (int month = kFirstMonth; month <= kLastLockedMonth; ++month) {
    write(month, 1, "PAYROLL-01", fmt::format("2025-04-{:02} 10:15:00", 10 + month - kFirstMonth), 1);
  }
  write(kLastLockedMonth, 0, "PAYROLL-02", "2025-05-05 09:30:00", 2);
  write(kLastLockedMonth, 1, "PAYROLL-02", "2025-05-05 17:45:00", 2);
  write(kLastLockedMonth - 1, 1, "PAYROLL-09", "2025-05-06 11:00:00", kUnknownUser);
}

void WriteEmployeeLocks(SqliteDatabase& database, int employees) {
  RowWriter write(database, "SEC_EMPLOCK (EMPID, MONTHYEAR, LOCKYN)");
  for (int month = MonthNo(2026, 9); month <= kLastMonth; ++month) write(10, month, 1);
  write(11, MonthNo(2026, 9), 0);
  for (int id = 111; id <= employees; id += 200) {
    for (int month = MonthNo(2026, 8); month <= MonthNo(2026, 10); ++month) write(id, month, 1);
  }
}

}  // namespace

void WriteSecurity(SqliteDatabase& database, int employees) {
  database.RunScript(R"sql(
UPDATE SEC_USERLIST SET MULTILOGIN = 1 WHERE UserID = 1;
INSERT INTO SEC_USERLIST (UserID, USERNAME, GROUPID, READONLYYN, MULTILOGIN) VALUES
  (2, 'PAYCLERK', 2, 0, 0), (3, 'VIEWER', 3, 1, 0), (4, 'BRANCH1', 2, NULL, 0);
INSERT INTO SEC_BUTPER (BUTID, GROUPID, BUTALLOWYN) VALUES
  (200, 2, 1), (201, 2, 0), (225, 2, NULL), (226, 2, 0), (612, 2, 0);
)sql");
  WriteButtons(database);
  WriteLockHistory(database);
  WriteEmployeeLocks(database, employees);
}

void WriteClassSecurity(SqliteDatabase& database) {
  database.RunScript(
      "INSERT INTO SEC_CLASSEMP (USERNAME, EMPID) "
      "SELECT DISTINCT 'BRANCH1', EMPID FROM MAS_EMPLOYEEDET WHERE BRANCHID = 1 ORDER BY EMPID");
}

}  // namespace ktl
