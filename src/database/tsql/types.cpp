#include "database/tsql/types.h"

#include <algorithm>
#include <array>
#include <unordered_map>

#include "database/tsql/words.h"

namespace ktl::tsql {

namespace {

// One name has one type wherever it stands, but for PFEFFFROM, which is a month in one table and never meets
// a literal there.
constexpr std::string_view kDates =
    "ASONDATE BRGHEFROM CALCENDDATE CALCSTARTDATE CHANGEDDATE CLAIMDATE CONFIRMATIONDATE DOB DOJ DOL "
    "EFFFROMDATE "
    "EFFTODATE HOLIDAYDATE LEAVEDATE LEVDATE LOGDATE PFEFFFROM RCPTDATE RESIGNATIONDATE RETIREMENTDATE "
    "SALCALCFROM SIDATE WEEKDATE ";
// Columns declared with the comparer of letter case and trailing blanks.
constexpr std::string_view kTexts =
    "ACCCODE ATTDESC ATTHEADNAME ATTMENUNAME BRANCHNAME BUTNAME CALCFLDTYPE CAPTION CMPNAME COLNAME "
    "COLUMN_NAME "
    "DATA_TYPE DEPARTMENT DERIVABLETOTCAP DESIGNATION DIVISION EFFFRMSET EMPIDCAP EMPNAME FINANCIALYEAR "
    "FNAME "
    "FORMULA FORMULANAME GRADE INSTNAME LEVSHORT LOANACNO LOANNAME LOANTYPE LYEARS MONTHNAME NAME OCCUPATION "
    "OTHNAME OTHNO PDLISTDESC PDLISTNAME PFSEPARATOR PTGRPNAME REFNO REFNOCAP RMBNAME SALHEADING "
    "SALSTRUCTCAP SEX "
    "SINAME STRUCTDESC SYSTEMNAME TABLE_NAME TDSREF UNAME USERNAME WINUSER ";
constexpr std::string_view kPlainTexts =
    "ACTIONTEXT ADDRESS DETAILTEXT EXTRATEXT FQUERY HADDR NODREMARKS REMARKS ";
constexpr std::string_view kReals =
    "ACTAMT ACTINTAMT ACTPRNAMT ADJHRS ADVANCE ALLOTAMT AMTLIMIT BASIC BENAMT BENAMT2 CLAIMAMT COLIMIT "
    "COLOWERLIMIT EDITEDINT EMIAMT ESIPER ETOTAL FULLDAYCUTOFF GRATUITYPROV GRPINSURANCE GRSANNVAL "
    "HALFDAYCUTOFF "
    "INSURANCE INTAMT INTEREST INTRAMT INTRRATE LAPSELIMIT LEVMONTHLY LEVVALUE LOAN MAXIMUMFULLDAY "
    "MAXIMUMHALFDAY "
    "MDFINTAMT MDFPRNAMT MDFYAMT MDFYINTAMT MDFYPRNAMT MINIMUMFULLDAY MINIMUMHALFDAY MTAXPAID NDP NETAMOUNT "
    "NOD "
    "OPBAL ORIGINALINT OT1 OT2 OTMINHOUR PFPER PRCPAMT RCPTAMT RCPTINTAMT RCPTPRNAMT SALCALDAYS SBIINT "
    "SIEARNING "
    "SSS TAKEN TOTALENTERED UNIT UPPERLIMIT ";
constexpr std::string_view kIntegers =
    "ALLOTASPER ALLOTFOR ALLOTON ALLOTRNDTYPE ALLOTTYPE ALLOWLIMIT ARRCALCTYPE ARREARID ARREARTRANID "
    "ASSTRANID "
    "ASSYEAR ATTHEADID ATTNCALCTYPE ATTNTYPE ATTSLNO AUDITID AUTOPFTYPE AUTOSLNO BRANCHID BUTID CLIENTID "
    "COLID "
    "COLUMN_ID COTYPE COUNTER DATAPORTED DEFMONTHYEAR DEFREPORTTYPE DEFSTRUCTID DEFVAL EFFFROM EMIRECCNT "
    "EMPDETID "
    "EMPEXTID EMPID ENCASHMINBAL ENDMONTHYEAR ENDMY ESIEFFFROM ESIONMNYR FILTER FINYEAR FIRSTHALF FORMID "
    "FORMULAID FULLDAYOT2 FULLSAL GROUPID HALFSAL HOLIDAYID HOLPRIORITY HTYPE INDICATOR INSTID INTFRLNRULE "
    "INTID "
    "KTLUSERID LAPSEMONTH LAPSENEGATIVE LEVID LEVMINDAYS LVSTARTMNYEAR MASTERID MENUNO MINAVAILDATETYPE "
    "MINAVAILDAYS MINAVAILMONTH MINDATETYPE MINDAYS MINLEVDAYS MINMONTH MODULEID MONTHYEAR MULTILOGIN "
    "NODFORCALC "
    "NOSAL OBJECT_ID ORDINAL_POSITION PAIDFOR PDID PFRESTRICTEFFFROM PRIORITY PTGROUPID PTGRPID REFID "
    "RETIREAGEON "
    "RMBALLOTID RMBID RNDTYPE ROUNDTYPE SALARYMONTH SALHEADROWID SALID SALRATEID SECONDHALF SERIALNO SIPREF "
    "SITYPE STARTMONTHYEAR STARTMY STRUCTID TDSMAR2FEB TDSREFNO TRANSFERED TYPEID USERID WEEKID WHID ";

struct Column {
  Type type;
  bool plainText;
};

using Columns = std::unordered_map<std::string_view, Column, WordHash, WordEqual>;

void AddColumns(Columns& columns, std::string_view names, Column column) {
  while (!names.empty()) {
    const auto blank = names.find(' ');
    columns.emplace(names.substr(0, blank), column);
    names.remove_prefix(blank + 1);
  }
}

const Columns& KnownColumns() {
  static const Columns columns = [] {
    Columns all;
    AddColumns(all, kDates, {Type::Date, false});
    AddColumns(all, kTexts, {Type::Text, false});
    AddColumns(all, kPlainTexts, {Type::Text, true});
    AddColumns(all, kReals, {Type::Real, false});
    AddColumns(all, kIntegers, {Type::Integer, false});
    return all;
  }();
  return columns;
}

bool IsNumbered(std::string_view name, std::string_view stem) {
  return name.size() > stem.size() && SameWord(name.substr(0, stem.size()), stem) &&
         std::ranges::all_of(name.substr(stem.size()), [](char c) { return c >= '0' && c <= '9'; });
}

Column ColumnOf(std::string_view name) {
  const auto& known = KnownColumns();
  if (const auto found = known.find(name); found != known.end()) return found->second;
  if (IsNumbered(name, "ECOMP") || IsNumbered(name, "DCOMP")) return {Type::Real, false};
  if (IsNumbered(name, "FIELD") || IsNumbered(name, "EXTCLASS")) return {Type::Text, false};
  if (name.size() > 2 && SameWord(name.substr(name.size() - 2), "YN")) return {Type::Integer, false};
  return {Type::Unknown, false};
}

constexpr std::array kFunctions{
    Function{"ABS", Type::NotAsked, 1, 1},
    Function{"CEILING", Type::NotAsked, 1, 1},
    Function{"CHARINDEX", Type::Integer, 2, 3},
    Function{"COALESCE", Type::NotAsked, 2, 100},
    Function{"COUNT", Type::Integer, 1, 1, Role::Aggregate},
    Function{"DATEDIFF", Type::Integer, 3, 3, Role::Dates},
    Function{"DAY", Type::Integer, 1, 1, Role::Dates},
    Function{"FLOOR", Type::NotAsked, 1, 1},
    Function{"FNSTRMONTHNAME", Type::Text, 1, 1},
    Function{"GETDATE", Type::Date, 0, 0},
    Function{"HOST_NAME", Type::Text, 0, 0},
    Function{"ISNULL", Type::NotAsked, 2, 2},
    Function{"KTL_LATERSUM", Type::Real, 3, 3},
    Function{"KTL_LATERSUMS", Type::Unknown, 3, 3, Role::Aggregate},
    Function{"KTL_PICKEDSUM", Type::Real, 3, 3},
    Function{"KTL_PICKEDSUMS", Type::Unknown, 6, 6, Role::Aggregate},
    Function{"LEFT", Type::Text, 2, 2},
    Function{"LEN", Type::Integer, 1, 1},
    Function{"LOWER", Type::Text, 1, 1},
    Function{"LTRIM", Type::Text, 1, 1},
    Function{"MAX", Type::NotAsked, 1, 1, Role::Aggregate},
    Function{"MIN", Type::NotAsked, 1, 1, Role::Aggregate},
    Function{"MONTH", Type::Integer, 1, 1, Role::Dates},
    Function{"NULLIF", Type::NotAsked, 2, 2},
    Function{"RIGHT", Type::Text, 2, 2},
    Function{"ROUND", Type::NotAsked, 2, 2},
    Function{"ROW_NUMBER", Type::Integer, 0, 0, Role::Window},
    Function{"RTRIM", Type::Text, 1, 1},
    Function{"STR", Type::Text, 1, 1},
    Function{"SUBSTRING", Type::Text, 3, 3},
    Function{"SUM", Type::NotAsked, 1, 1, Role::Aggregate},
    Function{"UDF_GETEMPLOCK", Type::Integer, 3, 3},
    Function{"UPPER", Type::Text, 1, 1},
    Function{"YEAR", Type::Integer, 1, 1, Role::Dates},
};

constexpr std::array kTypeNames{
    TypeName{"VARCHAR", Type::Text},    TypeName{"NVARCHAR", Type::Text},
    TypeName{"INT", Type::Integer},     TypeName{"BIGINT", Type::Integer},
    TypeName{"BIT", Type::Integer},     TypeName{"SMALLINT", Type::Integer},
    TypeName{"TINYINT", Type::Integer}, TypeName{"FLOAT", Type::Real},
    TypeName{"REAL", Type::Real},       TypeName{"NUMERIC", Type::Real, 0},
    TypeName{"DECIMAL", Type::Real, 0}, TypeName{"MONEY", Type::Real, 4},
    TypeName{"DATETIME", Type::Date},   TypeName{"SMALLDATETIME", Type::Date},
    TypeName{"DATE", Type::Date},
};

}  // namespace

Type TypeOfColumn(std::string_view name) { return ColumnOf(name).type; }

bool ComparesItself(const Expr& expr) {
  if (expr.kind == ExprKind::Collate) return true;
  if (expr.kind != ExprKind::Name) return false;
  const Column column = ColumnOf(expr.text);
  return column.type == Type::Text && !column.plainText;
}

std::span<const Function> Functions() { return kFunctions; }

const Function* FindFunction(std::string_view name) {
  const auto found =
      std::ranges::find_if(kFunctions, [&](const Function& known) { return SameWord(known.name, name); });
  return found != kFunctions.end() ? &*found : nullptr;
}

const TypeName* FindTypeName(std::string_view name) {
  const auto found =
      std::ranges::find_if(kTypeNames, [&](const TypeName& known) { return SameWord(known.name, name); });
  return found != kTypeNames.end() ? &*found : nullptr;
}

Type Typing::Of(const Expr& expr) const {
  if (expr.type == Type::NotAsked) expr.type = Find(expr);
  return expr.type;
}

Type Typing::FirstKnown(const Expr& expr) const {
  for (const auto& argument : expr.args)
    if (const Type type = Of(*argument); type != Type::Unknown) return type;
  return Type::Unknown;
}

Type Typing::Find(const Expr& expr) const {
  switch (expr.kind) {
    case ExprKind::Number:
      return expr.text.find_first_of(".eE") == expr.text.npos ? Type::Integer : Type::Real;
    case ExprKind::Text:
      return Type::Text;
    case ExprKind::Name:
      return TypeOfColumn(expr.text);
    case ExprKind::Variable: {
      const auto found = variables_.find(expr.text);
      return found == variables_.end() ? Type::Unknown : found->second;
    }
    case ExprKind::Negate:
      return Of(*expr.args[0]);
    case ExprKind::Collate:
      return Type::Text;
    case ExprKind::Arithmetic:
      return OfArithmetic(expr);
    case ExprKind::Case:
      return OfCase(expr);
    case ExprKind::Cast:
      return OfCast(expr);
    case ExprKind::Subquery:
      return Of(*expr.query->cores.front().items.front().expr);
    case ExprKind::Function: {
      const Function* function = FindFunction(expr.text);
      if (function == nullptr) return Type::Unknown;
      return function->result == Type::NotAsked ? FirstKnown(expr) : function->result;
    }
    default:
      return Type::Unknown;
  }
}

Type Typing::OfCast(const Expr& expr) const {
  const TypeName* name = FindTypeName(expr.text);
  return name == nullptr ? Type::Unknown : name->type;
}

Type Typing::OfArithmetic(const Expr& expr) const {
  const Type left = Of(*expr.args[0]), right = Of(*expr.args[1]);
  if (left == Type::Real || right == Type::Real) return Type::Real;
  if (expr.text == "+" && left == Type::Text && right == Type::Text) return Type::Text;
  if (expr.text == "+" && !IsNumber(left) && !IsNumber(right)) return Type::Unknown;
  return left == Type::Integer && right == Type::Integer ? Type::Integer : Type::Real;
}

// Results stand behind each condition, and the last one behind ELSE.
Type Typing::OfCase(const Expr& expr) const {
  const std::size_t first = expr.hasOperand ? 2 : 1;
  const std::size_t pairsEnd = expr.args.size() - (expr.hasElse ? 1 : 0);
  for (std::size_t i = first; i < pairsEnd; i += 2)
    if (const Type type = Of(*expr.args[i]); type != Type::Unknown) return type;
  return expr.hasElse ? Of(*expr.args.back()) : Type::Unknown;
}

}  // namespace ktl::tsql
