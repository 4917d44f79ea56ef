#include "premium/premium_entry.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/advloan_data.h"
#include "instructions/entry_questions.h"
#include "premium/premium_data.h"
#include "premium/premium_write.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

using Checked = std::optional<PremiumRefusal>;

Checked Against(std::string text, PremiumField field = PremiumField::None) {
  return PremiumRefusal{.text = std::move(text), .field = field};
}

bool IsIncentive(const PremiumEntry& entry) { return entry.key.type == InstructionType::Incentive; }

double AsStored(const std::string& text) { return RoundByPattern(clsGenCmn::FnDblTrimVal(text), "0.00"); }

Checked CheckWhoAndWhat(Session& session, const PremiumEntry& entry) {
  const std::string word = LowerCase(entry.caption);
  if (!IsSerial(static_cast<double>(entry.key.serial)))
    return Against("Enter serial number.", PremiumField::Serial);
  if (entry.key.employee == 0) return Against("Select employee.", PremiumField::EmployeeName);
  if (entry.row.name.empty()) return Against("Specify the " + word + " name.", PremiumField::Name);
  if (NameAsListed(session, entry.key.type, entry.row.name).empty())
    return Against("Select " + word + " Name.", PremiumField::Name);
  if (!IsIncentive(entry) && entry.row.number.empty())
    return Against("Specify the " + word + " number.", PremiumField::Number);
  return {};
}

Checked CheckMonths(Session& session, const PremiumRow& row) {
  if (row.firstMonth == 0) return Against("Specify 'Start Month'.", PremiumField::StartMonth);
  if (!FnBlnMonthAllowed(session.options.STARTMONTHYEAR, FnStrFormatMonthYear(row.firstMonth))) {
    return Against("Given 'Start Month' cannot be before the 'Start Month' set.", PremiumField::StartMonth);
  }
  if (row.lastMonth == 0) return Against("Specify 'End Month'.", PremiumField::EndMonth);
  if (row.lastMonth < row.firstMonth)
    return Against("'Start Month' cannot be later than 'End Month'.", PremiumField::EndMonth);
  return {};
}

Checked CheckShare(const std::optional<FundShare>& share, const char* fund, PremiumField field) {
  if (!share || !share->counts) return {};
  if (share->percent <= 0) return Against(fmt::format("Specify {} contribution percentage.", fund), field);
  if (share->percent > 100)
    return Against(fmt::format("{} contribution not to be more than 100%.", fund), field);
  return {};
}

void MarkTaxFlagsOf(Session& session, const PremiumEntry& entry) {
  MarkTaxFlags(session, entry.key, entry.row.firstMonth, entry.row.lastMonth);
}

// Only the months are compared.
Checked CheckService(Session& session, const PremiumEntry& entry) {
  const Recordset rs(session.Cn,
                     session.Sql("Select DOJ, DOL From MAS_EMPLOYEE Where EMPID = {}", entry.key.employee));
  if (rs.Eof()) return {};
  const std::optional<Date> joined = DateIfAny(rs["DOJ"]), left = DateIfAny(rs["DOL"]);
  if (joined && entry.row.firstMonth < MonthYearOf(*joined))
    return Against("'Start Month' should be later than date of joining.", PremiumField::StartMonth);
  if (left && entry.row.firstMonth > MonthYearOf(*left))
    return Against("'Start Month' should be before date of leaving.", PremiumField::StartMonth);
  return {};
}

Checked CheckInstitution(const PremiumEntry& entry) {
  if (Trim(entry.typed.institution).empty()) return Against("Select institution.", PremiumField::Institution);
  if (!entry.institution) return Against("Select proper institution.", PremiumField::Institution);
  return {};
}

Checked CheckLocks(Session& session, const PremiumEntry& entry) {
  const long first = entry.row.firstMonth, last = entry.row.lastMonth;
  const long locked =
      session.data
          .Guarding(session.Sql("Select Count(MONTHYEAR) From MAS_MONTHYEAR Where LOCKEDYN = 1 And MONTHYEAR "
                                "Between {} And {}",
                                first, last))
          .ToLong();
  if (locked > 0) return Against("One or more month(s) locked.  Cannot save/update.");
  if (IsEmployeeLocked(session, entry.key.employee, first, std::to_string(last)))
    return PremiumRefusal{.text = "Employee has been locked. Cannot Save/Update.", .title = kDeniedTitle};
  return {};
}

}  // namespace

void PremiumEntry::ReadTyped(TypedPremium texts) {
  row.name = Trim(texts.name);
  row.number = Trim(texts.number);
  row.remarks = Trim(texts.remarks);
  row.firstMonth = FnLngMonthYear(FnStrCorrectMonth(texts.startMonth));
  row.lastMonth = FnLngMonthYear(FnStrCorrectMonth(texts.endMonth));
  if (key.type == InstructionType::Incentive) {
    const TypedShares& shares = texts.shares;
    row.pf = FundShare{shares.pf, shares.pf ? AsStored(shares.pfPercent) : 0};
    row.esi = FundShare{shares.esi, shares.esi ? AsStored(shares.esiPercent) : 0};
    row.pt = shares.pt;
  }
  amount = AsStored(texts.amount);
  typed = std::move(texts);
}

std::optional<PremiumRefusal> ValidatePremium(Session& session, const PremiumEntry& entry) {
  if (Checked refusal = CheckWhoAndWhat(session, entry)) return refusal;
  if (Checked refusal = CheckMonths(session, entry.row)) return refusal;
  if (Checked refusal = CheckShare(entry.row.pf, "PF", PremiumField::PfPercent)) return refusal;
  if (Checked refusal = CheckShare(entry.row.esi, "ESI", PremiumField::EsiPercent)) return refusal;
  if (entry.isNew && entry.amount <= 0)
    return Against("Specify " + LowerCase(entry.caption) + " amount.", PremiumField::Amount);
  // Before the rest of the checks: a save that one of them refuses has marked the flags all the same.
  MarkTaxFlagsOf(session, entry);
  if (!FnBlnWithinLimit(entry.typed.amount, kAmountLimit))
    return Against("Amount should be less than 9,99,99,99,999.99", PremiumField::Amount);
  if (Checked refusal = CheckService(session, entry)) return refusal;
  if (entry.isNew && !IsIncentive(entry)) {
    if (Checked refusal = CheckInstitution(entry)) return refusal;
  }
  if (Checked refusal = CheckLocks(session, entry)) return refusal;
  if (AreRemarksTooLong(entry.row.remarks)) return Against(kRemarksTooLong, PremiumField::Remarks);
  return {};
}

}  // namespace ktl
