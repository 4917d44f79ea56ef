#include "frame/frmSelMonth.h"

#include <algorithm>

#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/handler_guard.h"
#include "frame/session.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr const char* kMonthNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::size_t kLettersOfName = 3;

}  // namespace

frmSelMonth::frmSelMonth(Session& session, PickerField field)
    : Screen("frmSelMonth"), session_(session), field_(std::move(field)) {
  caption = "Select Month Year";
  under = field_.control;
  const HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
  lstYear.onClick = on(&frmSelMonth::lstYear_Click);
  for (std::size_t month = 0; month < std::size(kMonthNames); ++month) {
    lblMonth.push_back(
        std::make_unique<Label>(*this, "lblMonth_" + std::to_string(month + 1), kMonthNames[month]));
    lblMonth[month]->onClick = on([this, month] { lblMonth_Click(month); });
  }
  lblClose.onClick = [this] { Unload(); };
}

void frmSelMonth::Form_Load() {
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] {
    LoadYear();
    FocusOnMonth();
  });
}

void frmSelMonth::LoadYear() {
  lstYear.rows.clear();
  Recordset rs(session_.Cn,
               "SELECT DISTINCT RIGHT(MONTHNAME,4) LYEARS FROM QryMonth ORDER BY RIGHT(MONTHNAME,4)  DESC");
  for (; !rs.Eof(); rs.MoveNext()) lstYear.rows.push_back({.text = rs["LYEARS"].TextOrEmpty()});
  if (lstYear.rows.empty()) return;
  lstYear.activeRow = 0;
  LoadMonths();
}

void frmSelMonth::lstYear_Click() { LoadMonths(); }

void frmSelMonth::Monthdisable() {
  for (const auto& label : lblMonth) label->enabled = false;
}

void frmSelMonth::LoadMonths() {
  Monthdisable();
  const long year = static_cast<long>(Val(lstYear.rows.at(lstYear.activeRow).text));
  Recordset rs(session_.Cn, session_.Sql("SELECT MONTHNAME,MONTHYEAR FROM QryMonth WHERE "
                                         "RIGHT(MONTHNAME,4)={} ORDER BY MONTHYEAR ASC",
                                         year));
  for (; !rs.Eof(); rs.MoveNext()) {
    const std::string name = Left(rs["MONTHNAME"].TextOrEmpty(), kLettersOfName);
    for (std::size_t month = 0; month < lblMonth.size(); ++month)
      if (EqualsNoCase(fetchmonthname(month), name)) lblMonth[month]->enabled = true;
  }
}

// The month that stands in the field, else the first one that can be chosen.
void frmSelMonth::FocusOnMonth() {
  const std::string now = field_.text ? FnStrCorrectMonth(field_.text()) : "";
  Label* first = nullptr;
  for (std::size_t month = 0; month < lblMonth.size(); ++month) {
    if (!lblMonth[month]->enabled) continue;
    if (first == nullptr || fetchmonthyear(month) == now) first = lblMonth[month].get();
  }
  if (first != nullptr) SetFocus(*first);
}

std::string frmSelMonth::fetchmonthname(std::size_t month) const {
  return Trim(ReplaceAll(lblMonth.at(month)->caption, "&", ""));
}

std::string frmSelMonth::fetchmonthyear(std::size_t month) const {
  return lstYear.activeRow < lstYear.rows.size()
             ? fetchmonthname(month) + "/" + lstYear.rows[lstYear.activeRow].text
             : "";
}

void frmSelMonth::lblMonth_Click(std::size_t month) {
  const std::string chosen = fetchmonthyear(month);
  if (chosen.empty()) return session_.Inform("Please Select The year");
  if (field_.write) field_.write(chosen);
  Unload();
}

}  // namespace ktl
