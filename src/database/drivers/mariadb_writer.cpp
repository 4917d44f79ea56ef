#include "database/drivers/mariadb_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "database/drivers/like_pattern.h"
#include "database/tsql/words.h"

namespace ktl {

namespace {

using tsql::Expr;
using tsql::ExprKind;
using tsql::Type;

constexpr const char* kCollation = "utf8mb4_uca1400_as_ci";

struct FunctionName {
  std::string_view language;
  std::string_view ours;  // with "$1" in it: what is written in place of the call
};

// In alphabetical order.
constexpr std::array kNames{
    FunctionName{"ABS", "ABS"},
    FunctionName{"CEILING", "CEILING"},
    FunctionName{"CHARINDEX", "LOCATE($1, $2)"},
    FunctionName{"COALESCE", "COALESCE"},
    FunctionName{"COUNT", "COUNT"},
    FunctionName{"DATEDIFF", "DATEDIFF($3, $2)"},
    FunctionName{"DAY", "DAY"},
    FunctionName{"FLOOR", "FLOOR"},
    FunctionName{"FNSTRMONTHNAME", "FnStrMonthName"},
    FunctionName{"GETDATE", "CAST(IFNULL(@KTL_NOW, NOW()) AS DATETIME)"},
    FunctionName{"HOST_NAME", "@KTL_HOST"},
    FunctionName{"ISNULL", "IFNULL"},
    FunctionName{"LEFT", "LEFT"},
    FunctionName{"LEN", "CHAR_LENGTH(RTRIM($1))"},
    FunctionName{"LOWER", "LOWER"},
    FunctionName{"LTRIM", "LTRIM"},
    FunctionName{"MAX", "MAX"},
    FunctionName{"MIN", "MIN"},
    FunctionName{"MONTH", "MONTH"},
    FunctionName{"NULLIF", "NULLIF"},
    FunctionName{"RIGHT", "RIGHT"},
    FunctionName{"ROUND", "(ROUND(CAST($1 AS DECIMAL(60, 20)), $2) + 0E0)"},
    FunctionName{"ROW_NUMBER", "ROW_NUMBER"},
    FunctionName{"RTRIM", "RTRIM"},
    FunctionName{"STR",
                 "LPAD(ROUND(CAST($1 AS DECIMAL(60, 20))), "
                 "GREATEST(10, CHAR_LENGTH(ROUND(CAST($1 AS DECIMAL(60, 20))))), ' ')"},
    FunctionName{"SUBSTRING", "SUBSTRING"},
    FunctionName{"SUM", "SUM"},
    FunctionName{"UDF_GETEMPLOCK", "udf_getEmpLock"},
    FunctionName{"UPPER", "UPPER"},
    FunctionName{"YEAR", "YEAR"},
};

bool IsNeverEmpty(const Expr& expr) {
  if (expr.kind == ExprKind::Text) return expr.text.size() > expr.text.find('\'') + 2;
  return expr.kind == ExprKind::Arithmetic &&
         std::ranges::any_of(expr.args, [](const tsql::ExprPtr& part) { return IsNeverEmpty(*part); });
}

// In the expression itself; what a subselect adds up is its own.
bool HasAggregate(const Expr& expr) {
  const tsql::Function* function = expr.kind == ExprKind::Function ? tsql::FindFunction(expr.text) : nullptr;
  if (function != nullptr && function->role != tsql::Role::Plain && function->role != tsql::Role::Dates)
    return true;
  return std::ranges::any_of(expr.args, [](const tsql::ExprPtr& part) { return HasAggregate(*part); });
}

// Adds the columns that it is worked out of; false when it is of more than columns of one row.
bool AddColumns(const Expr& expr, std::vector<std::string_view>& columns) {
  if (expr.query || expr.kind == ExprKind::Star || expr.kind == ExprKind::Variable || HasAggregate(expr))
    return false;
  const auto isThere = [&](std::string_view name) { return tsql::SameWord(name, expr.text); };
  if (expr.kind == ExprKind::Name && std::ranges::none_of(columns, isThere)) columns.push_back(expr.text);
  return std::ranges::all_of(expr.args,
                             [&](const tsql::ExprPtr& part) { return AddColumns(*part, columns); });
}

// Groups of nothing but derived tables, so that nothing in it can be of the statement around it.
bool IsGroupedApart(const tsql::Query& query) {
  const tsql::SelectCore& core = query.cores.front();
  return query.cores.size() == 1 && !core.groupBy.empty() && !core.where &&
         std::ranges::all_of(core.from, [](const tsql::TableRef& table) { return table.derived != nullptr; });
}

bool IsPositiveNumber(const Expr& expr) {
  return expr.kind == ExprKind::Number && expr.text[0] >= '1' && expr.text[0] <= '9';
}

// What the arguments of one call make of its function; the table's name for all others.
std::string_view WordingOf(const Expr& call, const tsql::Function& function, std::string_view name,
                           bool ofInteger) {
  const bool withStart = call.args.size() == 3;
  if (function.name == "CHARINDEX" && withStart)
    return "(LOCATE($1, $2, GREATEST($3, 1)) * (CHAR_LENGTH($1) > 0))";
  // An empty text is found nowhere.
  if (function.name == "CHARINDEX" && !IsNeverEmpty(*call.args[0]))
    return "(LOCATE($1, $2) * (CHAR_LENGTH($1) > 0))";
  // A start before the first character takes its missing characters from the count.
  if (function.name == "SUBSTRING" && !IsPositiveNumber(*call.args[1]))
    return "SUBSTRING($1, GREATEST($2, 1), $3 + LEAST($2 - 1, 0))";
  if (function.name == "ROUND" && ofInteger) return "ROUND($1, $2)";
  if (function.name != "DATEDIFF" || tsql::SameWord(call.args[0]->text, "DAY")) return name;
  return tsql::SameWord(call.args[0]->text, "YEAR")
             ? "(YEAR($3) - YEAR($2))"
             : "(YEAR($3) * 12 + MONTH($3) - YEAR($2) * 12 - MONTH($2))";
}

}  // namespace

std::string_view MariaDbWriter::NameOf(const tsql::Function& function) const {
  const auto found = std::ranges::find(kNames, function.name, &FunctionName::language);
  return found == kNames.end() ? "" : found->ours;
}

void MariaDbWriter::WriteCall(const Expr& expr, const tsql::Function& function) {
  const bool ofInteger = !expr.args.empty() && TypeOf(*expr.args[0]) == Type::Integer;
  const std::string_view wording = WordingOf(expr, function, NameOf(function), ofInteger);
  if (wording.find_first_of("$@") == wording.npos) return Writer::WriteCall(expr, function);
  for (std::size_t i = 0; i < wording.size(); ++i) {
    if (wording[i] == '$')
      WriteArgument(expr, function, static_cast<std::size_t>(wording[++i] - '1'));
    else
      Put(wording.substr(i, 1));
  }
}

void MariaDbWriter::WriteQuoted(std::string_view text, char quote) {
  std::string quoted(1, quote);
  for (const char c : text) {
    quoted += c;
    if (c == quote) quoted += c;
  }
  Put(quoted, std::string_view(&quote, 1));
}

void MariaDbWriter::WriteName(std::string_view name) { WriteQuoted(name, '`'); }

void MariaDbWriter::WriteObjectName(std::string_view name) {
  std::string upper(name);
  std::ranges::transform(upper, upper.begin(), tsql::UpperAscii);
  WriteName(upper);
}

// By all its columns, as rows come out of the sorting that other databases find doubles by.
void MariaDbWriter::WriteUnionOrder(const tsql::Query& query) {
  const auto& items = query.cores.front().items;
  const bool all =
      std::ranges::all_of(query.cores.begin() + 1, query.cores.end(), &tsql::SelectCore::unionAll);
  const auto isStar = [](const tsql::SelectItem& item) { return item.expr->kind == ExprKind::Star; };
  if (all || std::ranges::any_of(items, isStar)) return;
  int column = 0;
  List(" ORDER BY ", items, [&](const tsql::SelectItem&) { Put(std::to_string(++column)); });
}

// With its type: as a bare text it would turn what it is joined with into one.
void MariaDbWriter::WriteDate(const Date& date) {
  Put(fmt::format("TIMESTAMP'{:04}-{:02}-{:02} {:02}:{:02}:{:02}'", date.year(), date.month(), date.day(),
                  date.hour(), date.minute(), date.second()));
}

// Decimals without an exponent would be exact ones here, with a few places behind the point when divided.
void MariaDbWriter::WriteNumber(std::string_view literal) {
  Put(literal);
  if (literal.find_first_of("eE") != literal.npos || literal.find('.') == literal.npos) return;
  Put(literal.ends_with('.') ? "0E0" : "E0");
}

void MariaDbWriter::WriteParameter(std::string_view parameter) {
  int number = 0;
  std::from_chars(parameter.data() + 1, parameter.data() + parameter.size(), number);
  Put("?");
  Ask(number);
}

void MariaDbWriter::WriteCollation(std::string_view name) {
  const bool binary = name.find("_BIN") != name.npos, cased = name.find("_CS_") != name.npos;
  Put(" COLLATE ", binary ? "utf8mb4_bin" : cased ? "utf8mb4_uca1400_as_cs" : kCollation);
}

void MariaDbWriter::WriteSetting(std::string_view variable, const Expr* value) {
  Put(variable, " := ");
  if (value == nullptr)
    Put("NULL");
  else
    WriteExpr(*value);
}

void MariaDbWriter::WriteCastTo(std::string_view type, const Expr& value) {
  Put("CAST(");
  WriteExpr(value);
  Put(" AS ", type, ")");
}

void MariaDbWriter::WriteConverted(const Expr& value, Type to) {
  if (to == Type::Text) return WriteCastTo("CHAR", value);
  if (to == Type::Real) return WriteCastTo("DOUBLE", value);
  const Type from = TypeOf(value);
  if (from == Type::Integer || from == Type::Text) return WriteCastTo("SIGNED", value);
  // A conversion alone would round.
  Put("CAST(TRUNCATE(");
  WriteExpr(value);
  Put(", 0) AS SIGNED)");
}

void MariaDbWriter::WriteDecimal(const Expr& value, int scale) {
  Put("(ROUND(CAST(");
  WriteExpr(value);
  Put(" AS DECIMAL(60, 20)), ", std::to_string(scale), ") + 0E0)");
}

// As a text, so that the column is looked up as it stands; compared as numbers, "abc" would equal 0.
void MariaDbWriter::WriteForText(const Expr& number) {
  if (number.kind != ExprKind::Number) return WriteOperand(number);
  if (number.text[0] == '?') return WriteCastTo("CHAR", number);
  Put("'", number.text, "'");
}

void MariaDbWriter::WriteJoined(const Expr& left, const Expr& right) {
  Put("CONCAT(");
  WriteJoinedParts(left);
  Put(", ");
  WriteJoinedParts(right);
  Put(")");
}

void MariaDbWriter::WriteJoinedParts(const Expr& expr) {
  if (expr.kind != ExprKind::Arithmetic || TypeOf(expr) != Type::Text) return WriteExpr(expr);
  WriteJoinedParts(*expr.args[0]);
  Put(", ");
  WriteJoinedParts(*expr.args[1]);
}

// This database cannot tell texts from numbers by looking at the values: it would add up two texts to 0.
void MariaDbWriter::WriteSum(const Expr& left, const Expr& right) {
  if (TypeOf(left) != Type::Text && TypeOf(right) != Type::Text)
    RefuseAt(left, "nothing tells whether \"+\" adds numbers or joins texts: a CAST would");
  WriteJoined(left, right);
}

void MariaDbWriter::WriteQuotient(const Expr& left, const Expr& right) {
  const Type leftType = TypeOf(left), rightType = TypeOf(right);
  const bool real = leftType == Type::Real || rightType == Type::Real;
  const bool whole = leftType == Type::Integer && rightType == Type::Integer;
  // Two whole numbers would give four places.
  if (!real && !whole) Put("(0E0 + ");
  WriteCompared(left, Type::Real, true);
  Put(!real && !whole ? ")" : "", whole ? " DIV " : " / ");
  WriteCompared(right, Type::Real, true);
}

void MariaDbWriter::WriteLike(const Expr& expr) {
  WriteOperand(*expr.args[0]);
  const bool isSaid = std::all_of(expr.args.begin() + 1, expr.args.end(),
                                  [](const tsql::ExprPtr& part) { return part->kind == ExprKind::Text; });
  Put(expr.negated ? " NOT " : " ");
  if (!isSaid) {
    Put("LIKE ");
    WriteOperand(*expr.args[1]);
    Put(" ESCAPE ");
    // Without one, it would be the backslash.
    return expr.args.size() < 3 ? Put("'\x01'") : WriteOperand(*expr.args[2]);
  }
  const LikePattern pattern = TranslateLike(tsql::Unquote(expr.args[1]->text),
                                            expr.args.size() < 3 ? "" : tsql::Unquote(expr.args[2]->text));
  Put(pattern.hasSets ? "REGEXP " : "LIKE ");
  WriteQuoted(pattern.hasSets ? pattern.expression : pattern.like, '\'');
  if (pattern.escapes && !pattern.hasSets) Put(" ESCAPE '\\'");
}

// A limit cannot stand behind IN itself. Groups behind one would be made again for each row of an UPDATE.
void MariaDbWriter::WriteInQuery(const Expr& expr) {
  const tsql::Query& query = *expr.query;
  const Expr* top = query.cores.size() == 1 ? query.cores.front().top.get() : nullptr;
  if (top == nullptr && !IsGroupedApart(query)) return Writer::WriteInQuery(expr);
  const bool one = top != nullptr && top->kind == ExprKind::Number && top->text == "1" && !expr.negated;
  Put(one ? " = (" : expr.negated ? " NOT IN (SELECT * FROM (" : " IN (SELECT * FROM (");
  WriteQuery(query);
  Put(one ? ")" : ") AS `LIMITED`)");
}

// Rows that are made distinct need no groups when nothing of a group is counted. With both, this database
// compares each row of a large result with each other one: minutes instead of a second.
bool MariaDbWriter::NeedsGroups(const tsql::SelectCore& core) const {
  return !core.distinct || core.having || std::ranges::any_of(core.items, [](const tsql::SelectItem& item) {
    return HasAggregate(*item.expr);
  });
}

// What a whole table's columns come to is worked out once for each of their values, which an index gives, and
// not for each row.
void MariaDbWriter::WriteSources(const tsql::SelectCore& core) {
  std::vector<std::string_view> columns;
  const auto isOfColumns = [&](const tsql::SelectItem& item) { return AddColumns(*item.expr, columns); };
  const auto isBare = [](const tsql::SelectItem& item) { return item.expr->kind == ExprKind::Name; };
  const bool whole = core.distinct && core.from.size() == 1 && !core.from[0].derived && !core.where &&
                     core.groupBy.empty() && !core.having && core.into.empty();
  // It steps over an index from value to value. Prepared and run again, behind another statement about the
  // table, it would go through the index from end to end.
  if (whole) PlanAnew();
  if (!whole || std::ranges::all_of(core.items, isBare) || !std::ranges::all_of(core.items, isOfColumns) ||
      columns.empty())
    return Writer::WriteSources(core);
  const tsql::TableRef& table = core.from[0];
  List(" FROM (SELECT DISTINCT ", columns, [this](std::string_view column) { WriteName(column); });
  WriteFrom(core.from);
  Put(") AS ");
  WriteObjectName(table.alias.empty() ? table.name : table.alias);
}

// This database takes a bare star in front only.
void MariaDbWriter::WriteLaterStar(const tsql::SelectCore& core) {
  List("", core.from, [this](const tsql::TableRef& table) {
    if (table.alias.empty())
      WriteObject(table);
    else
      WriteObjectName(table.alias);
    Put(".*");
  });
}

void MariaDbWriter::WriteUpdate(const tsql::Update& update, const tsql::TableRef* target) {
  const tsql::TableRef& table = target != nullptr ? *target : update.table;
  const bool alone =
      std::ranges::all_of(update.from, [target](const tsql::TableRef& other) { return &other == target; });
  if (alone) return Writer::WriteUpdate(update, target);
  Put("UPDATE ");
  WriteTable(table);
  for (const auto& other : update.from) {
    if (&other == target) continue;
    Put(", ");
    WriteTable(other);
  }
  WriteAssignments(update, table.alias.empty() ? table.name : table.alias);
  WriteUpdateConditions(update);
}

void MariaDbWriter::WriteProcedure(const tsql::Call& call) {
  Put("CALL ");
  WriteName(call.procedure);
  Put("(");
  const char* separator = "";
  for (const auto& argument : call.arguments) {
    Put(separator);
    if (argument.null)
      Put("NULL");
    else if (argument.quoted)
      Put(argument.text.substr(argument.text.find('\'')));
    else
      WriteQuoted(argument.text, '\'');
    separator = ", ";
  }
  Put(")");
}

}  // namespace ktl
