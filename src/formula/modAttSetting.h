#pragma once

#include <memory>
#include <string>

#include "runtime/date.h"

namespace ktl {

class EmployeeReads;
struct Session;

// An attendance head, with the values that stand when none is loaded.
struct AttHeadSettings {
  std::string ATTHEADNAME = "General";
  std::string MENUNAME;
  std::string DESCR;
  bool TIGHTYN = true;
  int NODFORCALC = 2;
  int ATTNTYPE = 0;
  std::string ATTCAP;
  bool ATTNDTODYN = false;
  bool ATTNHOURLYYN = false;
  bool OT1YN = false;
  bool OT2YN = false;
  bool OTHOURLYYN = false;
  double MinimumHalfDay = 2;
  double MaximumHalfDay = 5.99;
  double MinimumFullDay = 6;
  double MaximumFullDay = 10;
  double FullDayCutOff = 8;
  double HalfDayCutOff = 4;
  double OTMINHOUR = 120;
  double UPPERLIMIT = 10;
  bool NOSAL = false;
  bool HALFSAL = false;
  bool FULLSAL = false;
  bool NOATTOTYN = false;
  bool HALFDAYOTYN = false;
  bool FULLDAYOTYN = false;
  bool HALFDAYDEDYN = false;
  bool FullDAYDEDYN = false;
  bool MORETHANNODYN = false;
  bool INACTIVEYN = false;
};

struct AttHeadOptions {
  bool EXCESSLEVYN = false;
  bool LOADDEFYN = false;
  int DEFVAL = 0;
  bool SPLOTYN = false;
  bool WHOT2YN = false;
  bool GHOT2YN = false;
  bool FULLDAYOT2 = false;
  bool PRIORITYYN = false;
  int HOLPRIORITY = 0;
  bool ROTWHYN = false;
  bool AUTOALLOTYN = false;
  bool LEVPRIORITYYN = false;
  bool AFFECTSALYN = false;
  bool INDLEVSETYN = false;
  bool INDWHYN = false;
  bool COCWYN = false;
  bool COMMONYN = false;
  bool EDITEDYN = false;
};

// The settings of the attendance head that was loaded last; a second load replaces the first. Failing
// statements throw.
class modAttSetting final {
 public:
  explicit modAttSetting(Session& session);
  modAttSetting(Session& session, std::shared_ptr<EmployeeReads> reads);

  void ResetHeadSettings() { head = {}; }
  void LoadHeadSettings(long lngAttHeadID);  // and the options; the defaults for a head that is not there
  void ResetHeadOptions() { options = {}; }
  void LoadHeadOptions(long lngAttHeadID);

  // The salary month whose range holds the date; 0 when none does.
  long FnLngMonthOfDate(const Date& date);
  Date FnDteMonthCalcStart(long lngMonthYear);
  Date FnDteMonthCalcEnd(long lngMonthYear);

  AttHeadSettings head;
  AttHeadOptions options;

 private:
  Session& session_;
  std::shared_ptr<EmployeeReads> reads_;
};

}  // namespace ktl
