#pragma once

#include <filesystem>
#include <string>

#include "company/company.h"

namespace ktl {

// A company of that many employees with 2.4 advances or loans and 60 instalments each, made once in the
// temporary folder and used again while it stands there.
inline std::filesystem::path BenchCompany(int employees) {
  const auto file =
      std::filesystem::temp_directory_path() / ("ktl-bench-" + std::to_string(employees) + ".kldb");
  if (std::filesystem::exists(file)) return file;
  CompanyOptions options;
  options.file = file;
  options.sample.employees = employees;
  options.sample.targets.loans = employees * 24 / 10;
  options.sample.targets.instalments = employees * 60;
  CreateCompany(options);
  return file;
}

inline std::string ConnectionStringOf(const std::filesystem::path& file) {
  return "Provider=SQLite;Data Source=" + file.string() + ";";
}

}  // namespace ktl
