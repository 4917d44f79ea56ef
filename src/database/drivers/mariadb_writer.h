#pragma once

#include "database/tsql/writer.h"

namespace ktl {

// Writes MariaDB's dialect, for a connection whose collation is utf8mb4_uca1400_as_ci and whose sql_mode
// holds NO_BACKSLASH_ESCAPES and SIMULTANEOUS_ASSIGNMENT. Tables and whatever stands for one are spelled in
// upper case, since this database tells such names apart by their letter case; columns keep their spelling.
// The machine's name and the signed on user are the session's @KTL_HOST and @KTL_USER. Shared numbers are
// bare marks: Step::parameters tells their order.
class MariaDbWriter final : public tsql::Writer {
 public:
  using Writer::Writer;

 protected:
  std::string_view NameOf(const tsql::Function& function) const override;
  void WriteName(std::string_view name) override;
  void WriteObjectName(std::string_view name) override;
  void WriteUnionOrder(const tsql::Query& query) override;
  void WriteDate(const Date& date) override;
  void WriteNumber(std::string_view literal) override;
  void WriteParameter(std::string_view parameter) override;
  void WriteComparer() override {}
  void WriteCollation(std::string_view name) override;
  void WriteVariable(std::string_view variable) override { Put(variable); }
  void WriteSetting(std::string_view variable, const tsql::Expr* value) override;
  void WriteConverted(const tsql::Expr& value, tsql::Type to) override;
  void WriteDecimal(const tsql::Expr& value, int scale) override;
  void WriteNumeric(const tsql::Expr& text) override { WriteCastTo("DOUBLE", text); }
  bool MeetsNumbers(const tsql::Expr& text) const override { return text.kind == tsql::ExprKind::Name; }
  void WriteForText(const tsql::Expr& number) override;
  void WriteJoined(const tsql::Expr& left, const tsql::Expr& right) override;
  void WriteSum(const tsql::Expr& left, const tsql::Expr& right) override;
  void WriteQuotient(const tsql::Expr& left, const tsql::Expr& right) override;
  void WriteCall(const tsql::Expr& expr, const tsql::Function& function) override;
  void WriteLike(const tsql::Expr& expr) override;
  void WriteInQuery(const tsql::Expr& expr) override;
  void WriteSources(const tsql::SelectCore& core) override;
  void WriteLaterStar(const tsql::SelectCore& core) override;
  bool HasFullJoin() const override { return false; }
  bool NeedsGroups(const tsql::SelectCore& core) const override;
  void WriteUpdate(const tsql::Update& update, const tsql::TableRef* target) override;
  void WriteProcedure(const tsql::Call& call) override;

 private:
  void WriteQuoted(std::string_view text, char quote);
  void WriteCastTo(std::string_view type, const tsql::Expr& value);
  void WriteJoinedParts(const tsql::Expr& expr);
};

}  // namespace ktl
