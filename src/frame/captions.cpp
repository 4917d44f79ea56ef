#include "frame/captions.h"

#include "database/recordset.h"
#include "frame/options.h"
#include "frame/session.h"

namespace ktl {

namespace {

const std::array<std::string, 7> kGroups = {"Designation", "Occupation", "Department", "Division",
                                            "Grade",       "Branch",     "Attendance"};

const std::map<long, std::string> kTypes = {{1, "Advance"},         {2, "Loan"},
                                            {3, "Insurance"},       {4, "SSS"},
                                            {5, "Group Insurance"}, {7, "Periodic Incentive"}};

// Places count from 1. Rows without a caption and places above the last one leave everything as it is.
void TakeGroups(Session& session, std::string_view sql, std::string_view place, std::string_view caption,
                long last) {
  for (Recordset rows(session.Cn, sql); !rows.Eof(); rows.MoveNext()) {
    const std::string text = rows[caption].TextOrEmpty();
    const double at = rows[place].NumberOr0();
    if (!text.empty() && at >= 1 && at <= static_cast<double>(last))
      session.captions.groups[static_cast<std::size_t>(at) - 1] = text;
  }
}

}  // namespace

void LoadCaptions(Session& session) {
  session.captions.groups = kGroups;
  TakeGroups(session, "Select * From MAS_PULLDOWNVALUES Where REFID = 26", "PDID", "PDLISTDESC", 7);
  // Branch and Attendance cannot be renamed here.
  TakeGroups(session, "Select * From MAS_EXTCAPTION Where Transfered = 1 ", "Masterid", "Caption", 5);
  LoadExtCaptions(session);
}

void LoadExtCaptions(Session& session) {
  auto& extended = session.captions.extended;
  extended.fill({});
  Recordset rows(session.Cn, "SELECT * FROM MAS_EXTCAPTION WHERE MASTERID BETWEEN 6 AND 19");
  for (; !rows.Eof(); rows.MoveNext()) {
    extended.at(static_cast<std::size_t>(rows["MASTERID"].ToLong() - 6)) = rows["Caption"].TextOrEmpty();
  }
}

void ResetTypeCaptions(CaptionSet& captions) { captions.types = kTypes; }

void LoadTypeCaptions(Session& session) {
  ResetTypeCaptions(session.captions);
  Recordset rows(session.Cn, "Select * From MAS_PULLDOWNVALUES Where REFID = 5");
  for (; !rows.Eof(); rows.MoveNext()) {
    const auto type = kTypes.find(static_cast<long>(rows["PDID"].NumberOr0()));
    if (type == kTypes.end()) continue;
    const std::string text = rows["PDLISTDESC"].TextOrEmpty();
    session.captions.types[type->first] = text.empty() ? type->second : text;
  }
}

}  // namespace ktl
