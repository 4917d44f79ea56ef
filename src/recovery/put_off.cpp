#include "recovery/put_off.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "database/statement_twin.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "frame/writing_turn.h"
#include "instructions/components.h"
#include "instructions/instruction_statements.h"
#include "recovery/emi_months.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr long kMenu = 19;
constexpr const char* kDeed = "Salary Editor -> Apply Deduction Preference";

// One instalment on its way.
class Move {
 public:
  Move(Session& session, const PreferenceRow& row, const PreferenceTerms& terms)
      : session_(session),
        row_(row),
        key_{row.employee, terms.type, row.serial},
        month_(terms.monthYear),
        amount_(Val(FormatNumber(row.moved, "0.00"))) {}

  void Run(PutOffTo to) {
    const bool audited = FnBlnAuditOn(session_);
    Transaction transaction(session_.Cn);
    RequireAsListed();
    apart_ = KeepsComponentsApart(session_, key_);
    if (apart_) StoreComponents(session_, key_);
    if (audited) AuditHead(to);
    TakeOut();
    RaiseFlags(session_, key_, month_);
    GiveToLaterMonths(to);
    if (audited) WriteAuditTrail(session_, kMenu, key_.employee, kDeed, audit_);
    transaction.Commit();
  }

 private:
  Statement OfMonth() const {
    return session_.Sql("Where EMPID = {} And SITYPE = {} And MONTHYEAR = {} And SERIALNO = {}",
                        key_.employee, key_.type, month_, key_.serial);
  }

  void RequireAsListed() {
    const Recordset now(session_.Cn, session_.Sql("Select MDFYAMT From INS_EMIDETAIL {}", OfMonth()));
    if (now.RecordCount() != 1 || now["MDFYAMT"].NumberOr0() != row_.emi ||
        IsHeld(session_, key_.employee, month_)) {
      throw ChangedMeanwhile();
    }
  }

  void AuditHead(PutOffTo to) {
    const auto value = [this](const Statement& amount) {
      return session_.data.Guarding(session_.Sql("SELECT ({}) FROM INS_EMIDETAIL {}", amount, OfMonth()))
          .ToText();
    };
    audit_ = fmt::format(
        "{}:::SI Type = {}:SI Name = {}:Serial No. = {}:Adjustment Type = {}::Month/Year = {}:EMI Amount = "
        "{} ({})",
        kDeed, InstructionCaption(session_, key_.type), row_.instruction, key_.serial,
        to == PutOffTo::NextMonth ? "Add to next month" : "Equally among all EMI",
        FnStrFormatMonthYear(month_), value(session_.Sql("MDFYAMT - {}", amount_)),
        value(Statement("MDFYAMT")));
  }

  void AuditMonth(long monthYear, const std::string& amounts) {
    audit_ += fmt::format("::Month/Year = {}:EMI Amount = {}", FnStrFormatMonthYear(monthYear), amounts);
  }

  // The embedded store gets the amount that remains, so that it reads the text once for all amounts.
  void TakeOut() {
    const double left = row_.emi - amount_;
    const Statement said =
        session_.Sql("Update INS_EMIDETAIL SET MDFYAMT = (MDFYAMT - {}) {}", amount_, OfMonth());
    const Statement embedded = session_.Sql("Update INS_EMIDETAIL SET MDFYAMT = {} {}", left, OfMonth());
    session_.Cn.Execute(StatementTwin{said, embedded});
    if (apart_) StoreComponentsOf(left, OfMonth());
  }

  void StoreComponentsOf(double amount, const Statement& month) {
    const Value interest =
        session_.data.Guarding(session_.Sql("Select MDFINTAMT From INS_EMIDETAIL {}", month));
    const ChangedComponents now = ComponentsOfChangedAmount(amount, interest.ToDouble());
    session_.Cn.Execute(session_.Sql("Update INS_EMIDETAIL SET MDFPRNAMT = {}, MDFINTAMT = {} {}",
                                     now.principal, now.interest, month));
  }

  void GiveToLaterMonths(PutOffTo to) {
    const LaterMonths found = LaterMonthsOf(session_, key_, month_);
    Recordset later(session_.Cn, StatementTwin{found.said, found.embedded});
    if (later.Eof()) return AddMonth();
    for (const double share : SharesOf(amount_, to, later.RecordCount())) {
      GiveToMonth(later, share);
      later.MoveNext();
    }
  }

