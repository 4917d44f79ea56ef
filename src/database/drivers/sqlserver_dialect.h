#pragma once

#include "database/drivers/server_dialect.h"

namespace ktl {

// Texts go out as they stand: the server speaks their language. "Provider=SQLNCLI;Server=..;Database=..;
// Trusted_Connection=yes;" or "Provider=SQLOLEDB.1;User ID=..;PWD=..;Initial Catalog=..;Data Source=.."
class SqlServerDialect final : public ServerDialect {
 public:
  std::string_view Product() const override { return "SQL Server"; }
  std::span<const std::string_view> DriverNames() const override;
  std::string_view DriverPackage() const override { return "tdsodbc"; }
  std::string ServerOf(const ConnectionSettings& settings) const override;
  std::string DatabaseOf(const ConnectionSettings& settings) const override;
  std::string OdbcString(const ConnectionSettings& settings, std::string_view driver) const override;
  std::vector<std::string> FirstTexts(const ConnectionSettings& settings) const override;
  bool SpeaksTheLanguage() const override { return true; }
  tsql::Program Translate(std::string_view sql, bool updatable, int parameters) const override;
  std::string_view FirstRowOnly() const override { return ""; }
  bool MayLackVersion() const override { return true; }
  std::string TableName(std::string_view name) const override;
  std::string Quoted(std::string_view name) const override;
  std::string InsertOfDefaults(const std::string& quotedTable) const override;
  std::string BeginText(int milliseconds) const override;
  std::string CommitText() const override { return "COMMIT TRANSACTION"; }
  std::string RollbackText() const override { return "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION"; }
  std::string InTransactionText() const override { return "SELECT @@TRANCOUNT"; }
  ServerFailure FailureOf(const Diagnostic& diagnostic) const override;
  bool TakesUtf8() const override { return false; }
};

}  // namespace ktl
