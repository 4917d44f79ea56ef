#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "instructions/instruction_parent.h"
#include "instructions/schedule_month.h"
#include "runtime/date.h"

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

// One row of the list of an employee's instructions, rupees.
struct AdvLoanListRow {
  long serial = 0;
  std::string name;
  std::string account;
  std::optional<Date> date;
  double amount = 0;
  double interest = 0;
  double emi = 0;          // sum of the modified instalments
  double emiInterest = 0;  // their interest, of a reducing name only
  double receipts = 0;
  double recovered = 0;
  std::string remarks;

  bool RecoveryEqualsPayment() const { return recovered + receipts == amount + interest; }
};

struct AdvLoanDetail {
  std::string name, account, remarks;
  std::optional<Date> date;
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

bool NameExists(Session& session, InstructionType type, std::string_view name);
NameRules ReadNameRules(Session& session, InstructionType type, std::string_view name);
bool ReadSepPiYN(Session& session, InstructionType type, std::string_view name);
bool MayHaveHouseLoan(Session& session, long employee, InstructionType type, std::string_view name);

bool IsAdvLoanStored(Session& session, const InstructionKey& key);
std::optional<AdvLoanDetail> ReadAdvLoan(Session& session, const InstructionKey& key);
std::vector<AdvLoanListRow> ReadAdvLoanList(Session& session, long employee, InstructionType type);
std::vector<ScheduleMonth> ReadSchedule(Session& session, const InstructionKey& key);
AdvLoanTotals ReadTotals(Session& session, long employee, InstructionType type);

bool HasReceipts(Session& session, const InstructionKey& key);
bool HasHouseLoan(Session& session, const InstructionKey& key);
// Whether it can be given to something new.
constexpr bool IsSerial(double number) { return number >= 1 && number <= 2147483647; }
// The employee's next serial number of the type, whatever table its instructions stand in.
long NextSerial(Session& session, long employee, InstructionType type);

}  // namespace ktl
