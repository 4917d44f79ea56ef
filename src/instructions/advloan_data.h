#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "instructions/instruction_parent.h"
#include "runtime/date.h"
#include "runtime/value.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// The rules of a name of INS_MASTER. All are 0 when the name is not there.
struct NameRules {
  double AMTLIMIT = 0;
  long ALLOWLIMIT = 0;
  long EMIRECCNT = 0;
  double INTRRATE = 0;
  bool REDUCINGBALYN = false;
};

// One row of the list of an employee's instructions.
struct AdvLoanListRow {
  long serial = 0;
  std::string name;
  std::string account;
  Value date;
  double amount = 0;
  double interest = 0;
  double emi = 0;          // sum of the modified instalments
  double emiInterest = 0;  // their interest, of a reducing name only
  double receipts = 0;
  double recovered = 0;

  std::string remarks;

  bool RecoveryEqualsPayment() const { return recovered + receipts == amount + interest; }
};

// One month of a schedule.
struct EmiRow {
  long counter = 0;
  long monthYear = 0;
  Value emiAmount, modifiedAmount, interest;
  Value actualPrincipal, actualInterest, modifiedPrincipal, modifiedInterest;
  std::string institution;
  bool markedRecovered = false;    // EMIRECVYN
  bool recoveredBySalary = false;  // a calculated salary has taken it

  bool IsRecovered() const { return markedRecovered || recoveredBySalary; }
};

struct AdvLoanDetail {
  std::string name, account, remarks;
  Value date;
  double amount = 0;
  double interest = 0;
  std::string institution;  // of a loan whose months have one and the same lender, else ""
};

struct AdvLoanTotals {
  double amount = 0;
  double interest = 0;
  double receipts = 0;    // receipts plus the months marked as recovered by hand
  double fromSalary = 0;  // deducted in calculated salaries
  double Due() const { return amount + interest - (receipts + fromSalary); }
};

// The column of SLC_SALARYCALC_D for advances and loans.
std::string_view SalaryHeadOf(int siType);
// "Advance" or "Loan", as audit texts have it whatever the company calls the type.
std::string_view AuditWordOf(int siType);

std::vector<ListRow> ReadEmployees(Session& session, bool withRunningEmi, std::string_view orderBy);
std::vector<ListRow> ReadNames(Session& session);
std::vector<ListRow> ReadInstitutions(Session& session);
std::vector<ListRow> ReadFormulas(Session& session);

bool NameExists(Session& session, std::string_view name);
NameRules ReadNameRules(Session& session, std::string_view name);
bool ReadSepPiYN(Session& session, std::string_view name);
bool MayHaveHouseLoan(Session& session, long employee, std::string_view name);

std::optional<AdvLoanDetail> ReadAdvLoan(Session& session, const InstructionKey& key);
std::vector<AdvLoanListRow> ReadAdvLoanList(Session& session, long employee);
std::vector<EmiRow> ReadSchedule(Session& session, const InstructionKey& key);
AdvLoanTotals ReadTotals(Session& session, long employee);

// The employee's next serial number of the session's type.
long NextSerial(Session& session, long employee);
// Nothing while the employee is in service.
std::optional<Date> ReadDateOfLeaving(Session& session, long employee);

}  // namespace ktl
