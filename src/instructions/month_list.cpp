#include "instructions/month_list.h"

#include "database/recordset.h"
#include "frame/session.h"
#include "runtime/errors.h"

namespace ktl {

namespace {

// Each month is found from the one behind it, by one step in the index of the months.
constexpr const char* kMonthSteps = R"sql(
CREATE VIEW KTL_EMIMONTHS AS
WITH RECURSIVE STEPS(MONTHYEAR) AS (
  SELECT MAX(MONTHYEAR) FROM INS_EMIDETAIL
  UNION ALL
  SELECT (SELECT MAX(E.MONTHYEAR) FROM INS_EMIDETAIL E WHERE E.MONTHYEAR < S.MONTHYEAR)
  FROM STEPS S WHERE S.MONTHYEAR IS NOT NULL)
SELECT MONTHYEAR FROM STEPS WHERE MONTHYEAR IS NOT NULL;
)sql";

const std::string kMonthName =
    " CAST((CASE (MONTHYEAR % 12) WHEN 1 THEN 'Jan' WHEN 2 THEN 'Feb' WHEN 3 THEN 'Mar' WHEN 4 THEN 'Apr' "
    "WHEN 5 THEN 'May' WHEN 6 THEN 'Jun' WHEN 7 THEN 'Jul' WHEN 8 THEN 'Aug' WHEN 9 THEN 'Sep' WHEN 10 THEN "
    "'Oct' WHEN 11 THEN 'Nov' WHEN 0 THEN 'Dec' END) AS VARCHAR) + '/' + CAST((CASE (MONTHYEAR % 12) WHEN 0 "
    "THEN (MONTHYEAR / 12)-1 ELSE MONTHYEAR / 12 END) AS VARCHAR) AS MONTHNAME";
const std::string kSaid =
    "Select Distinct MONTHYEAR," + kMonthName + " From INS_EMIDETAIL Order By MONTHYEAR Desc";
const std::string kEmbedded =
    "Select MONTHYEAR," + kMonthName + " From KTL_EMIMONTHS Order By MONTHYEAR Desc";

}  // namespace

const StatementTwin kMonthList{
    .said = kSaid, .embedded = kEmbedded, .table = "KTL_EMIMONTHS", .setup = kMonthSteps};

Statement MonthListStatement(const Session& session, std::string_view dbType, long employee,
                             InstructionType type) {
  if (dbType == "SQL") return Statement(kSaid);
  if (dbType == "MYSQL") {
    return Statement(
        "Select DISTINCT DATE_FORMAT(CONCAT(CASE MONTHYEAR % 12 WHEN 0 THEN FLOOR(MONTHYEAR / 12) - 1 ELSE "
        "FLOOR(MONTHYEAR / 12) END, '-', CASE MONTHYEAR % 12 WHEN 0 THEN 12 ELSE MONTHYEAR % 12 END, '-01'), "
        "'%b/%Y') AS MONTHNAME, MONTHYEAR From SLC_SALARYCALC_E Order By MONTHYEAR Desc");
  }
  if (dbType != "ACC97") throw RuntimeError::InvalidProcedureCall();
  const Statement ofType =
      type == InstructionType::None ? Statement() : session.Sql("And SITYPE = {} ", type);
  return session.Sql(
      "Select Distinct MONTHYEAR, Format('1/' & IIf(([MONTHYEAR] Mod 12)=0,12 & '/' & "
      "([MONTHYEAR]\\12-1),([MONTHYEAR] Mod 12) & '/' & [MONTHYEAR]\\12),'mmm/yyyy') AS MONTHNAME From "
      "INS_EMIDETAIL Where EMPID = {} {}ORDER BY MONTHYEAR DESC",
      employee, ofType);
}

std::vector<ListRow> ReadMonthList(Session& session) {
  std::vector<ListRow> months;
  for (Recordset rs(session.Cn, kMonthList); !rs.Eof(); rs.MoveNext())
    months.push_back({rs["MONTHNAME"].ToText(), rs["MONTHYEAR"].ToText()});
  return months;
}

}  // namespace ktl
