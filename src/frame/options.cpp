#include "frame/options.h"

#include <algorithm>
#include <array>

#include "common/naming.h"
#include "database/recordset.h"
#include "frame/captions.h"
#include "frame/session.h"
#include "runtime/errors.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr std::array kComparedWithOne = {"ATTNIMPORTYN", "SIEARNINGYN",  "ADVANCEYN",      "LOANYN",
                                         "INSURANCEYN",  "SSSYN",        "GRPINSURANCEYN", "ARREARSYN",
                                         "ADVBANKYN",    "BAREACTSYN",   "LOCKMONTHYN",    "HRDETAILSYN",
                                         "JVEXPORTYN",   "HIDDENCOMPYN", "HOLDSALARYYN"};

constexpr std::array kConverted = {"PTONHEADYN",      "THEOSALYN",         "CALCINMIDYN",  "LTAYN",
                                   "MEDREIMYN",       "SPLCALCBASISYN",    "ATTDETDEFYN",  "ADVMGALYN",
                                   "DATEWISEINCRYN",  "FLEXIPAYYN",        "FOODCOUPONYN", "OTOPENESIYN",
                                   "REMINDERYN",      "EXTOTSETYN",        "AUTOLEAVEYN",  "ROTATEWEEKHOLYN",
                                   "REIMBURSEMENTYN", "BANKSTATEMENTYN",   "DOSREPORTYN",  "ADVPAYSLIPYN",
                                   "SALPREDATEYN",    "FAVCONFIGYN",       "QRYBUILDERYN", "ADVMGTYN",
                                   "AUTOPFNOYN",      "ATTNINTGRYN",       "RETIREYN",     "SPLEARNINGYN",
                                   "SPLDEDUCTIONYN",  "ADVLEAVEYN",        "WEBUPDATESYN", "EMPLOCKYN",
                                   "PRINTDATEYN",     "RESTRICTSALCALCYN", "ESIONLINEYN"};

// The columns of one row, a null giving way to the default. A column that is not there is a failure.
class OptionRow final {
 public:
  explicit OptionRow(const Recordset& row) : row_(row) {}

  std::string Text(std::string_view column, const std::string& ifNull) const {
    return CNull(row_[column], ifNull).ToText();
  }
  long Long(std::string_view column, long ifNull) const {
    const Value value = CNull(row_[column], ifNull);
    return Naming(column, [&] { return value.ToLong(); });
  }
  int Int(std::string_view column, int ifNull) const {
    const Value value = CNull(row_[column], ifNull);
    return Naming(column, [&] { return value.ToInt(); });
  }
  long Byte(std::string_view column, long ifNull) const {
    const long value = Long(column, ifNull);
    return Naming(column, [&] { return value < 0 || value > 255 ? throw RuntimeError::Overflow() : value; });
  }
  bool IsOne(std::string_view column) const { return CNull(row_[column], 0).NumberOr0() == 1; }
  bool Boolean(std::string_view column) const {
    const Value value = CNull(row_[column], 0);
    return Naming(column, [&] { return value.ToBoolean(); });
  }

 private:
  const Recordset& row_;
};

void ReadTexts(OptionSet& options, const OptionRow& row, DataAccess& data) {
  options.EMPIDCAP = row.Text("EMPIDCAP", options.EMPIDCAP);
  options.REFNOCAP = row.Text("REFNOCAP", options.REFNOCAP);
  options.SALSTRUCTCAP = row.Text("SALSTRUCTCAP", options.SALSTRUCTCAP);
  options.EFFFRMSET = row.Text("EFFFRMSET", options.EFFFRMSET);
  // Companies of an earlier release do not have this column.
  if (data.FnBlnRecExists(
          "SELECT * FROM INFORMATION_SCHEMA.COLUMNS WHERE COLUMN_NAME = 'DERIVABLETOTCAP' AND "
          "TABLE_NAME = 'MAS_OPTSET'")) {
    options.DERIVABLETOTCAP = row.Text("DERIVABLETOTCAP", options.DERIVABLETOTCAP);
  }
}

