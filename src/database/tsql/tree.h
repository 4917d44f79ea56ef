#pragma once

#include <memory>
#include <string_view>
#include <variant>
#include <vector>

namespace ktl::tsql {

// The tree of a text. Every view in it points into the text.

struct Query;
struct Expr;
using ExprPtr = std::unique_ptr<Expr>;
using QueryPtr = std::unique_ptr<Query>;

// What is known of an expression's values without looking at a table.
enum class Type { NotAsked, Unknown, Text, Date, Integer, Real };

enum class ExprKind {
  Number,  // text
  Text,    // text, with its quotes
  Null,
  Default,     // the word DEFAULT as an argument
  Name,        // text, qualifier ("" for none)
  Star,        // qualifier
  Variable,    // text, with the @
  DatePart,    // text is DAY, MONTH or YEAR: in front of what DATEDIFF counts
  Negate,      // args[0]
  Not,         // args[0]
  Arithmetic,  // text is + - * / %, args[0], args[1]
  Compare,     // text is = <> < <= > >=, args[0], args[1]
  Logical,     // text is AND or OR, args[0], args[1]
  Between,     // args[0] BETWEEN args[1] AND args[2]
  In,          // args[0] IN args[1..] or query
  Like,        // args[0] LIKE args[1] [ESCAPE args[2]]
  IsNull,      // args[0]
  Exists,      // query
  Subquery,    // query
  Case,        // [operand], then pairs, then otherwise; see CaseParts
  Function,    // text, qualifier is the schema; args
  Cast,        // args[0] to text(length)
  Collate,     // args[0] COLLATE text
};

struct OrderItem {
  ExprPtr expr;
  bool descending = false;
};

struct Expr {
  ExprKind kind = ExprKind::Null;
  std::size_t offset = 0;
  std::string_view text;
  std::string_view qualifier;
  std::vector<ExprPtr> args;
  QueryPtr query;
  bool negated = false;     // of Between, In, Like, IsNull
  bool distinct = false;    // of an aggregate function
  bool hasOperand = false;  // of Case: args[0] is the operand
  bool hasElse = false;     // of Case: the last of args is the result of ELSE
  bool hasOver = false;     // of Function: OVER (ORDER BY over)
  int length = 0;           // of Cast: 0 for none given
  int scale = 0;            // of Cast
  std::vector<OrderItem> over;
  int depth = 1;
  mutable Type type = Type::NotAsked;
};

struct SelectItem {
  ExprPtr expr;
  std::string_view alias;
  std::string_view variable;  // of SELECT @v = expr
};

enum class JoinKind { Comma, Inner, Left, Right, Full, Cross };

struct TableRef {
  JoinKind join = JoinKind::Comma;  // to what stands before it
  std::size_t offset = 0;
  std::string_view schema;
  std::string_view name;  // empty for a derived table
  QueryPtr derived;
  std::string_view alias;
  ExprPtr on;
};

struct SelectCore {
  std::size_t offset = 0;
  bool distinct = false;
  ExprPtr top;
  std::vector<SelectItem> items;
  std::string_view into;
  std::vector<TableRef> from;
  ExprPtr where;
  std::vector<ExprPtr> groupBy;
  ExprPtr having;
  bool unionAll = false;  // to the core before it
};

struct Query {
  std::vector<SelectCore> cores;
  std::vector<OrderItem> orderBy;
  int depth = 1;
};

struct Insert {
  TableRef table;
  std::vector<std::string_view> columns;
  std::vector<std::vector<ExprPtr>> rows;
  QueryPtr query;
};

struct SetItem {
  std::string_view column;
  ExprPtr value;
};

struct Update {
  TableRef table;
  std::vector<SetItem> items;
  std::vector<TableRef> from;
  ExprPtr where;
};

struct Delete {
  TableRef table;
  ExprPtr where;
};

struct CreateView {
  std::string_view name;
  QueryPtr query;
};

struct DropObject {
  bool view = false;
  bool ifExists = false;
  std::string_view name;
};

struct AddPrimaryKey {
  std::string_view table;
  std::string_view name;
  std::vector<std::string_view> columns;
};

struct Declare {
  std::string_view variable;
  std::string_view type;
  ExprPtr value;
};

struct SetVariable {
  std::string_view variable;
  ExprPtr value;
};

struct CallArgument {
  std::string_view text;
  bool quoted = false;  // text is a literal with its quotes
  bool null = false;    // NULL or DEFAULT
};

struct Call {
  std::string_view procedure;
  std::vector<CallArgument> arguments;
};

struct If;
using Statement = std::variant<QueryPtr, Insert, Update, Delete, CreateView, DropObject, AddPrimaryKey,
                               Declare, SetVariable, Call, std::unique_ptr<If>>;
using Block = std::vector<Statement>;

struct If {
  ExprPtr condition;
  Block then;
  Block otherwise;
};

}  // namespace ktl::tsql
