#include "benefit/rate_rows.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "frame/writing_turn.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr long kMenu = 19;
constexpr double kWhole = 100;
constexpr const char* kFeature = "Automated Interest Free Loan Calculation -> Benchmark Interest Rate";

std::string Marked(const std::string& name) { return kNameMarker + name + kNameMarker; }

double AmountOf(const TypedRate& typed) { return clsGenCmn::FnDblTrimVal(typed.rate); }

std::string NamesOf(const TypedRate& typed) {
  std::string names;
  if (!typed.remarks) return names;
  for (const RateLoan& loan : typed.loans) {
    if (loan.ticked) names += Marked(loan.name);
  }
  return names;
}

void Audit(Session& session, const TypedRate& typed, const std::string& deed, const std::string& rate) {
  const std::string heading = fmt::format("{} {}", kFeature, deed);
  WriteAuditTrail(session, kMenu, 0, heading,
                  fmt::format("{}:::Financial Year = {}:Interest Rate = {}", heading, typed.yearText, rate));
}

}  // namespace

std::string RateRow::YearText() const { return fmt::format("{} - {}", year, Val(year) + 1); }

std::string TypedRate::Year() const { return Left(yearText, 4); }

std::vector<RateRow> ReadRates(Session& session) {
  std::vector<RateRow> rates;
  for (Recordset rs(session.Cn, "SELECT * FROM MAS_LOANINT "); !rs.Eof(); rs.MoveNext()) {
    rates.push_back({rs["INTID"].ToLong(), rs["FINANCIALYEAR"].TextOrEmpty(), rs["INTEREST"].NumberOr0(),
                     rs["LOANTYPE"].TextOrEmpty(), rs["LOANNAME"].TextOrEmpty()});
  }
  return rates;
}

long NextRateId(Session& session) {
  return session.data.Guarding("Select Max(ISNULL(INTID,0)) From MAS_LOANINT").ToLong() + 1;
}

bool HasRates(Session& session, const std::string& year) {
  return session.data.FnBlnRecExists(session.Sql("SELECT * FROM MAS_LOANINT WHERE FINANCIALYEAR='{}'", year));
}

std::string RatesAsShown(Session& session, const std::string& year) {
  return RowsAsText(session,
                    session.Sql("SELECT * FROM MAS_LOANINT WHERE FINANCIALYEAR = '{}' ORDER BY INTID", year));
}

std::vector<RateLoan> ReadRateLoans(Session& session, const std::string& year, const std::string& remarks,
                                    long id) {
  const std::string names = session.data.Text(session.Sql(
      "SELECT LOANNAME FROM MAS_LOANINT WHERE FINANCIALYEAR = '{}' AND LOANTYPE='{}'", year, remarks));
  std::vector<RateLoan> loans;
  for (const ListRow& loan : ReadBenefitLoans(session)) {
    const bool taken = session.data.FnBlnRecExists(session.Sql(
        "SELECT * FROM MAS_LOANINT WHERE FINANCIALYEAR = '{}' AND CHARINDEX('#$#'+'{}'+'#$#',LOANNAME COLLATE "
        "SQL_Latin1_General_CP1_CI_AS  ,1)>0  AND INTID<>{}",
        year, loan.text, id));
    loans.push_back({loan.value, loan.text, names.find(Marked(loan.text)) != std::string::npos, taken});
  }
  return loans;
}

std::optional<RateRefusal> CheckRate(const TypedRate& typed, const std::string& yearCaption) {
  if (typed.yearText.empty()) return RateRefusal{"Select " + yearCaption, RateField::Year};
  if (Trim(typed.rate).empty()) return RateRefusal{"Enter the Interest", RateField::Rate};
  const std::optional<double> rate = ParseNumber(Trim(typed.rate));
  if (!rate || *rate > kWhole) return RateRefusal{"Enter Proper Interest", RateField::Rate};
  if (*rate <= 0) return RateRefusal{"Interest should be greater than 0", RateField::Rate};
  if (!typed.remarks) return std::nullopt;
  if (Trim(*typed.remarks).empty()) return RateRefusal{"Enter Remarks", RateField::Remarks};
  if (NamesOf(typed).empty()) return RateRefusal{"Select atleast one Loan", RateField::Loans};
  return std::nullopt;
}

void SaveRate(Session& session, const TypedRate& typed, long id, bool isNew) {
  const bool audited = FnBlnAuditOn(session);
  if (isNew && session.data.FnBlnRecExists(session.Sql("SELECT * FROM MAS_LOANINT WHERE INTID={}", id)))
    id = NextRateId(session);
  Recordset row(
      session.Cn,
      session.Sql("SELECT * FROM MAS_LOANINT WHERE FINANCIALYEAR = '{}' AND INTID={} ", typed.Year(), id),
      OpenMode::Update);
  if (row.Eof()) {
    row.AddNew();
    row.Set("IntId", id);
    row.Set("FINANCIALYEAR", typed.Year());
  }
  row.Set("INTEREST", AmountOf(typed));
  row.Set("LOANTYPE", typed.remarks.value_or(""));
  row.Set("LOANNAME", NamesOf(typed));
  row.Update();
  if (!audited) return;
  Audit(session, typed, "Created/Updated",
        typed.before.empty() ? typed.rate : fmt::format("{} ({})", typed.before, typed.rate));
}

long FindRate(Session& session, const TypedRate& typed, const std::string& remarks) {
  return session.data
      .Guarding(session.Sql(
          "SELECT INTID FROM MAS_LOANINT WHERE FINANCIALYEAR='{}' AND INTEREST={} AND LOANTYPE='{}'",
          typed.Year(), AmountOf(typed), remarks))
      .ToLong();
}

void DeleteRate(Session& session, const TypedRate& typed, long id) {
  const bool audited = FnBlnAuditOn(session);
  session.Cn.Execute(
      session.Sql("DELETE FROM MAS_LOANINT WHERE INTID={} AND FINANCIALYEAR='{}'", id, typed.Year()));
  if (audited) Audit(session, typed, "Deleted", typed.rate);
}

}  // namespace ktl
