#include "instructions/instruction_master.h"

#include <fmt/format.h>

#include <map>

#include "common/fetch.h"
#include "database/recordset.h"
#include "frame/ported_stat.h"
#include "frame/session.h"
#include "frame/writing_turn.h"
#include "instructions/instruction_master_dialect.h"
#include "instructions/instruction_type.h"
#include "runtime/text.h"

namespace ktl {

namespace {

Statement NameCondition(Session& session, const std::string& name, const char* comparison = "=") {
  return session.Sql(" And UPPER(SINAME) {} '{}'", Statement(comparison), UpperCase(name));
}

InstructionMaster MasterOf(const Recordset& row) {
  return {
      .type = static_cast<InstructionType>(row["SITYPE"].ToLong()),
      .siName = row["SINAME"].TextOrEmpty(),
      .accCode = row["ACCCODE"].TextOrEmpty(),
      .tdsYn = IsSet(row["TDSYN"]),
      .tdsRefNo = WholeIfAny(row["TDSREFNO"]),
      .siPref = row["SIPREF"].NumberOr0(),
      .sepPiYn = IsSet(row["SEPPIYN"]),
      .sbiIfbYn = IsSet(row["SBIIFBYN"]),
      .amtLimit = NumberIfAny(row["AMTLIMIT"]),
      .allowLimit = NumberIfAny(row["ALLOWLIMIT"]),
      .emiRecCnt = NumberIfAny(row["EMIRECCNT"]),
      .intrRate = NumberIfAny(row["INTRRATE"]),
      .reducingBalYn = IsSet(row["REDUCINGBALYN"]),
  };
}

template <typename Number>
Value ValueOrNull(const std::optional<Number>& number) {
  return number ? Value(*number) : Value(Null{});
}

Value WholeOrNull(std::optional<double> number) {
  return number ? Value(Value(*number).ToLong()) : Value(Null{});
}

Value Flag(bool on) { return on ? 1 : 0; }

void AssignRules(Recordset& row, const InstructionMaster& master) {
  row.Set("SITYPE", NumberOf(master.type));
  row.Set("SINAME", master.siName);
  row.Set("ACCCODE", master.accCode.empty() ? Value(Null{}) : Value(master.accCode));
  row.Set("TDSYN", Flag(master.tdsYn));
  row.Set("TDSREFNO", ValueOrNull(master.tdsRefNo));
  row.Set("SIPREF", CNull(WholeOrNull(master.siPref), Null{}, true));
  row.Set("SEPPIYN", Flag(master.sepPiYn));
  row.Set("SBIIFBYN", Flag(master.sbiIfbYn));
}

// A company without advanced options loses what stood in the five columns.
void AssignAdvancedOptions(Recordset& row, const InstructionMaster& master, bool advanced) {
  row.Set("AMTLIMIT", advanced ? ValueOrNull(master.amtLimit) : Null{});
  row.Set("ALLOWLIMIT", advanced ? WholeOrNull(master.allowLimit) : Null{});
  row.Set("EMIRECCNT", advanced ? WholeOrNull(master.emiRecCnt) : Null{});
  row.Set("INTRRATE", advanced ? ValueOrNull(master.intrRate) : Null{});
  row.Set("REDUCINGBALYN", Flag(advanced && master.reducingBalYn));
}

void WriteByRecordset(Session& session, const InstructionMaster& master, const std::string& oldName,
                      bool advanced) {
  Recordset row(session.Cn,
                session.Sql("Select * From INS_MASTER Where SITYPE = {}{}", master.type,
                            NameCondition(session, oldName)),
                OpenMode::Update);
  if (row.Eof()) row.AddNew();
  AssignRules(row, master);
  AssignAdvancedOptions(row, master, advanced);
  row.Update();
}

void ExecuteAll(Session& session, const std::vector<Statement>& statements) {
  for (const Statement& statement : statements) session.Cn.Execute(statement);
}

Statement HouseLoanCondition(Session& session, const InstructionMaster& master) {
  return session.Sql(" Where SITYPE = {0} And {1} In (Select {1} From INS_ADVLOAN Where SITYPE = {0}{2})",
                     master.type, EmployeeSerialPair(kMasterDialect), NameCondition(session, master.siName));
}

std::optional<MasterRefusal> FindAdvancedRefusal(const InstructionMaster& master,
                                                 const std::string& caption) {
  if (master.amtLimit == 0.0) return MasterRefusal{"Enter Maximum Loan Amount.", MasterField::MaxAmount};
  if (master.allowLimit == 0)
    return MasterRefusal{"Enter Maximum " + caption + " allowed amount.", MasterField::MaxAllowed};
  if (master.emiRecCnt == 0) return MasterRefusal{"Enter number of EMI(s).", MasterField::RecEMI};
  if (master.intrRate == 0.0)
    return MasterRefusal{"Enter " + caption + " interest rate.", MasterField::InterestRate};
  return std::nullopt;
}

bool IsNameTaken(Session& session, const InstructionMaster& master) {
  return session.data.FnBlnRecExists(session.Sql("Select * From INS_MASTER Where SITYPE = {}{}", master.type,
                                                 NameCondition(session, master.siName)));
}

bool NeedsSection(const InstructionMaster& master) {
  return master.type >= InstructionType::Insurance && master.type <= InstructionType::GroupInsurance &&
         master.tdsYn;
}

// While the house-loan details are still there.
void RequireStorableCounts(const InstructionMaster& master, bool advanced) {
  WholeOrNull(master.siPref);
  if (!advanced) return;
  WholeOrNull(master.allowLimit);
  WholeOrNull(master.emiRecCnt);
}

}  // namespace

std::vector<InstructionMaster> ReadInstructionMasters(Session& session, InstructionType type) {
  std::vector<InstructionMaster> masters;
  Recordset rows(session.Cn, session.Sql("Select * From INS_MASTER Where SITYPE = {} Order By SINAME", type));
  std::map<long, std::string> sections;  // each asked once
  for (; !rows.Eof(); rows.MoveNext()) {
    InstructionMaster& master = masters.emplace_back(MasterOf(rows));
    if (!master.tdsRefNo) continue;
    const auto [section, isNew] = sections.try_emplace(*master.tdsRefNo);
    if (isNew) {
      section->second =
          session.data.Text(session.Sql("Select TDSREF From MAS_TDSREF Where TDSREFNO = {}", section->first));
    }
    master.section = section->second;
  }
  return masters;
}

std::string InstructionMasterRows(Session& session, InstructionType type) {
  return RowsAsText(session, session.Sql("Select * From INS_MASTER Where SITYPE = {} Order By SINAME", type));
}

std::vector<ListRow> ReadSections(Session& session) {
  std::vector<ListRow> sections;
  Recordset rows(session.Cn, "SELECT TDSREFNO, TDSREF FROM MAS_TDSREF WHERE TYPEID In(2) and TDSREFNO <> 8");
  for (; !rows.Eof(); rows.MoveNext())
    sections.push_back({rows["TDSREF"].TextOrEmpty(), rows["TDSREFNO"].TextOrEmpty()});
  return sections;
}

std::optional<MasterRefusal> FindMasterRefusal(Session& session, const InstructionMaster& master,
                                               const std::string& oldName, const std::string& caption,
                                               bool advanced) {
  if (master.siName.empty()) return MasterRefusal{"Enter " + caption + " Name.", MasterField::Name};
  if (advanced) {
    if (auto refusal = FindAdvancedRefusal(master, caption)) return refusal;
  }
  if (!EqualsNoCase(master.siName, oldName) && IsNameTaken(session, master))
    return MasterRefusal{"Entered " + caption + " already exists.", MasterField::Name};
  if (NeedsSection(master) && !master.tdsRefNo)
    return MasterRefusal{"Select the section for which TDS is applicable", MasterField::Section};
  RequireStorableCounts(master, advanced);
  return std::nullopt;
}

std::optional<MasterRefusal> FindPreferenceRefusal(Session& session, const InstructionMaster& master,
                                                   const std::string& oldName, const std::string& caption) {
  if (!IsAdvanceOrLoan(master.type) || master.siPref == 0) return std::nullopt;
  const Statement others = oldName.empty() ? Statement() : NameCondition(session, oldName, "<>");
  if (!session.data.FnBlnRecExists(
          session.Sql("Select SIPREF From INS_MASTER Where SITYPE = {} And SIPREF = {}{}", master.type,
                      master.siPref, others)))
    return std::nullopt;
  return MasterRefusal{
      "Deduction preference given is already set for another " + caption + "\r\nSpecify another number.",
      MasterField::DedPref};
}

bool HasHouseLoanDetails(Session& session, const InstructionMaster& master) {
  return session.data.FnBlnRecExists(
      session.Sql("Select SERIALNO From INS_HLOAN{}", HouseLoanCondition(session, master)));
}

void DeleteHouseLoanDetails(Session& session, const InstructionMaster& master) {
  const Statement condition = HouseLoanCondition(session, master);
  session.Cn.Execute(session.Sql("Delete From INS_HLOAN_VAL{}", condition));
  session.Cn.Execute(session.Sql("Delete From INS_HLOAN{}", condition));
}

void WriteInstructionMaster(Session& session, const InstructionMaster& master, const std::string& oldName,
                            bool advanced, const std::string& shown) {
  Transaction transaction(session.Cn);
  if (InstructionMasterRows(session, master.type) != shown) throw ChangedMeanwhile();
  if constexpr (kMasterDialect == "ORA") {
    ExecuteAll(session, OraSaveStatements(session, master, oldName, advanced));
  } else {
    WriteByRecordset(session, master, oldName, advanced);
    const bool renamed = !oldName.empty() && master.siName != oldName;
    if (renamed) ExecuteAll(session, RenameStatements(session, master, oldName));
  }
  transaction.Commit();
}

bool IsMasterInUse(Session& session, InstructionType type, const std::string& siName) {
  const TypeFacts& facts = FactsOf(type);
  return session.data.FnBlnRecExists(session.Sql("Select SITYPE From {} Where SITYPE = {} And {} = '{}'",
                                                 Statement(std::string(facts.table)), type,
                                                 Statement(std::string(facts.nameColumn)), siName));
}

void DeleteInstructionMaster(Session& session, InstructionType type, const std::string& siName) {
  session.Cn.Execute(session.Sql("Delete From INS_MASTER Where SITYPE = {} And SINAME = '{}'", type, siName));
}

void MarkInstructionsForPorting(Session& session, InstructionType type, const std::string& siName, int code) {
  Recordset rows(session.Cn,
                 session.Sql("SELECT * FROM INS_OTHER WHERE OTHNAME ='{}' AND SITYPE={}", siName, type));
  for (; !rows.Eof(); rows.MoveNext()) {
    const long employee = rows["EMPID"].ToLong();
    UpdateIncPortedStat(session, code, employee, CNull(rows["STARTMY"], 0).ToLong(), "",
                        CNull(rows["ENDMY"], 0).ToLong(), fmt::format(" EMPID = {}", employee));
  }
}

}  // namespace ktl
