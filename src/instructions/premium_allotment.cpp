#include "instructions/premium_allotment.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/advloan_data.h"
#include "instructions/entry_questions.h"
#include "instructions/instruction_statements.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr double kWhole = 100;  // percent

using Checked = std::optional<PremiumAllotRefusal>;

Checked Against(std::string text, PremiumAllotField field = PremiumAllotField::None) {
  return PremiumAllotRefusal{.text = std::move(text), .field = field};
}

Checked CheckNameAndNumber(Session& session, const PremiumAllotment& premium) {
  if (premium.name.empty())
    return Against("Specify the " + LowerCase(premium.caption) + " name.", PremiumAllotField::Name);
  if (!IsNameListed(session, premium.type, premium.name))
    return Against("Select " + premium.caption + " Name.", PremiumAllotField::Name);
  if (premium.type == InstructionType::GroupInsurance && premium.number.empty())
    return Against("Specify the " + premium.caption + " number.", PremiumAllotField::Number);
  return {};
}

Checked CheckMonths(Session& session, const PremiumAllotment& premium) {
  if (premium.firstMonth == 0) return Against("Specify 'Start Month'.", PremiumAllotField::StartMonth);
  if (premium.lastMonth == 0) return Against("Specify 'End Month'.", PremiumAllotField::EndMonth);
  if (premium.firstMonth > premium.lastMonth)
    return Against("Start Month cannot be later than End Month.", PremiumAllotField::StartMonth);
  const Value locked = session.data.Guarding(
      session.Sql("Select Count(MONTHYEAR) From MAS_MONTHYEAR Where LOCKEDYN = 1 And MONTHYEAR Between {} "
                  "And {}",
                  premium.firstMonth, premium.lastMonth));
  return locked.ToLong() > 0 ? Against("One or more month(s) locked.  Cannot save.") : Checked();
}

Checked CheckAmount(Session& session, const PremiumAllotment& premium) {
  if (!premium.amountByFormula && premium.amount == 0)
    return Against("Specify " + premium.caption + " amount.", PremiumAllotField::Amount);
  if (premium.firstMonth < session.options.STARTMONTHYEAR) {
    return Against("Given 'Start Month' cannot be before the 'Start Month' set.",
                   PremiumAllotField::StartMonth);
  }
  if (premium.amount > kAmountLimit)
    return Against("Amount should be less than 9,99,99,99,999.99", PremiumAllotField::Amount);
  return {};
}

Checked CheckShare(const char* fund, const FundShare& share, const std::string& typed,
                   PremiumAllotField field) {
  if (!share.counts) return {};
  if (Trim(typed).empty()) return Against(fmt::format("Specify {} contribution percentage.", fund), field);
  if (share.percent > kWhole)
    return Against(fmt::format("{} contribution not to be more than 100%.", fund), field);
  return {};
}

Checked CheckShares(const PremiumAllotment& premium) {
  if (premium.type != InstructionType::Incentive) return {};
  if (Checked refusal =
          CheckShare("PF", premium.pf, premium.typed.shares.pfPercent, PremiumAllotField::PfPercent))
    return refusal;
  return CheckShare("ESI", premium.esi, premium.typed.shares.esiPercent, PremiumAllotField::EsiPercent);
}

// Of the employee: an incentive counts only for the funds that he belongs to.
PremiumRow RowFor(Session& session, const PremiumAllotment& premium, long employee) {
  PremiumRow row{.name = premium.name,
                 .number = premium.number,
                 .firstMonth = premium.firstMonth,
                 .lastMonth = premium.lastMonth,
                 .remarks = premium.remarks,
                 .pt = premium.pt};
  if (premium.type != InstructionType::Incentive) return row;
  const Recordset funds(session.Cn,
                        session.Sql("Select PFYN, ESIYN From MAS_EMPLOYEE Where EMPID = {}", employee));
  if (funds.Eof()) return row;
  if (IsSet(funds["PFYN"])) row.pf = premium.pf;
  if (IsSet(funds["ESIYN"])) row.esi = premium.esi;
  return row;
}

