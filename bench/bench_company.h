#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "company/company.h"
#include "company/company_address.h"
#include "company/company_copy.h"
#include "database/drivers/mariadb_dialect.h"
#include "database/drivers/odbc_database.h"

namespace ktl {

struct BenchSize {
  int employees = 0;
  int instalments = 0;
  int loans = 0;

  bool operator==(const BenchSize&) const = default;
};

inline BenchSize Usual(int employees) { return {employees, employees * 60, employees * 24 / 10}; }

// Ten years of a large office. Making it takes a minute and 800 MB, so it is measured only when the
// environment says KTL_BENCH_LARGE=1.
inline constexpr BenchSize kLarge{10000, 7'000'000, 7'000'000 / 60};
// The same in fewer loans, of twelve to thirty-six years.
inline constexpr BenchSize kLong{10000, 7'000'000, 24'000};
inline bool IsLargeMeasured() { return std::getenv("KTL_BENCH_LARGE") != nullptr; }

inline std::string NameOf(const BenchSize& size) {
  const bool usual = size.instalments == Usual(size.employees).instalments;
  const bool fewLoans = !usual && size.loans != kLarge.loans;
  return std::to_string(size.employees) + (usual ? "" : "-" + std::to_string(size.instalments)) +
         (fewLoans ? "-" + std::to_string(size.loans) : "");
}

// A company made once in the temporary folder and used again while it stands there.
inline std::filesystem::path BenchFile(const BenchSize& size) {
  const auto file = std::filesystem::temp_directory_path() / ("ktl-bench-" + NameOf(size) + ".kldb");
  if (std::filesystem::exists(file)) return file;
  CompanyOptions options;
  options.file = file;
  options.sample.employees = size.employees;
  options.sample.targets.loans = size.loans;
  options.sample.targets.instalments = size.instalments;
  CreateCompany(options);
  return file;
}

// The MariaDB server on which the companies of a run are, as a connection string without a database; empty
// where they are files. The floors know files only: leave them out by --benchmark_filter.
inline std::string BenchServer() {
  const char* server = std::getenv("KTL_BENCH_SERVER");
  return server != nullptr ? server : "";
}

// A company on that server, copied once and used again with all that was done to it until it is dropped.
inline std::filesystem::path CompanyOnServer(const BenchSize& size, const std::string& purpose) {
  const std::string name = "ktl-bench-" + purpose + NameOf(size);
  const auto address = AddressOf(BenchServer() + "Database=" + name + ";");
  const MariaDbDialect dialect;
  OdbcDatabase server(dialect);
  server.Open({.connectionString = BenchServer() + "Database=information_schema;"});
  server.Run("CREATE DATABASE IF NOT EXISTS " + dialect.Quoted(name) +
             " CHARACTER SET utf8mb4 COLLATE utf8mb4_uca1400_as_ci");
  if (server.Number("SELECT COUNT(*) FROM INFORMATION_SCHEMA.TABLES WHERE TABLE_SCHEMA = '" + name + "'") ==
      0)
    CopyCompany({.from = AddressOf(BenchFile(size).string()), .to = address});
  return address.connectionString;
}

// For reading. What a person writes for it: AddressOf makes its address.
inline std::filesystem::path BenchCompany(const BenchSize& size) {
  return BenchServer().empty() ? BenchFile(size) : CompanyOnServer(size, "");
}
inline std::filesystem::path BenchCompany(int employees) { return BenchCompany(Usual(employees)); }

inline std::string ConnectionStringOf(const std::filesystem::path& company) {
  return AddressOf(company.string()).connectionString;
}

}  // namespace ktl
