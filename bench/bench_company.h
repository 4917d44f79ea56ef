#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "company/company.h"

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

// A company made once in the temporary folder and used again while it stands there.
inline std::filesystem::path BenchCompany(const BenchSize& size) {
  const bool usual = size.instalments == Usual(size.employees).instalments;
  const bool fewLoans = !usual && size.loans != kLarge.loans;
  const std::string name = std::to_string(size.employees) +
                           (usual ? "" : "-" + std::to_string(size.instalments)) +
                           (fewLoans ? "-" + std::to_string(size.loans) : "");
  const auto file = std::filesystem::temp_directory_path() / ("ktl-bench-" + name + ".kldb");
  if (std::filesystem::exists(file)) return file;
  CompanyOptions options;
  options.file = file;
  options.sample.employees = size.employees;
  options.sample.targets.loans = size.loans;
  options.sample.targets.instalments = size.instalments;
  CreateCompany(options);
  return file;
}
inline std::filesystem::path BenchCompany(int employees) { return BenchCompany(Usual(employees)); }

inline std::string ConnectionStringOf(const std::filesystem::path& file) {
  return "Provider=SQLite;Data Source=" + file.string() + ";";
}

}  // namespace ktl
