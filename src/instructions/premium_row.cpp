#include "instructions/premium_row.h"

#include "common/fetch.h"
#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"

namespace ktl {

namespace {

FundShare ShareOf(const Recordset& row, const char* counts, const char* percent) {
  return {IsSet(row[counts]), row[percent].NumberOr0()};
}

void ReadIncentive(Session& session, const InstructionKey& key, PremiumRow& premium) {
  const Recordset rs(
      session.Cn,
      session.Sql("Select PFYN, PFPER, ESIYN, ESIPER, PTYN From INS_OTHER Where {}", WhereInstruction(key)));
  premium.pf = ShareOf(rs, "PFYN", "PFPER");
  premium.esi = ShareOf(rs, "ESIYN", "ESIPER");
  premium.pt = IsSet(rs["PTYN"]);
}

void SetShare(Recordset& row, const char* counts, const char* percent,
              const std::optional<FundShare>& share) {
  if (!share) return;
  row.Set(counts, share->counts ? 1 : 0);
  row.Set(percent, share->percent);
}

}  // namespace

std::optional<PremiumRow> ReadPremium(Session& session, const InstructionKey& key) {
  const Recordset rs(session.Cn,
                     session.Sql("Select OTHNAME, OTHNO, STARTMY, ENDMY, REMARKS From INS_OTHER Where {}",
                                 WhereInstruction(key)));
  if (rs.Eof()) return std::nullopt;
  PremiumRow premium{.name = rs["OTHNAME"].TextOrEmpty(),
                     .number = rs["OTHNO"].TextOrEmpty(),
                     .firstMonth = static_cast<long>(rs["STARTMY"].NumberOr0()),
                     .lastMonth = static_cast<long>(rs["ENDMY"].NumberOr0()),
                     .remarks = rs["REMARKS"].TextOrEmpty()};
  if (key.type == InstructionType::Incentive) ReadIncentive(session, key, premium);
  return premium;
}

bool StorePremium(Session& session, const InstructionKey& key, const PremiumRow& premium) {
  Recordset row(session.Cn, session.Sql("Select * From INS_OTHER Where {}", WhereInstruction(key)),
                OpenMode::Update);
  const bool isNew = row.Eof();
  const bool incentive = key.type == InstructionType::Incentive;
  if (isNew) {
    row.AddNew();
    row.Set("EMPID", key.employee);
    row.Set("SERIALNO", key.serial);
    row.Set("SITYPE", NumberOf(key.type));
  }
  row.Set("OTHNAME", premium.name);
  if (!incentive) row.Set("OTHNO", premium.number);
  row.Set("STARTMY", premium.firstMonth);
  row.Set("ENDMY", premium.lastMonth);
  row.Set("REMARKS", premium.remarks);
  if (incentive) {
    SetShare(row, "PFYN", "PFPER", premium.pf);
    SetShare(row, "ESIYN", "ESIPER", premium.esi);
    row.Set("PTYN", premium.pt ? 1 : 0);
  }
  row.Update();
  return isNew;
}

}  // namespace ktl
