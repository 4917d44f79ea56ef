#pragma once

#include <string>
#include <string_view>

#include "common/statement.h"

namespace ktl {

class Button;
class Screen;
struct Session;

// Marks the tags of the screen's command buttons with the rights of the user's group: "NA" behind the number
// means refused. Nothing for ADMIN, or when rights are not enforced.
void ApplyButtonRights(Session& session, Screen& screen, long formId);
// True when the press is refused; the message has been shown by then.
bool FnBlnPermitted(Session& session, const Button& button);

bool FnBlnAuditOn(Session& session);  // asked once a session
// Menu numbers: this program's; month locks have 5.
inline constexpr long kInstructionsMenu = 19;
// The caller asks FnBlnAuditOn first. Employee 0 is nobody's.
void WriteAuditTrail(Session& session, long menuNumber, long employee, std::string_view action,
                     std::string_view detail, std::string_view extra = "");
// What every writer of instructions ends in: what was done ("Loan Created/Updated") and its detail, of the
// employee (0 for nobody's). Nothing while the audit is off; a detail that costs statements is for the caller
// to spare then. The title begins with what it was done under.
void AuditInstruction(Session& session, long employee, std::string_view deed, const std::string& detail,
                      std::string_view under = "Standing Instructions");

// Why nothing may be written for the employee chosen: what a disabled button tells. "" when it may.
std::string WhyReadOnly(const Session& session);
// lockyn of the employee; the second one keeps it in the session, as that of the employee chosen.
long EmpLockStatusOf(Session& session, long employee);
long ReadEmpLockStatus(Session& session, long employee);
// True when the employee is locked in one of the months; lastMonth is the text as the statement takes it
// ("DEFAULT").
bool IsEmployeeLocked(Session& session, long employee, long firstMonth, const std::string& lastMonth);

// The condition that leaves the employees that the user may see, "LEAD IN (SELECT ...)", or nothing when
// class security is off. Fills the workstation's table first.
Statement ClassSecurityCondition(Session& session, std::string_view lead = " WHERE EMPID ",
                                 bool forNewestMonth = true);

}  // namespace ktl
