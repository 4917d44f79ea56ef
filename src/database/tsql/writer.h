#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "database/tsql/program.h"
#include "database/tsql/tree.h"
#include "database/tsql/types.h"

namespace ktl::tsql {

// The comparer that every text comparison goes by, as the texts themselves name it.
inline constexpr std::string_view kTextComparer = "SQL_Latin1_General_CP1_CI_AS";

// Writes a tree in the embedded dialect. Names go out in brackets, never in double quotes: a wrong name in
// double quotes would become a text.
class EmbeddedWriter {
 public:
  explicit EmbeddedWriter(std::string_view text) : text_(text) {}

  Program Write(const Block& block);
  // The first column of the answer is the row's key.
  Step WriteUpdatable(const Query& query);

 private:
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
  Step Finish(StepKind kind);
  Step WriteAssignment(std::string_view variable, const Expr* value);

  void WriteQuery(const Query& query);
  void WriteCore(const SelectCore& core, bool unite);
  void WriteItem(const SelectItem& item, bool compared);
  void WriteFrom(const std::vector<TableRef>& tables);
  void WriteTable(const TableRef& table);
  void WriteUpdateSource(const Update& update, const TableRef* target);
  const TableRef* FindTarget(const Update& update) const;
  void WriteOrderBy(const std::vector<OrderItem>& items, const SelectCore* core);
  void TellDates(const SelectCore& core, Step& step) const;

  void WriteExpr(const Expr& expr);
  void WriteLeaf(const Expr& expr);
  void WriteOperator(const Expr& expr);
  void WriteOperand(const Expr& expr);
  void WriteCondition(const Expr& expr, std::string_view logical);
  void WriteArithmetic(const Expr& expr);
  void WriteCompare(const Expr& expr);
  void WriteCompared(const Expr& expr, Type other, bool equality);
  void WriteBetween(const Expr& expr);
  void WriteIn(const Expr& expr);
  void WriteLike(const Expr& expr);
  void WriteCase(const Expr& expr);
  void WriteFunction(const Expr& expr);
  void WriteArguments(const Expr& expr, const Function& function);
  void WriteDatePart(const Expr& expr);
  void WriteCast(const Expr& expr);
  void WriteTextCast(const Expr& expr);
  // A text literal is written as a date when the value goes to or comes from a date.
  void WriteAs(const Expr& expr, Type type);
  void WriteDateLiteral(const Expr& literal);
  void WriteNumeric(const Expr& expr);
  void WriteComparer() { out_ += " COLLATE ", out_ += kTextComparer; }
  // What is grouped, sorted or made distinct: a text that would else be compared byte by byte gets the
  // comparer.
  void WriteKey(const Expr& expr, const Expr& judged);
  bool NeedsComparer(const Expr& expr) const;

  void Name(std::string_view name) { out_ += '[', out_ += name, out_ += ']'; }
  [[noreturn]] void RefuseAt(const Expr& expr, const std::string& why) const;

  std::string_view text_;
  std::string out_;
  Typing typing_;
};

// The characters of a literal with its quotes.
std::string Unquote(std::string_view literal);

}  // namespace ktl::tsql
