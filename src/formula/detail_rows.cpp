#include "formula/detail_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

#include "common/sql_text.h"
#include "database/recordset.h"
#include "frame/session.h"

namespace ktl {
namespace {

constexpr std::size_t kBlock = 500;
constexpr const char* kMonth = "MONTH(EFFFROMDATE) + (YEAR(EFFFROMDATE) * 12)";

}  // namespace

std::optional<long> DetailRowOfMonth(Session& session, long empId, long monthYear, DetailRowRule rule) {
  const Recordset rows(
      session.Cn,
      fmt::format("Select * From MAS_EMPLOYEEDET Where EMPID = {0} And {3} = (Select Max({3}) From "
                  "MAS_EMPLOYEEDET Where EMPID = {0} And {2} <= {1})",
                  empId, monthYear, kMonth, rule == DetailRowRule::LatestMonth ? kMonth : "EMPDETID"));
  if (rows.Eof()) return std::nullopt;
  return rows["EMPDETID"].ToLong();
}

std::unordered_map<long, long> DetailRowsOfMonth(Session& session, const std::vector<long>& employees,
                                                 long monthYear) {
  std::unordered_map<long, long> detailRows;
  // In the order of their numbers, so that those who are read together stand together.
  std::vector<long> byNumber = employees;
  std::ranges::sort(byNumber);
  for (std::size_t first = 0; first < byNumber.size(); first += kBlock) {
    const auto block = std::span(byNumber).subspan(first, std::min(kBlock, byNumber.size() - first));
    Recordset rows(session.Cn,
                   fmt::format("Select EMPID, EMPDETID From MAS_EMPLOYEEDET D Where {0} And {2} = (Select "
                               "Max({2}) From MAS_EMPLOYEEDET Where EMPID = D.EMPID And {2} <= {1})",
                               AmongNumbers("EMPID", block), monthYear, kMonth));
    for (; !rows.Eof(); rows.MoveNext()) detailRows.try_emplace(rows[0].ToLong(), rows[1].ToLong());
  }
  return detailRows;
}

}  // namespace ktl