  void GiveToMonth(const Recordset& month, double share) {
    const double before = month["MDFYAMT"].NumberOr0();
    const Statement condition =
        session_.Sql("Where EMPID = {} And SITYPE = {} And SERIALNO = {} And COUNTER = {}", key_.employee,
                     key_.type, key_.serial, month["COUNTER"].ToLong());
    session_.Cn.Execute(session_.Sql("Update INS_EMIDETAIL SET MDFYAMT = {} {}", before + share, condition));
    if (apart_) StoreComponentsOf(before + share, condition);
    AuditMonth(month["MONTHYEAR"].ToLong(),
               fmt::format("{} ({})", NumberText(before + share), NumberText(before)));
  }

  // The counter runs over all types of the serial number.
  void AddMonth() {
    const Statement instruction = session_.Sql("Where EMPID = {} And SERIALNO = {} And SITYPE = {}",
                                               key_.employee, key_.serial, key_.type);
    const long last =
        session_.data.Guarding(session_.Sql("Select MAX(MONTHYEAR) From INS_EMIDETAIL EMI {}", instruction))
            .ToLong();
    const std::string institution =
        session_.data
            .Guarding(
                session_.Sql("Select INSTID From INS_EMIDETAIL EMI {} And MONTHYEAR = {}", instruction, last),
                "Null")
            .ToText();
    const Statement counter = BracketedForAccess(session_, "COUNTER");
    const long next =
        clsCtrlDep(session_.data)
            .FnLngGetNextNumber(counter.text(), "INS_EMIDETAIL",
                                session_.Sql("EMPID = {} And SERIALNO = {}", key_.employee, key_.serial));
    session_.Cn.Execute(session_.Sql(
        "INSERT INTO INS_EMIDETAIL (EMPID, SERIALNO, SITYPE, MONTHYEAR, {}, MDFYAMT, INSTID, EMIAMT) "
        "VALUES({}, {}, {}, {}, {}, {}, {}, {})",
        counter, key_.employee, key_.serial, key_.type, last + 1, next, amount_, Statement(institution),
        amount_));
    if (apart_) StoreComponents(session_, key_);
    AuditMonth(last + 1, NumberText(amount_));
  }

  Session& session_;
  const PreferenceRow& row_;
  InstructionKey key_;
  long month_;
  double amount_;
  bool apart_ = false;  // principal and interest
  std::string audit_;
};

}  // namespace

std::vector<double> SharesOf(double amount, PutOffTo to, std::size_t months) {
  if (to == PutOffTo::NextMonth) return {amount};
  long left = Value(amount).ToLong();
  const long share = Value(FnDblRoundByType(1, amount / static_cast<double>(months))).ToLong();
  std::vector<double> shares(months - 1, static_cast<double>(share));
  left -= share * static_cast<long>(months - 1);
  shares.push_back(static_cast<double>(left));
  return shares;
}

LaterMonths LaterMonthsOf(Session& session, const InstructionKey& key, long monthYear) {
  const auto months = [&](const char* withoutSalary) {
    return session.Sql(
        "Select * From INS_EMIDETAIL Where EMPID = {} And SERIALNO = {} And SITYPE = {} And MONTHYEAR > {} "
        "And {} Order By MONTHYEAR",
        key.employee, key.serial, key.type, monthYear, Statement(withoutSalary));
  };
  return {months("(Select max(EMPID) From SLC_SALARYCALC_E SE, SLC_SALARYCALC_D SD Where MONTHYEAR = "
                 "INS_EMIDETAIL.MONTHYEAR And SE.EMPID = INS_EMIDETAIL.EMPID) IS NULL"),
          months("Not (Exists (Select SE.EMPID From SLC_SALARYCALC_E SE Where SE.MONTHYEAR = "
                 "INS_EMIDETAIL.MONTHYEAR And SE.EMPID = INS_EMIDETAIL.EMPID) And Exists (Select SD.SALID "
                 "From SLC_SALARYCALC_D SD))")};
}

void PutOff(Session& session, const PreferenceRow& row, const PreferenceTerms& terms, PutOffTo to) {
  Move(session, row, terms).Run(to);
}

}  // namespace ktl
