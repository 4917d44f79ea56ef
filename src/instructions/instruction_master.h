#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/refusal.h"
#include "instructions/instruction_type.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// A row of INS_MASTER: a name under which instructions of one type can be given, and its rules. An advanced
// option that is not set is Null in the row. Counts are as they were typed; their columns take whole numbers.
struct InstructionMaster {
  InstructionType type = InstructionType::None;
  std::string siName;
  std::string accCode;               // "" is stored as Null
  bool tdsYn = false;                // of a loan: it has house-loan details
  std::optional<long> tdsRefNo;      // the section, MAS_TDSREF
  double siPref = 0;                 // deduction preference, lowest first; 0 is none and stored as Null
  bool sepPiYn = false;              // separate principal and interest accounting
  bool sbiIfbYn = false;             // comes under the interest-free benefit
  std::optional<double> amtLimit;    // rupees
  std::optional<double> allowLimit;  // times in a service
  std::optional<double> emiRecCnt;   // default number of instalments
  std::optional<double> intrRate;    // percent a year
  bool reducingBalYn = false;
  std::string section = {};  // TDSREF of tdsRefNo, read with the list
};

// The rows of the type, ordered by name.
std::vector<InstructionMaster> ReadInstructionMasters(Session& session, InstructionType type);
// The sections under which a name can be taxed.
std::vector<ListRow> ReadSections(Session& session);

enum class MasterField { Name, MaxAmount, MaxAllowed, RecEMI, InterestRate, Section, DedPref };

using MasterRefusal = Refusal<MasterField>;

// What is asked of a row before anything is written; the first that does not hold. oldName is empty for a new
// row. Advanced options are looked at only when the company has them (advanced). Last, a count that its
// column cannot hold raises "Overflow".
std::optional<MasterRefusal> FindMasterRefusal(Session& session, const InstructionMaster& master,
                                               const std::string& oldName, const std::string& caption,
                                               bool advanced);
// Another row of an advance or a loan has the same deduction preference.
std::optional<MasterRefusal> FindPreferenceRefusal(Session& session, const InstructionMaster& master,
                                                   const std::string& oldName, const std::string& caption);

bool HasHouseLoanDetails(Session& session, const InstructionMaster& master);
// Of every loan under the name. Not in a transaction: it stands even if the save fails later.
void DeleteHouseLoanDetails(Session& session, const InstructionMaster& master);

// The names of a type as a text that differs when another workstation has changed one.
std::string InstructionMasterRows(Session& session, InstructionType type);

// Writes over the row of the old name, or adds one. A rename is carried over to the instructions. Throws
// ChangedMeanwhile, with nothing written, when the names are no longer as they were shown.
void WriteInstructionMaster(Session& session, const InstructionMaster& master, const std::string& oldName,
                            bool advanced, const std::string& shown);

bool IsMasterInUse(Session& session, InstructionType type, const std::string& siName);
void DeleteInstructionMaster(Session& session, InstructionType type, const std::string& siName);

// Marks the employees who have an instruction under the name for a new tax porting, by the code of
// UpdateIncPortedStat.
void MarkInstructionsForPorting(Session& session, InstructionType type, const std::string& siName, int code);

}  // namespace ktl
