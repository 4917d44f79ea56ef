#include "premium/premium_data.h"

#include <set>

#include "common/fetch.h"
#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"

namespace ktl {

namespace {

FundShare ShareOf(const Recordset& row, const char* counts, const char* percent) {
  return {IsSet(row[counts]), row[percent].NumberOr0()};
}

Statement ScheduleStatement(Session& session, const InstructionKey& key) {
  const Statement ofInstruction = session.Sql("EMI.EMPID = {} And EMI.SERIALNO = {} And EMI.SITYPE = {}",
                                              key.employee, key.serial, key.type);
  if (!HasInstitution(key.type)) {
    return session.Sql(
        "Select EMI.COUNTER, EMI.MONTHYEAR, EMI.EMIAMT, EMI.MDFYAMT, '' As INSTNAME From INS_EMIDETAIL EMI "
        "Where {} And EMI.EMIAMT <> 0 Order By EMI.MONTHYEAR",
        ofInstruction);
  }
  return session.Sql(
      "Select EMI.COUNTER, EMI.MONTHYEAR, EMI.EMIAMT, EMI.MDFYAMT, INST.INSTNAME From INS_EMIDETAIL EMI, "
      "MAS_INSTITUTION INST Where {} And EMI.INSTID = INST.INSTID And (EMI.EMIAMT <> 0 or EMI.MDFYAMT <> 0) "
      "And INST.TYPEID = {} Order By EMI.MONTHYEAR",
      ofInstruction, key.type);
}

// All months in one statement: a schedule of thirty years would ask 360 times.
std::set<long> ReadPaidMonths(Session& session, const InstructionKey& key) {
  std::set<long> months;
  for (Recordset rs(
           session.Cn,
           session.Sql("Select {}, SE.MONTHYEAR From INS_EMIDETAIL E, SLC_SALARYCALC_E SE, SLC_SALARYCALC_D "
                       "SD Where E.EMPID = SE.EMPID And E.MONTHYEAR = SE.MONTHYEAR And SE.SALID = SD.SALID "
                       "And E.EMPID = {} And E.SITYPE = {} And E.SERIALNO = {}",
                       Statement(std::string(FactsOf(key.type).salaryHead)), key.employee, key.type,
                       key.serial));
       !rs.Eof(); rs.MoveNext())
    if (rs[0].NumberOr0() > 0) months.insert(rs[1].ToLong());
  return months;
}

}  // namespace

std::vector<PremiumListRow> ReadPremiumList(Session& session, long employee, InstructionType type) {
  std::vector<PremiumListRow> list;
  Recordset rs(session.Cn,
               session.Sql("Select SERIALNO, OTHNAME, OTHNO, STARTMY, ENDMY, REMARKS, PFYN, PFPER, ESIYN, "
                           "ESIPER, PTYN From INS_OTHER Where EMPID = {} And SITYPE = {} Order By SERIALNO",
                           employee, type));
  for (; !rs.Eof(); rs.MoveNext()) {
    list.push_back({static_cast<long>(rs["SERIALNO"].NumberOr0()),
                    {.name = rs["OTHNAME"].TextOrEmpty(),
                     .number = rs["OTHNO"].TextOrEmpty(),
                     .firstMonth = static_cast<long>(rs["STARTMY"].NumberOr0()),
                     .lastMonth = static_cast<long>(rs["ENDMY"].NumberOr0()),
                     .remarks = rs["REMARKS"].TextOrEmpty(),
                     .pf = ShareOf(rs, "PFYN", "PFPER"),
                     .esi = ShareOf(rs, "ESIYN", "ESIPER"),
                     .pt = IsSet(rs["PTYN"])}});
  }
  return list;
}

std::vector<ScheduleMonth> ReadPremiumSchedule(Session& session, const InstructionKey& key) {
  const std::set<long> paid = ReadPaidMonths(session, key);
  std::vector<ScheduleMonth> schedule;
  for (Recordset rs(session.Cn, ScheduleStatement(session, key)); !rs.Eof(); rs.MoveNext()) {
    ScheduleMonth month = ReadScheduleMonth(rs);
    month.recoveredBySalary = paid.contains(month.monthYear);
    schedule.push_back(std::move(month));
  }
  return schedule;
}

PremiumTotals ReadPremiumTotals(Session& session, long employee, InstructionType type) {
  return {.scheduled = session.data.Number(session.Sql(
              "Select Sum(MDFYAMT) From INS_EMIDETAIL Where EMPID = {} And SITYPE = {}", employee, type)),
          .fromSalary = session.data.Number(
              session.Sql("Select Sum({}) From SLC_SALARYCALC_E E, SLC_SALARYCALC_D D Where E.SALID = "
                          "D.SALID And E.EMPID = {}",
                          Statement(std::string(FactsOf(type).salaryColumn)), employee))};
}

FundSwitches ReadFundSwitches(Session& session, long employee) {
  const Recordset sums(
      session.Cn,
      session.Sql(" SELECT SUM(PFYN)AS PFYN,SUM(ESIYN)AS ESIYN FROM  (Select PFYN, ESIYN From MAS_EMPLOYEE "
                  "WHERE EMPID={} UNION All  SELECT PFYN, ESIYN FROM MAS_EMPLOYEEEXT  WHERE EMPID= {} ) A ",
                  employee, employee));
  return {.pf = IsSet(sums["PFYN"]),
          .esi = IsSet(sums["ESIYN"]),
          .pt = session.data.Number(
                    session.Sql("Select PTZEROYN From MAS_EMPLOYEE Where EMPID = {}", employee)) == 0};
}

std::string NameAsListed(Session& session, InstructionType type, std::string_view name) {
  const Recordset rs(session.Cn,
                     session.Sql("Select * From INS_MASTER Where SITYPE = {} And SINAME = '{}'", type, name));
  return rs.Eof() ? "" : rs["SINAME"].TextOrEmpty();
}

}  // namespace ktl
