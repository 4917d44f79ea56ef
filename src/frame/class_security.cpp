#include <fmt/format.h>

#include "frame/rights.h"
#include "frame/session.h"

namespace ktl {

namespace {

// The procedures fill [TMP...] with the employees that the user may see.
std::string FillCall(const Session& session, bool forNewestMonth, long newestMonth) {
  const std::string range = forNewestMonth ? fmt::format("1,{},1", newestMonth) : "0,0,0";
  return session.ExtendedYN ? fmt::format("dbo.ClassSecurityCloud {},{}", range, session.WinUserID)
                            : "dbo.ClassSecurity " + range;
}

}  // namespace

Statement ClassSecurityCondition(Session& session, std::string_view lead, bool forNewestMonth) {
  long newestMonth = 0;
  if (forNewestMonth) {
    newestMonth = session.data.Guarding("Select Max(MONTHYEAR) From MAS_MONTHYEAR").ToLong();
  }
  // Read again, so that ADMIN is not exempt here.
  const Value on = session.data.Guarding("SELECT CLASSSECURITYN FROM MAS_OPTSET");
  if (on.NumberOr0() != 1) return {};
  session.Cn.Execute(FillCall(session, forNewestMonth, newestMonth));
  return Statement(
      fmt::format("{} IN (SELECT EMPID FROM [TMP{}{}])", lead, session.hostName, session.FilterSuffix()));
}

}  // namespace ktl
