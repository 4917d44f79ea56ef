#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "database/tsql/tree.h"
#include "database/tsql/types.h"

namespace ktl::tsql {

// The columns of a table or view by its name; nothing for one that the database does not have.
using TableColumns = std::function<std::optional<std::vector<std::string>>(std::string_view name)>;

// Says what SQL Server would refuse in a text, as far as that can be told without one: names that are not
// there or stand for two things, reserved words used as names, what may not stand in a derived table, columns
// that are neither grouped nor summed, counts that differ, values where a condition must be, kinds of values
// that do not go together, and dates that it would read otherwise than this program. Silence is no promise.
class ServerCheck {
 public:
  explicit ServerCheck(TableColumns tables) : tables_(std::move(tables)) {}

  // One line for each fault of a text. A table that it makes is there for the texts that come later.
  std::vector<std::string> Faults(std::string_view text);

 private:
  struct Columns {
    std::vector<std::string> names;  // "" for one without a name
    bool open = false;               // there may be more: a table that is not known
  };
  struct Source {
    std::string_view called;  // how columns are qualified with it
    std::string_view table;   // "" for a derived one
    Columns columns;
  };
  struct Scope {
    const Scope* outer = nullptr;
    std::vector<Source> sources;
    const SelectCore* grouped = nullptr;  // set while names must be grouped or stand in an aggregate
    bool inAggregate = false;
  };
  enum class Place { Whole, Derived, Value, Exists, View };
  enum class Meets { Nothing, One, Several };

  void CheckBlock(const Block& block, bool whole);
  void Check(const QueryPtr& query);
  void Check(const Insert& insert);
  void Check(const Update& update);
  void Check(const Delete& statement);
  void Check(const CreateView& view);
  void Check(const DropObject& drop);
  void Check(const AddPrimaryKey& key);
  void Check(const Declare& declare);
  void Check(const SetVariable& set);
  void Check(const Call& call);
  void Check(const std::unique_ptr<If>& statement);

  Columns CheckQuery(const Query& query, const Scope* outer, Place place);
  Columns CheckCore(const SelectCore& core, const Scope* outer, const Query* ordered);
  Columns CheckItems(const SelectCore& core, Scope& scope);
  void CheckGroups(const SelectCore& core, Scope& scope);
  void CheckOrder(const Query& query, const SelectCore& core, const Columns& columns, Scope& scope);
  void CheckUnionOrder(const Query& query, const Columns& columns);
  void CheckUnion(const SelectCore& first, const SelectCore& other, const Columns& columns,
                  const Columns& others);
  void CheckColumnNames(const Columns& columns, std::string_view table, std::size_t offset);
  void MakeTable(std::string_view name, const Columns& columns);
  Columns Expand(const Expr& star, const Scope& scope);

  void AddSources(const std::vector<TableRef>& from, Scope& scope);
  void CheckOn(const std::vector<TableRef>& from, Scope& scope);
  Columns ColumnsOf(const TableRef& table);
  std::optional<Columns> Find(std::string_view table) const;

  void CheckCondition(const Expr& expr, Scope& scope);
  void CheckValue(const Expr& expr, Scope& scope);
  void CheckPart(const Expr& expr, Scope& scope);
  void CheckName(const Expr& expr, const Scope& scope);
  void CheckGrouped(const Expr& expr, const Scope& scope);
  void CheckFunction(const Expr& expr, Scope& scope);
  void CheckAggregate(const Expr& expr, Scope& scope);
  void CheckCase(const Expr& expr, Scope& scope);
  void CheckInner(const Expr& expr, const Scope& scope);
  void CheckSum(const Expr& expr);
  void CheckCompared(const Expr& expr);
  void CheckTogether(const Expr& one, const Expr& other, const char* where);
  void CheckAssigned(std::string_view column, const Expr& value);
  void CheckLiteral(Type beside, const Expr& literal, const char* where);
  void CheckOrderItem(const std::vector<OrderItem>& items, std::size_t item, const Columns& columns);
  Meets Look(const Expr& name, const Scope& scope) const;
  void RefuseAggregates(const Expr* expr, const char* where);
  void CheckWord(std::string_view name, std::size_t offset);

  void Fault(std::size_t offset, const std::string& what);
  bool IsBracketed(std::string_view name) const;
  Type TypeOf(const Expr& expr) const { return typing_.Of(expr); }

  TableColumns tables_;
  std::map<std::string, Columns, std::less<>> made_;  // by the name in upper case
  std::string_view text_;
  Typing typing_;
  std::map<std::string, int, std::less<>> variables_;
  std::vector<std::string> faults_;
};

}  // namespace ktl::tsql
