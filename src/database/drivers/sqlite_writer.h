#pragma once

#include "database/tsql/writer.h"

namespace ktl {

// Writes the embedded dialect. Names go out in brackets, never in double quotes: a wrong name in double
// quotes would become a text. What the dialect has no word for is a function of ours, KL_....
class SqliteWriter final : public tsql::Writer {
 public:
  using Writer::Writer;

 protected:
  std::string_view NameOf(const tsql::Function& function) const override;
  void WriteName(std::string_view name) override { Put("[", name, "]"); }
  void WriteKeyColumns() override { Put("rowid, "); }
  void WriteDatePart(std::string_view part) override { Put("'", part, "'"); }
  void WriteVariable(std::string_view variable) override { Put("KL_GET('", variable, "')"); }
  void WriteSetting(std::string_view variable, const tsql::Expr* value) override;
  void WriteConverted(const tsql::Expr& value, tsql::Type to) override;
  void WriteDecimal(const tsql::Expr& value, int scale) override;
  void WriteNumeric(const tsql::Expr& text) override { WriteCastTo("NUMERIC", text); }
  bool MeetsNumbers(const tsql::Expr& text) const override;
  void WriteSum(const tsql::Expr& left, const tsql::Expr& right) override;
  void WritePrimaryKey(const tsql::AddPrimaryKey& key) override;

 private:
  void WriteCastTo(std::string_view type, const tsql::Expr& value);
};

}  // namespace ktl
