#include "frame/fin_years.h"

#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/session.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

std::vector<ListRow> ReadFinYears(Session& session) {
  std::vector<ListRow> years;
  for (Recordset rs(session.Cn, FnStrGetFinYearQry(session.TdsMar2Feb)); !rs.Eof(); rs.MoveNext()) {
    const std::string year = rs["LSTYEAR"].TextOrEmpty();
    years.push_back({year, year});
  }
  return years;
}

long FinYearOf(const std::string& text) { return static_cast<long>(Val(Left(text, 4))); }

}  // namespace ktl
