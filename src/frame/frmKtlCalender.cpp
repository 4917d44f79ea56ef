#include "frame/frmKtlCalender.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/month_year.h"
#include "frame/handler_guard.h"
#include "frame/session.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr std::size_t kCells = 42;  // six weeks
constexpr int kYearsAround = 10;
constexpr int kFirstYear = 100, kLastYear = 9999;  // that a date can have
constexpr Colour kMarkedColour = 0xF6E5D5;
constexpr const char* kMonthNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                       "July",    "August",   "September", "October", "November", "December"};

}  // namespace

frmKtlCalender::frmKtlCalender(Session& session, PickerField field)
    : Screen("frmKtlCalender"),
      session_(session),
      field_(std::move(field)),
      shown_(session.machine.clock.Now()) {
  caption = "Calendar";
  under = field_.control;
  cmbMonth.editable = cmbYear.editable = false;
  const HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
  cmbMonth.onChange = cmbYear.onChange = on(&frmKtlCalender::FillDatesNew);
  for (std::size_t cell = 0; cell < kCells; ++cell) {
    lblDate.push_back(std::make_unique<Label>(*this, "lblDate_" + std::to_string(cell + 1)));
    lblDate[cell]->onClick = on([this, cell] { lblDate_Click(cell); });
  }
  lbltoady.onClick = on(&frmKtlCalender::lbltoady_Click);
  lblclose.onClick = [this] { Unload(); };
}

void frmKtlCalender::Form_Load() { loadCalender(); }

void frmKtlCalender::loadCalender() {
  const auto stands = field_.text ? ParseDate(field_.text()) : std::nullopt;
  if (stands) shown_ = *stands;
  LoadMonthYear(shown_);
  for (const auto& label : lblDate)
    if (label->caption == std::to_string(shown_.day())) SetFocus(*label);
}

void frmKtlCalender::LoadMonthYear(const Date& around) {
  loading_ = true;
  std::vector<ListRow> months, years;
  for (std::size_t month = 0; month < std::size(kMonthNames); ++month)
    months.push_back({kMonthNames[month], std::to_string(month + 1)});
  const int last = std::min(around.year() + kYearsAround, kLastYear);
  for (int year = std::max(around.year() - kYearsAround, kFirstYear); year <= last; ++year)
    years.push_back({std::to_string(year), std::to_string(year)});
  cmbMonth.SetRows(std::move(months));
  cmbYear.SetRows(std::move(years));
  cmbMonth.SetBoundText(std::to_string(around.month()));
  cmbYear.SetBoundText(std::to_string(around.year()));
  loading_ = false;
  FillDatesNew();
}

long frmKtlCalender::ChosenMonth() const {
  const long month = static_cast<long>(Val(cmbMonth.BoundText()));
  const long year = static_cast<long>(Val(cmbYear.BoundText()));
  return month == 0 || year == 0 ? 0 : year * 12 + month;
}

void frmKtlCalender::FillDatesNew() {
  if (loading_) return;
  ClearAll();
  if (const long month = ChosenMonth(); month != 0) filldates(month);
}

void frmKtlCalender::ClearAll() {
  for (const auto& label : lblDate) {
    label->caption.clear();
    label->enabled = false;
    label->backColour = kNoColour;
  }
}

// Every fourth year has a 29 February here, 1900 and 2100 too.
void frmKtlCalender::filldates(long monthYear) {
  const auto first = static_cast<std::size_t>(FirstDayOf(monthYear).weekday() - 1);
  const auto days = static_cast<std::size_t>(clsDateHandle::FnLngNumDaysInMonth(monthYear));
  for (std::size_t day = 1; day <= days; ++day) {
    Label& label = *lblDate[first + day - 1];
    label.caption = std::to_string(day);
    label.enabled = true;
    if (monthYear == MonthYearOf(shown_) && static_cast<int>(day) == shown_.day())
      label.backColour = kMarkedColour;
  }
}

void frmKtlCalender::lblDate_Click(std::size_t cell) {
  const long month = ChosenMonth();
  if (lblDate.at(cell)->caption.empty() || month == 0) return;
  const Date first = FirstDayOf(month);
  const auto day = static_cast<int>(Val(lblDate[cell]->caption));
  if (field_.write) field_.write(fmt::format("{:02}/{:02}/{:04}", day, first.month(), first.year()));
  Unload();
}

void frmKtlCalender::lbltoady_Click() { LoadMonthYear(session_.machine.clock.Now()); }

}  // namespace ktl
