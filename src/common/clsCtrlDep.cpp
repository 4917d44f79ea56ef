#include "common/amounts.h"
#include "common/fetch.h"
#include "common/sql_text.h"
#include "database/recordset.h"

namespace ktl {
namespace {

std::string Joined(std::string_view joint, std::string_view condition) {
  return condition.empty() ? std::string() : std::string(joint).append(condition);
}

}  // namespace

bool clsCtrlDep::FnBlnMatchedWithList(std::string_view field, std::string_view table, std::string_view value,
                                      std::string_view condition) {
  const std::string name(field);
  return data_.FnBlnRecExists("Select " + name + " From  " + std::string(table) + " Where str(" + name +
                              ") = '" + DoubleQuotes(value) + "'" + Joined(" And ", condition));
}

long clsCtrlDep::FnLngGetNextNumber(std::string_view field, std::string_view table,
                                    std::string_view condition) {
  const Recordset rows(data_.Cn(), "Select MAX(" + std::string(field) + ") + 1 as NextNumber FROM " +
                                       std::string(table) + Joined(" Where ", condition));
  return CNull(rows["NextNumber"], 1).ToLong();
}

bool clsCtrlDep::FnBlnGetYesNo(std::string_view field, std::string_view table) {
  const Recordset rows(data_.Cn(),
                       "Select " + std::string(field) + " as YesNoData  From " + std::string(table));
  return !rows.Eof() && rows["YesNoData"].ToBoolean();
}

}  // namespace ktl
