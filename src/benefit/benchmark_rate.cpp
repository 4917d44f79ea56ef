#include "benefit/benchmark_rate.h"

#include "database/recordset.h"
#include "frame/session.h"

namespace ktl {

namespace {

// How the two places that read the rate of a loan say it.
struct RateWords {
  Statement amount;
  Statement ofYear;
  Statement loan;
};

Statement RateCase(const Session& session, const RateWords& words) {
  const Statement named = session.Sql(
      "(SELECT TOP 1 {} FROM MAS_LOANINT WHERE {} AND CHARINDEX('#$#'+{} COLLATE "
      "SQL_Latin1_General_CP1_CI_AS +'#$#',LOANNAME COLLATE SQL_Latin1_General_CP1_CI_AS )>0)",
      words.amount, words.ofYear, words.loan);
  return session.Sql(
      "SELECT CASE WHEN {0} IS NULL THEN (SELECT TOP 1 {1} FROM MAS_LOANINT WHERE {2} AND "
      "ISNULL(LOANNAME,'')='') ELSE {0} END",
      named, words.amount, words.ofYear);
}

}  // namespace

Statement RateOverLoans(const Session& session, const std::string& year) {
  return session.Sql(
      "({})", RateCase(session, {Statement("ISNULL(INTEREST,0)/100"), session.Sql("FINANCIALYEAR='{}'", year),
                                 Statement("IA.SINAME")}));
}

Statement RateOfLoan(const Session& session, const std::string& year, const std::string& name) {
  return RateCase(session, {Statement("ISNULL(INTEREST, 0)"), session.Sql("FINANCIALYEAR = '{}'", year),
                            session.Sql("'{}'", name)});
}

std::optional<double> PlainRate(Session& session, const std::string& year) {
  return NumberIfAny(session.data.Guarding(
      session.Sql("SELECT INTEREST FROM MAS_LOANINT WHERE FINANCIALYEAR = '{}'", year), Null{}));
}

std::vector<ListRow> ReadBenefitLoans(Session& session) {
  std::vector<ListRow> loans;
  Recordset rs(
      session.Cn,
      "SELECT ROW_NUMBER() OVER (ORDER BY SINAME) AS SLNO,SINAME FROM INS_MASTER WHERE SITYPE<=2 AND "
      "SEPPIYN=1 AND SBIIFBYN=1");
  for (; !rs.Eof(); rs.MoveNext()) loans.push_back({rs["SINAME"].TextOrEmpty(), rs["SLNO"].ToText()});
  return loans;
}

}  // namespace ktl
