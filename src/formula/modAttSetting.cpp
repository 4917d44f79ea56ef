#include "formula/modAttSetting.h"

#include <fmt/format.h>

#include <utility>

#include "common/month_year.h"
#include "formula/day_count.h"
#include "formula/employee_reads.h"
#include "frame/session.h"

namespace ktl {
namespace {

struct HeadFlag {
  const char* column;
  bool AttHeadSettings::*field;
};
constexpr HeadFlag kHeadFlags[] = {
    {"ATTNDTODYN", &AttHeadSettings::ATTNDTODYN},
    {"ATTNHOURLYYN", &AttHeadSettings::ATTNHOURLYYN},
    {"OT1YN", &AttHeadSettings::OT1YN},
    {"OT2YN", &AttHeadSettings::OT2YN},
    {"OTHOURLYYN", &AttHeadSettings::OTHOURLYYN},
    {"NOSAL", &AttHeadSettings::NOSAL},
    {"HALFSAL", &AttHeadSettings::HALFSAL},
    {"FULLSAL", &AttHeadSettings::FULLSAL},
    {"NOATTOTYN", &AttHeadSettings::NOATTOTYN},
    {"HALFDAYOTYN", &AttHeadSettings::HALFDAYOTYN},
    {"FULLDAYOTYN", &AttHeadSettings::FULLDAYOTYN},
    {"HALFDAYDEDYN", &AttHeadSettings::HALFDAYDEDYN},
    {"FullDAYDEDYN", &AttHeadSettings::FullDAYDEDYN},
    {"MORETHANNODYN", &AttHeadSettings::MORETHANNODYN},
    {"INACTIVEYN", &AttHeadSettings::INACTIVEYN},
};

struct HeadLimit {
  const char* column;
  double AttHeadSettings::*field;
};
constexpr HeadLimit kHeadLimits[] = {
    {"MinimumHalfDay", &AttHeadSettings::MinimumHalfDay},
    {"MaximumHalfDay", &AttHeadSettings::MaximumHalfDay},
    {"MinimumFullDay", &AttHeadSettings::MinimumFullDay},
    {"MaximumFullDay", &AttHeadSettings::MaximumFullDay},
    {"FullDayCutOff", &AttHeadSettings::FullDayCutOff},
    {"HalfDayCutOff", &AttHeadSettings::HalfDayCutOff},
    {"OTMINHOUR", &AttHeadSettings::OTMINHOUR},
    {"UPPERLIMIT", &AttHeadSettings::UPPERLIMIT},
};

struct OptionFlag {
  const char* column;
  bool AttHeadOptions::*field;
};
constexpr OptionFlag kOptionFlags[] = {
    {"EXCESSLEVYN", &AttHeadOptions::EXCESSLEVYN}, {"LOADDEFYN", &AttHeadOptions::LOADDEFYN},
    {"SPLOTYN", &AttHeadOptions::SPLOTYN},         {"WHOT2YN", &AttHeadOptions::WHOT2YN},
    {"GHOT2YN", &AttHeadOptions::GHOT2YN},         {"FULLDAYOT2", &AttHeadOptions::FULLDAYOT2},
    {"PRIORITYYN", &AttHeadOptions::PRIORITYYN},   {"ROTWHYN", &AttHeadOptions::ROTWHYN},
    {"AUTOALLOTYN", &AttHeadOptions::AUTOALLOTYN}, {"LEVPRIORITYYN", &AttHeadOptions::LEVPRIORITYYN},
    {"AFFECTSALYN", &AttHeadOptions::AFFECTSALYN}, {"INDLEVSETYN", &AttHeadOptions::INDLEVSETYN},
    {"INDWHYN", &AttHeadOptions::INDWHYN},         {"COCWYN", &AttHeadOptions::COCWYN},
    {"COMMONYN", &AttHeadOptions::COMMONYN},       {"EDITEDYN", &AttHeadOptions::EDITEDYN},
};

bool Flag(const Value& value) { return !value.IsNull() && value.ToBoolean(); }
int SmallInt(const Value& value, int ifNull) { return value.IsNull() ? ifNull : value.ToInt(); }

// A limit that is null comes as 0 and so replaces the default.
std::string HeadSql(long attHeadId) {
  std::string sql =
      "SELECT ATTHEADNAME, ISNULL(ATTMENUNAME, SubString(ATTHEADNAME,1,10)) As MENUNAME, "
      "IsNull(ATTDESC,'') As DESCR, (Case ATTNTIGHTYN When 1 Then 'True' Else 'False' End) As TIGHTYN, "
      "ATTNTYPE, NODFORCALC, (Case ATTNTYPE When 1 Then 'Leave Register' When 2 Then 'Attendance - Daily' "
      "When 3 Then 'Attendance - Hourly' Else 'Attendance - Monthly' End) As ATTCAP";
  for (const auto& limit : kHeadLimits) sql += fmt::format(", IsNull({0},0) As {0}", limit.column);
  for (const auto& flag : kHeadFlags) sql += fmt::format(", {}", flag.column);
  return sql + fmt::format(" From MAS_ATTHEAD Where ATTHEADID = {}", attHeadId);
}

}  // namespace

modAttSetting::modAttSetting(Session& session)
    : modAttSetting(session, std::make_shared<EmployeeReads>(session.data)) {}

modAttSetting::modAttSetting(Session& session, std::shared_ptr<EmployeeReads> reads)
    : session_(session), reads_(std::move(reads)) {}

void modAttSetting::LoadHeadSettings(long lngAttHeadID) {
  ResetHeadSettings();
  const Recordset row = reads_->Rows(HeadSql(lngAttHeadID));
  if (!row.Eof()) {
    head.ATTHEADNAME = row["ATTHEADNAME"].TextOrEmpty();
    head.MENUNAME = row["MENUNAME"].TextOrEmpty();
    head.DESCR = row["DESCR"].TextOrEmpty();
    head.TIGHTYN = Flag(row["TIGHTYN"]);
    head.ATTNTYPE = SmallInt(row["ATTNTYPE"], head.ATTNTYPE);
    head.NODFORCALC = SmallInt(row["NODFORCALC"], head.NODFORCALC);
    head.ATTCAP = row["ATTCAP"].TextOrEmpty();
    for (const auto& limit : kHeadLimits) head.*limit.field = row[limit.column].ToDouble();
    for (const auto& flag : kHeadFlags) head.*flag.field = Flag(row[flag.column]);
  }
  LoadHeadOptions(lngAttHeadID);
}

void modAttSetting::LoadHeadOptions(long lngAttHeadID) {
  ResetHeadOptions();
  const Recordset row =
      reads_->Rows(fmt::format("SELECT * FROM ATT_OPTSETTINGS WHERE ATTHEADID={}", lngAttHeadID));
  if (row.Eof()) return;
  for (const auto& flag : kOptionFlags) options.*flag.field = Flag(row[flag.column]);
  options.DEFVAL = SmallInt(row["DEFVAL"], 0);
  options.HOLPRIORITY = SmallInt(row["HOLPRIORITY"], 0);
}

long modAttSetting::FnLngMonthOfDate(const Date& date) {
  return reads_
      ->Read(fmt::format("SELECT MONTHYEAR, [dbo].FnStrMonthName(MONTHYEAR) AS MONTHNAME FROM MAS_MONTHYEAR "
                         "WHERE CALCSTARTDATE <= '{0}' AND CALCENDDATE >= '{0}'",
                         IsoDay(date)),
             0)
      .ToLong();
}

Date modAttSetting::FnDteMonthCalcStart(long lngMonthYear) {
  return FnDteMonthStart({reads_->data(), session_.features.On("CALCINMIDYN")}, lngMonthYear);
}

Date modAttSetting::FnDteMonthCalcEnd(long lngMonthYear) {
  return FnDteMonthEnd({reads_->data(), session_.features.On("CALCINMIDYN")}, lngMonthYear);
}

}  // namespace ktl
