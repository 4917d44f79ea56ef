#include "database/drivers/sqlite_writer.h"

#include <algorithm>
#include <array>

namespace ktl {

namespace {

struct FunctionName {
  std::string_view language;
  std::string_view ours;
};

// In alphabetical order.
constexpr std::array kNames{
    FunctionName{"ABS", "abs"},
    FunctionName{"CEILING", "KL_CEILING"},
    FunctionName{"CHARINDEX", "KL_CHARINDEX"},
    FunctionName{"COALESCE", "COALESCE"},
    FunctionName{"COUNT", "COUNT"},
    FunctionName{"DATEDIFF", "KL_DATEDIFF"},
    FunctionName{"DAY", "KL_DAY"},
    FunctionName{"FLOOR", "KL_FLOOR"},
    FunctionName{"FNSTRMONTHNAME", "KL_MONTHNAME"},
    FunctionName{"GETDATE", "KL_NOW"},
    FunctionName{"HOST_NAME", "KL_HOST_NAME"},
    FunctionName{"ISNULL", "IFNULL"},
    FunctionName{"KTL_LATERSUM", "KL_LATERSUM"},
    FunctionName{"KTL_LATERSUMS", "KL_LATERSUMS"},
    FunctionName{"KTL_PICKEDSUM", "KL_PICKEDSUM"},
    FunctionName{"KTL_PICKEDSUMS", "KL_PICKEDSUMS"},
    FunctionName{"LEFT", "KL_LEFT"},
    FunctionName{"LEN", "KL_LEN"},
    FunctionName{"LOWER", "KL_LOWER"},
    FunctionName{"LTRIM", "ltrim"},
    FunctionName{"MAX", "MAX"},
    FunctionName{"MIN", "MIN"},
    FunctionName{"MONTH", "KL_MONTH"},
    FunctionName{"NULLIF", "NULLIF"},
    FunctionName{"RIGHT", "KL_RIGHT"},
    FunctionName{"ROUND", "KL_ROUND"},
    FunctionName{"ROW_NUMBER", "ROW_NUMBER"},
    FunctionName{"RTRIM", "rtrim"},
    FunctionName{"STR", "KL_STR"},
    FunctionName{"SUBSTRING", "KL_SUBSTRING"},
    FunctionName{"SUM", "SUM"},
    FunctionName{"UDF_GETEMPLOCK", "KL_EMPLOCK"},
    FunctionName{"UPPER", "KL_UPPER"},
    FunctionName{"YEAR", "KL_YEAR"},
};

}  // namespace

std::string_view SqliteWriter::NameOf(const tsql::Function& function) const {
  const auto found = std::ranges::find(kNames, function.name, &FunctionName::language);
  return found == kNames.end() ? "" : found->ours;
}

void SqliteWriter::WriteSetting(std::string_view variable, const tsql::Expr* value) {
  Put("KL_SET('", variable, "', ");
  if (value == nullptr)
    Put("NULL");
  else
    WriteExpr(*value);
  Put(")");
}

void SqliteWriter::WriteCastTo(std::string_view type, const tsql::Expr& value) {
  Put("CAST(");
  WriteExpr(value);
  Put(" AS ", type, ")");
}

void SqliteWriter::WriteConverted(const tsql::Expr& value, tsql::Type to) {
  if (to == tsql::Type::Integer) return WriteCastTo("INTEGER", value);
  if (to == tsql::Type::Real) return WriteCastTo("REAL", value);
  const tsql::Type from = TypeOf(value);
  if (from == tsql::Type::Text || from == tsql::Type::Integer) return WriteCastTo("TEXT", value);
  Put("KL_TEXT(");
  WriteExpr(value);
  Put(")");
}

void SqliteWriter::WriteDecimal(const tsql::Expr& value, int scale) {
  Put("CAST(KL_ROUND(");
  WriteExpr(value);
  Put(", ", std::to_string(scale), ") AS REAL)");
}

// A bare column by its own affinity.
bool SqliteWriter::MeetsNumbers(const tsql::Expr& text) const { return text.kind == tsql::ExprKind::Name; }

void SqliteWriter::WriteSum(const tsql::Expr& left, const tsql::Expr& right) {
  Put("KL_ADD(");
  WriteExpr(left);
  Put(", ");
  WriteExpr(right);
  Put(")");
}

void SqliteWriter::WritePrimaryKey(const tsql::AddPrimaryKey& key) {
  Put("CREATE UNIQUE INDEX ");
  WriteName(key.name);
  Put(" ON ");
  WriteName(key.table);
  WriteNames(" (", key.columns);
}

}  // namespace ktl