void ReadNumbers(OptionSet& options, const OptionRow& row) {
  options.STARTMONTHYEAR = row.Long("STARTMONTHYEAR", options.STARTMONTHYEAR);
  options.ENDMONTHYEAR = row.Long("ENDMONTHYEAR", options.ENDMONTHYEAR);
  options.DEFMONTHYEAR = row.Long("DEFMONTHYEAR", options.DEFMONTHYEAR);
  // A null is 0 here, not the 1 that stands without a row.
  options.DEFSTRUCTID = row.Long("DEFSTRUCTID", 0);
  options.DEFREPORTTYPE = row.Byte("DEFREPORTTYPE", options.DEFREPORTTYPE);
  options.ROUNDTYPE = row.Byte("ROUNDTYPE", options.ROUNDTYPE);
  options.LEVMINDAYS = row.Long("LEVMINDAYS", options.LEVMINDAYS);
}

void ReadSwitches(OptionSet& options, const OptionRow& row) {
  options.EMPREFNOYN = row.IsOne("EMPREFNOYN");
  options.COMPPFESIPERYN = row.IsOne("COMPPFESIPERYN");
  options.CARRYOVERROUNDYN = row.IsOne("CARRYOVERROUNDYN");
  options.PF510PREVIOUSYN = row.IsOne("PF510PREVIOUSYN");
  options.PF5PREVIOUSYN = row.Boolean("PF5PREVIOUSYN");
  options.EVRYMNTHFORMYN = row.Boolean("EVRYMNTHFORMYN");
  options.EXCESSLEVLOPYN = row.Boolean("EXCESSLEVLOPYN");
  options.PFVOLINSEPCOLYN = row.Boolean("PFVOLINSEPCOLYN");
  options.LEVMINDAYSYN = row.Boolean("LEVMINDAYSYN");
  options.SALCOMPNEGYN = row.Boolean("SALCOMPNEGYN");
  options.PFCMPRESTEMPYN = row.Boolean("PFCMPRESTEMPYN");
  options.PFSHOWCMPGRSYN = row.Boolean("PFSHOWCMPGRSYN");
  options.PFACC02ONEDLIYN = row.Boolean("PFACC02ONEDLIYN");
  options.PFGRPRATEYN = row.Boolean("PFGRPRATEYN");
  options.TDSMAR2FEB = row.Boolean("TDSMAR2FEB");
  options.REJOININGYN = row.Boolean("REJOININGYN");
  options.CLASSSECURITYN = row.Boolean("CLASSSECURITYN");
}

FeatureSet DefaultFeatures() {
  FeatureSet features;
  for (const char* column : kComparedWithOne) features.switches[column] = false;
  for (const char* column : kConverted) features.switches[column] = false;
  return features;
}

void ReadFeatures(FeatureSet& features, const OptionRow& row) {
  for (const char* column : kComparedWithOne) features.switches[column] = row.IsOne(column);
  for (const char* column : kConverted) features.switches[column] = row.Boolean(column);
  features.AUTOPFTYPE = row.Int("AUTOPFTYPE", 1);
  features.PFSEPARATOR = row.Text("PFSEPARATOR", "");
  features.ATTNCALCTYPE = row.Int("ATTNCALCTYPE", 1);
  features.RETIREAGEON = row.Int("RETIREAGEON", 1);
  features.LVSTARTMNYEAR = row.Long("LVSTARTMNYEAR", 0);
  features.ESIONMNYR = row.Long("ESIONMNYR", 0);
}

}  // namespace

bool FeatureSet::On(std::string_view column) const {
  const auto found = switches.find(column);
  return found != switches.end() && found->second;
}

void LoadOptionSet(Session& session) {
  session.options = OptionSet{};
  ResetTypeCaptions(session.captions);
  OptionSet& options = session.options;
  const Recordset table(session.Cn, "SELECT * FROM MAS_OPTSET");
  if (!table.Eof()) {
    const OptionRow row(table);
    ReadTexts(options, row, session.data);
    ReadNumbers(options, row);
    ReadSwitches(options, row);
    options.hasOvertime1 = session.data.FnBlnRecExists("SELECT ATTHEADID FROM MAS_ATTHEAD WHERE OT1YN = 1");
    options.hasOvertime2 = session.data.FnBlnRecExists("SELECT ATTHEADID FROM MAS_ATTHEAD WHERE OT2YN = 1");
  }
  if (UpperCase(session.CurrentUser()) == "ADMIN") options.CLASSSECURITYN = false;
  LoadFeatureSet(session);
}

void LoadFeatureSet(Session& session) {
  session.features = DefaultFeatures();
  if (const Recordset table(session.Cn, "SELECT * FROM MAS_OPTSETFEATURE"); !table.Eof()) {
    ReadFeatures(session.features, OptionRow(table));
  }
  LoadTypeCaptions(session);
}

}  // namespace ktl
