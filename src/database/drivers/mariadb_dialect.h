#pragma once

#include "database/drivers/server_dialect.h"

namespace ktl {

// "Provider=MariaDB;Server=..;Port=..;Socket=..;Database=..;User ID=..;PWD=..;", with "SSL CA", "SSL Cert",
// "SSL Key" and "SSL Verify=yes" where the connection is encrypted.
class MariaDbDialect : public ServerDialect {
 public:
  std::string_view Product() const override { return "MariaDB"; }
  std::span<const std::string_view> DriverNames() const override;
  std::string_view DriverPackage() const override { return "odbc-mariadb"; }
  std::string ServerOf(const ConnectionSettings& settings) const override;
  std::string DatabaseOf(const ConnectionSettings& settings) const override;
  void CheckSettings(const ConnectionSettings& settings) const override;
  std::string OdbcString(const ConnectionSettings& settings, std::string_view driver) const override;
  std::vector<std::string> FirstTexts(const ConnectionSettings& settings) const override;
  bool SpeaksTheLanguage() const override { return false; }
  tsql::Program Translate(std::string_view sql, bool updatable, int parameters) const override;
  std::string_view FirstRowOnly() const override { return " LIMIT 1"; }
  bool MayLackVersion() const override { return false; }
  std::string TableName(std::string_view name) const override;
  std::string Quoted(std::string_view name) const override;
  std::string InsertOfDefaults(const std::string& quotedTable) const override;
  std::string BeginText(int milliseconds) const override;
  std::string CommitText() const override;
  std::string RollbackText() const override;
  std::string InTransactionText() const override { return "SELECT @@in_transaction"; }
  ServerFailure FailureOf(const Diagnostic& diagnostic) const override;
  bool TakesUtf8() const override { return true; }
};

}  // namespace ktl
