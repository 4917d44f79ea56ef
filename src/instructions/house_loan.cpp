#include "instructions/house_loan.h"

#include <fmt/format.h>

#include "database/recordset.h"
#include "frame/session.h"
#include "frame/writing_turn.h"
#include "instructions/instruction_statements.h"

namespace ktl {

namespace {

struct Months {
  long first = 0;
  long last = 0;

  bool Holds(long month) const { return month >= first && month <= last; }
};

Months MonthsOf(Session& session, const InstructionKey& key) {
  const Statement where = WhereInstruction(key);
  return {
      session.data.Guarding(session.Sql("Select Min(MONTHYEAR) From INS_EMIDETAIL Where {}", where)).ToLong(),
      session.data.Guarding(session.Sql("Select Max(MONTHYEAR) From INS_EMIDETAIL Where {}", where))
          .ToLong()};
}

bool OverlapsAnother(Session& session, const InstructionKey& key) {
  const Months own = MonthsOf(session, key);
  if (own.first == 0 || own.last == 0) return false;
  Recordset others(
      session.Cn, session.Sql("Select * From INS_ADVLOAN Where EMPID = {} And SERIALNO <> {} And SITYPE = {}",
                              key.employee, key.serial, key.type));
  for (; !others.Eof(); others.MoveNext()) {
    const Months other = MonthsOf(session, {key.employee, key.type, others["SERIALNO"].ToLong()});
    if (own.Holds(other.first) || own.Holds(other.last)) return true;
  }
  return false;
}

bool HasNone(Session& session, const Statement& count) { return session.data.Guarding(count).ToLong() <= 0; }

bool HasNoHouse(Session& session, const InstructionKey& key) {
  return HasNone(session, session.Sql("Select COUNT(*) From INS_HLOAN Where {}", WhereInstruction(key)));
}

void SetKey(Recordset& row, const InstructionKey& key) {
  row.AddNew();
  row.Set("EMPID", key.employee);
  row.Set("SERIALNO", key.serial);
  row.Set("SITYPE", NumberOf(key.type));
}

void MarkForTax(Session& session, long employee, long year) {
  Recordset row(session.Cn,
                session.Sql("SELECT * FROM INC_PORTEDSTAT WHERE EMPID={} AND FINYEAR={}", employee, year),
                OpenMode::Update);
  if (row.Eof()) {
    row.AddNew();
    row.Set("EMPID", employee);
    row.Set("finyear", year);
  }
  row.Set("HOUSINGLOANYN", 1);
  row.Update();
}

}  // namespace

std::string HouseTypeText(HouseType type) {
  switch (type) {
    case HouseType::SelfOccupied:
      return "Self Occupied";
    case HouseType::LetOut:
      return "Let Out";
    case HouseType::UnOccupied:
      return "Un-Occupied";
    case HouseType::None:
      break;
  }
  return "";
}

std::string HouseYearText(long year) { return fmt::format("{}-{}", year, year + 1); }

std::vector<ListRow> ReadHouseTypes(Session& session) {
  std::vector<ListRow> types;
  // A constant row for every name, so a company without names has no types.
  Recordset rs(
      session.Cn,
      "Select 'Self Occupied' As HTYPE, 1 As HTID From INS_MASTER Union Select 'Let Out' As HTYPE, 2 "
      "As HTID From INS_MASTER Union Select 'Un-Occupied' As HTYPE, 3 As HTID From INS_MASTER");
  for (; !rs.Eof(); rs.MoveNext()) types.push_back({rs["HTYPE"].TextOrEmpty(), rs["HTID"].TextOrEmpty()});
  return types;
}

std::vector<ListRow> ReadYearsOfLoan(Session& session, const InstructionKey& key) {
  const Statement where =
      session.Sql("EMPID = {} And SITYPE = {} And SERIALNO = {}", key.employee, key.type, key.serial);
  std::vector<ListRow> years;
  Recordset rs(
      session.Cn,
      session.Sql(
          "Select DISTINCT(CASE WHEN MONTHYEAR % 12 > 3 THEN CAST(FLOOR(MONTHYEAR/12) AS VARCHAR) + '-' + "
          "CAST(FLOOR(MONTHYEAR/12)+ 1 AS VARCHAR) ELSE CAST(FLOOR(MONTHYEAR/12)-1 AS VARCHAR) + '-' + "
          "CAST(FLOOR(MONTHYEAR/12) AS VARCHAR)END) As FYEAR From INS_EMIDETAIL Where {} Union Select "
          "CAST(FINYEAR As VARCHAR) + '-' + CAST((FINYEAR + 1) As VARCHAR) As FYEAR From INS_HLOAN_VAL Where "
          "{}",
          where, where));
  for (; !rs.Eof(); rs.MoveNext()) {
    const std::string year = rs["FYEAR"].TextOrEmpty();
    years.push_back({year, year});
  }
  return years;
}

std::optional<HouseLoan> ReadHouseLoan(Session& session, const InstructionKey& key) {
  const Recordset rs(session.Cn, session.Sql("Select * From INS_HLOAN Where {}", WhereInstruction(key)));
  if (rs.Eof()) return std::nullopt;
  return HouseLoan{rs["HADDR"].TextOrEmpty(),
                   static_cast<HouseType>(static_cast<int>(rs["HTYPE"].NumberOr0())), IsSet(rs["HCAPBORYN"])};
}

std::vector<HouseYear> ReadHouseYears(Session& session, const InstructionKey& key) {
  std::vector<HouseYear> years;
  Recordset rs(session.Cn, session.Sql("Select * From INS_HLOAN_VAL Where {}", WhereInstruction(key)));
  for (; !rs.Eof(); rs.MoveNext()) {
    years.push_back({rs["FINYEAR"].ToLong(), rs["PRCPAMT"].NumberOr0(), rs["INTRAMT"].NumberOr0(),
                     rs["GRSANNVAL"].NumberOr0(), rs["MTAXPAID"].NumberOr0()});
  }
  return years;
}

std::string HouseRows(Session& session, const InstructionKey& key) {
  const Statement where = WhereInstruction(key);
  return RowsAsText(session, session.Sql("Select * From INS_HLOAN Where {}", where)) + "/" +
         RowsAsText(session, session.Sql("Select * From INS_HLOAN_VAL Where {} Order By FINYEAR", where));
}

std::optional<HouseRefusal> CheckHouseLoan(Session& session, const InstructionKey& key,
                                           const HouseLoan& house) {
  if (house.type == HouseType::None) return HouseRefusal{"Select the 'Type of House'.", HouseField::Type};
  if (house.type == HouseType::SelfOccupied && OverlapsAnother(session, key)) {
    return HouseRefusal{
        "House Loan already entered for 'Self Occupied' type.\r\nAnother of the same type not allowed.",
        HouseField::Type};
  }
  if (HasNone(session, session.Sql("SELECT COUNT(*) FROM INS_ADVLOAN WHERE {}", WhereInstruction(key))))
    return HouseRefusal{"First save the Main Details to save TDS Details."};
  return std::nullopt;
}

void WriteHouseLoan(Session& session, const InstructionKey& key, const HouseLoan& house) {
  Recordset row(session.Cn, session.Sql("Select * From INS_HLOAN Where {}", WhereInstruction(key)),
                OpenMode::Update);
  if (row.Eof()) SetKey(row, key);
  row.Set("HADDR", house.address);
  row.Set("HTYPE", static_cast<int>(house.type));
  row.Set("HCAPBORYN", house.type == HouseType::SelfOccupied && house.capitalBorrowed ? 1 : 0);
  row.Update();
}

std::optional<HouseRefusal> CheckHouseYear(Session& session, const InstructionKey& key,
                                           const HouseYear& year) {
  if (HasNoHouse(session, key)) return HouseRefusal{"Save house details to continue."};
  if (year.year == 0) return HouseRefusal{"Select 'Financial Year'.", HouseField::Year};
  if (year.principal == 0) return HouseRefusal{"Enter 'Principle Amount'.", HouseField::Principal};
  if (year.interest == 0) return HouseRefusal{"Enter 'Interest Amount'.", HouseField::Interest};
  return std::nullopt;
}

void WriteHouseYear(Session& session, const InstructionKey& key, const HouseYear& year) {
  Recordset row(
      session.Cn,
      session.Sql("Select * From INS_HLOAN_VAL Where {} And FINYEAR = {}", WhereInstruction(key), year.year),
      OpenMode::Update);
  if (row.Eof()) {
    SetKey(row, key);
    row.Set("finyear", year.year);
  }
  row.Set("PRCPAMT", year.principal);
  row.Set("INTRAMT", year.interest);
  row.Set("GRSANNVAL", year.annualValue);
  row.Set("MTAXPAID", year.municipalTax);
  row.Update();
  MarkForTax(session, key.employee, year.year);
}

void RemoveHouseYear(Session& session, const InstructionKey& key, long year) {
  session.Cn.Execute(
      session.Sql("Delete From INS_HLOAN_VAL Where {} And FINYEAR = {}", WhereInstruction(key), year));
}

std::optional<HouseRefusal> CheckHouseDelete(Session& session, const InstructionKey& key) {
  if (HasNoHouse(session, key)) return HouseRefusal{"No record found to delete."};
  return std::nullopt;
}

void DeleteHouseLoan(Session& session, const InstructionKey& key) {
  DeleteRows(session, "INS_HLOAN_VAL", key);
  DeleteRows(session, "INS_HLOAN", key);
}

}  // namespace ktl
