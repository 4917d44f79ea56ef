#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>

namespace ktl {

struct Session;

// MAS_OPTSET, with the defaults that stand where the table has no row or a null.
struct OptionSet {
  std::string EMPIDCAP = "Emp ID";
  std::string REFNOCAP = "Ref. No.";
  std::string SALSTRUCTCAP = "Sal Structure";
  std::string DERIVABLETOTCAP = "Derivable Total";
  long STARTMONTHYEAR = 0;
  long ENDMONTHYEAR = 22800;
  long DEFMONTHYEAR = 0;
  long DEFSTRUCTID = 1;  // a null in the row gives 0
  long DEFREPORTTYPE = 1;
  long ROUNDTYPE = 1;
  std::string EFFFRMSET;
  long LEVMINDAYS = 0;
  bool EMPREFNOYN = false;
  bool COMPPFESIPERYN = false;
  bool CARRYOVERROUNDYN = false;
  bool PF510PREVIOUSYN = false;
  bool PF5PREVIOUSYN = false;
  bool EVRYMNTHFORMYN = false;
  bool EXCESSLEVLOPYN = false;
  bool PFVOLINSEPCOLYN = false;
  bool LEVMINDAYSYN = false;
  bool SALCOMPNEGYN = false;
  bool PFCMPRESTEMPYN = false;
  bool PFSHOWCMPGRSYN = false;
  bool PFACC02ONEDLIYN = false;
  bool PFGRPRATEYN = false;
  bool TDSMAR2FEB = false;
  bool REJOININGYN = false;
  bool CLASSSECURITYN = false;
  bool hasOvertime1 = false;
  bool hasOvertime2 = false;
};

// MAS_OPTSETFEATURE: the switches by column name, and what is no switch.
struct FeatureSet {
  std::map<std::string, bool, std::less<>> switches;
  bool On(std::string_view column) const;

  long AUTOPFTYPE = 1;
  std::string PFSEPARATOR;
  long ATTNCALCTYPE = 1;
  long RETIREAGEON = 1;
  long LVSTARTMNYEAR = 0;
  long ESIONMNYR = 0;
};

struct CaptionSet {
  // Designation, Occupation, Department, Division, Grade, Branch, Attendance: places 1 to 7.
  std::array<std::string, 7> groups;
  std::array<std::string, 14> extended;  // Masterid 6 to 19
  std::map<long, std::string> types;     // by instruction type: 1 to 5 and 7
};

void LoadCaptions(Session& session);
void LoadExtCaptions(Session& session);
void LoadOptionSet(Session& session);   // and the feature set
void LoadFeatureSet(Session& session);  // and the captions of the instruction types

}  // namespace ktl
