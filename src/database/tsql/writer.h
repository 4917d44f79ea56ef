#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "database/tsql/program.h"
#include "database/tsql/tree.h"
#include "database/tsql/types.h"
#include "runtime/date.h"

namespace ktl::tsql {

// Writes a text in a database's own dialect. What dialects share is written here; what they differ in is
// virtual, and its default is what most of them say. A dialect is one class and one table of function names.
class Writer {
 public:
  // The text must outlive the writer, which takes one text only.
  explicit Writer(std::string_view text) : text_(text) {}
  virtual ~Writer() = default;
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  // Throws DatabaseError when the text cannot be read. updatable: the text must be a SELECT * over one table.
  // parameters: how many numbers of the text are ?1, ?2, ...
  Program Translate(bool updatable = false, int parameters = 0);

 protected:
  // "" for a function that the database does not have.
  virtual std::string_view NameOf(const Function& function) const = 0;
  virtual void WriteName(std::string_view name) = 0;
  // Of a table or a view, or what stands for one: an alias, a qualifier.
  virtual void WriteObjectName(std::string_view name) { WriteName(name); }
  virtual void WriteKeyColumns() {}              // in front of the columns of an updatable query
  virtual void WriteLimit(const Expr& count);    // behind the query whose rows are limited
  virtual void WriteUnionOrder(const Query&) {}  // behind a union for which none is told
  virtual void WriteDate(const Date& date);
  virtual void WriteDatePart(std::string_view part) { Put(part); }  // DAY, MONTH or YEAR in DATEDIFF
  virtual void WriteNumber(std::string_view literal) { Put(literal); }
  virtual void WriteParameter(std::string_view parameter) { Put(parameter); }  // ?1
  virtual void WriteComparer();  // behind a text that must compare without regard to case and blanks
  virtual void WriteCollation(std::string_view name) { Put(" COLLATE ", name); }
  virtual void WriteVariable(std::string_view variable) = 0;
  virtual void WriteSetting(std::string_view variable, const Expr* value) = 0;  // no value: null

  virtual void WriteConverted(const Expr& value, Type to) = 0;    // CAST to a text, an integer or a real
  virtual void WriteDecimal(const Expr& value, int scale) = 0;    // CAST to a number with so many decimals
  virtual void WriteNumeric(const Expr& text) = 0;                // a text that meets a number
  virtual bool MeetsNumbers(const Expr&) const { return false; }  // a text that equals a number as it is
  virtual void WriteForText(const Expr& number) { WriteOperand(number); }  // a number that such a text equals
  virtual void WriteJoined(const Expr& left, const Expr& right);           // two texts
  virtual void WriteSum(const Expr& left, const Expr& right) = 0;          // what only the rows can tell: "+"

  virtual void WriteQuotient(const Expr& left, const Expr& right);
  virtual void WriteCall(const Expr& expr, const Function& function);  // of a function
  virtual void WriteLike(const Expr& expr);
  virtual void WriteInQuery(const Expr& expr);  // [NOT] IN (SELECT ...)
  virtual void WriteSources(const SelectCore& core) { WriteFrom(core.from); }
  virtual bool HasFullJoin() const { return true; }
  // A star that stands behind other columns.
  virtual void WriteLaterStar(const SelectCore&) { Put("*"); }
  virtual bool NeedsGroups(const SelectCore&) const { return true; }  // or writes no GROUP BY

  // target: the item of FROM that is the table to be updated, if any.
  virtual void WriteUpdate(const Update& update, const TableRef* target);
  virtual void WritePrimaryKey(const AddPrimaryKey& key);
  virtual void WriteProcedure(const Call&) {}  // by which a database of its own procedures is called

  void WriteExpr(const Expr& expr);
  void WriteOperand(const Expr& expr);  // in brackets where it could fall apart
  void WriteFrom(const std::vector<TableRef>& tables);
  void WriteTable(const TableRef& table);
  void WriteObject(const TableRef& table);  // its name
  // target: whose columns they are, where another table of the statement could be meant.
  void WriteAssignments(const Update& update, std::string_view target = {});
  void WriteUpdateConditions(const Update& update);
  void WriteNames(std::string_view before, const std::vector<std::string_view>& names);
  void WriteQuery(const Query& query);
  void WriteArgument(const Expr& call, const Function& function, std::size_t argument);
  // One side of a comparison or a calculation whose other side has the type given.
  void WriteCompared(const Expr& expr, Type other, bool equality);
  Type TypeOf(const Expr& expr) const { return typing_.Of(expr); }
  // For a dialect that asks for shared numbers by bare marks.
  void Ask(int parameter) { asked_.push_back(parameter); }

  template <typename... Parts>
  void Put(const Parts&... parts) {
    ((out_ += parts), ...);
  }
  // For a statement whose plan the database makes worse when it is used again.
  void PlanAnew() { planAnew_ = true; }
  // Each of the items, with commas between them and, when there are any, the opening words in front.
  template <typename Items, typename Each>
  void List(std::string_view opening, const Items& items, Each each) {
    for (const auto& item : items) {
      Put(opening);
      each(item);
      opening = ", ";
    }
  }

  [[noreturn]] void RefuseAt(const Expr& expr, const std::string& why) const;

 private:
  Program Write(const Block& block);
  Step WriteUpdatable(const Query& query);
  Step WriteStatement(const Statement& statement);
  Step Write(const QueryPtr& query);
  Step Write(const Insert& insert);
  Step Write(const Update& update);
  Step Write(const Delete& statement);
  Step Write(const CreateView& view);
  Step Write(const DropObject& drop);
  Step Write(const AddPrimaryKey& key);
  Step Write(const Declare& declare);
  Step Write(const SetVariable& set);
  Step Write(const Call& call);
  Step Write(const std::unique_ptr<If>& statement);
  Step WriteAssignment(std::string_view variable, const Expr* value);
  Step Finish(StepKind kind);

  void WriteCore(const SelectCore& core, bool unite);
  void WriteItem(const SelectItem& item, bool compared);
  void WriteWhere(const ExprPtr& where);
  void WriteOrderBy(const std::vector<OrderItem>& items, const SelectCore* core);
  const TableRef* FindTarget(const Update& update) const;
  void TellDates(const SelectCore& core, Step& step) const;

  void WriteLeaf(const Expr& expr);
  void WriteOperator(const Expr& expr);
  void WriteCondition(const Expr& expr, std::string_view logical);
  void WriteArithmetic(const Expr& expr);
  void WriteCompare(const Expr& expr);
  void WriteEqualed(const Expr& expr, const Expr& other);
  void WriteBetween(const Expr& expr);
  void WriteIn(const Expr& expr);
  void WriteCase(const Expr& expr);
  void WriteFunction(const Expr& expr);
  void WriteCast(const Expr& expr);
  void WriteTextCast(const Expr& expr);
  // A text literal is written as a date when the value goes to or comes from a date.
  void WriteAs(const Expr& expr, Type type);
  void WriteDateLiteral(const Expr& literal);
  // What is grouped, sorted or made distinct: a text that would else be compared byte by byte gets the
  // comparer.
  void WriteKey(const Expr& expr, const Expr& judged);
  bool NeedsComparer(const Expr& expr) const;
  void RequireDeclared(std::string_view variable) const;

  std::string_view text_;
  std::string out_;
  std::vector<int> asked_;
  bool planAnew_ = false;
  Typing typing_;
};

// The characters of a literal with its quotes.
std::string Unquote(std::string_view literal);

}  // namespace ktl::tsql
