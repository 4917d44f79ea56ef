#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "company/company.h"
#include "company/company_error.h"
#include "support/temporary_folder.h"

namespace ktl {

class Folder : public TemporaryFolder {
 public:
  std::filesystem::path operator/(const std::string& name) const { return path() / name; }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path()))
      names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }
};

inline CompanyOptions Options(const std::filesystem::path& file, int employees = kAnchors) {
  CompanyOptions options;
  options.file = file;
  options.sample.employees = employees;
  return options;
}

// What is told when it cannot be done.
inline std::string ErrorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const CompanyError& error) {
    return error.what();
  }
  return "done";
}

// The first column of every row, joined by "; ".
inline std::string Ask(const std::filesystem::path& file, const std::string& sql) {
  SqliteDatabase database(file, SqliteDatabase::Mode::Existing);
  std::string answer;
  for (const auto& value : FirstColumn(database, sql)) answer += (answer.empty() ? "" : "; ") + value;
  return answer;
}

}  // namespace ktl