const char* WordOf(PremiumPeriod period) {
  switch (period) {
    case PremiumPeriod::Quarterly:
      return "Quarterly";
    case PremiumPeriod::HalfYearly:
      return "Half Yearly";
    case PremiumPeriod::Yearly:
      return "Yearly";
    case PremiumPeriod::Monthly:
      break;
  }
  return "Monthly";
}

std::string ShareText(const char* fund, const std::optional<FundShare>& share) {
  const FundShare told = share.value_or(FundShare{});
  return fmt::format(":{0} Enabled = {1}:{0} Percentage = {2}", fund, told.counts ? "Yes" : "No",
                     NumberText(told.percent));
}

// Every label for both types, also where an incentive has nothing to tell.
std::string AuditText(const PremiumAllotment& premium, const PremiumRow& row, double amount) {
  const std::string text = fmt::format(
      "::SI Type = {}:SI Name = {}:Policy Number = {}:Start Month = {}:End Month = {}:Amount/Month = "
      "{}:Premium Payment = {}:Institution = {}:Remarks = {}",
      FactsOf(premium.type).word, row.name, row.number, FnStrFormatMonthYear(row.firstMonth),
      FnStrFormatMonthYear(row.lastMonth), NumberText(amount), WordOf(premium.period),
      premium.institutionName, row.remarks);
  if (premium.type != InstructionType::Incentive) return text;
  return text + ShareText("PF", row.pf) + ShareText("ESI", row.esi) +
         ":PT Enabled = " + (row.pt ? "Yes" : "No");
}

}  // namespace

void PremiumAllotment::ReadTyped(TypedPremiumAllotment texts) {
  const auto rounded = [](const std::string& text) {
    return RoundByPattern(clsGenCmn::FnDblTrimVal(text), "0.00");
  };
  const auto month = [](const std::string& text) { return FnLngMonthYear(FnStrCorrectMonth(text)); };
  name = Trim(texts.name);
  number = Trim(texts.number);
  remarks = Trim(texts.remarks);
  firstMonth = month(texts.startMonth);
  lastMonth = month(texts.endMonth);
  amount = rounded(texts.amount);
  pf = {texts.shares.pf, rounded(texts.shares.pfPercent)};
  esi = {texts.shares.esi, rounded(texts.shares.esiPercent)};
  pt = texts.shares.pt;
  typed = std::move(texts);
}

std::optional<PremiumAllotRefusal> ValidatePremiumAllotment(Session& session, const PremiumAllotment& premium,
                                                            const std::vector<long>& employees) {
  if (Checked refusal = CheckNameAndNumber(session, premium)) return refusal;
  if (Checked refusal = CheckMonths(session, premium)) return refusal;
  if (Checked refusal = CheckAmount(session, premium)) return refusal;
  if (Checked refusal = CheckShares(premium)) return refusal;
  if (IsAnyLocked(session, employees, premium.firstMonth, std::to_string(premium.lastMonth))) {
    return PremiumAllotRefusal{.text = kSomeEmployeeLocked, .icon = Icon::Exclamation, .title = kDeniedTitle};
  }
  if (AreRemarksTooLong(premium.remarks)) return Against(kRemarksTooLong, PremiumAllotField::Remarks);
  return {};
}

std::optional<PremiumAllotRefusal> CheckPremiumInstitution(const PremiumAllotment& premium) {
  if (premium.type != InstructionType::GroupInsurance || premium.institution) return {};
  return Against("Select institution.", PremiumAllotField::Institution);
}

void WriteAllottedPremium(Session& session, const PremiumAllotment& premium, long employee, double amount) {
  const InstructionKey key{employee, premium.type, NextSerial(session, employee, premium.type)};
  const PremiumRow row = RowFor(session, premium, employee);
  if (StorePremium(session, key, row)) {
    WritePremiumSchedule(session, key, {amount, row.firstMonth, row.lastMonth, premium.period},
                         premium.institution.value_or(0));
  }
  RaiseEditMode(session, employee, MonthsOfInstruction(key), AttendanceWording::EmployeeFirst);
  AuditInstruction(session, employee, fmt::format("{} Added", FactsOf(premium.type).word),
                   AuditText(premium, row, amount));
}

}  // namespace ktl
