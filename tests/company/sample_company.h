#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "company/company.h"
#include "company/company_error.h"

namespace ktl {

// A folder of its own that goes with the test.
class Folder {
 public:
  Folder() {
    static int made = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("ktl-company-" + std::to_string(::getpid()) + "-" + std::to_string(++made));
    std::filesystem::create_directories(path_);
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
  const std::filesystem::path& path() const { return path_; }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::filesystem::path path_;
};

inline CompanyOptions Options(const std::filesystem::path& file, int employees = kAnchors) {
  CompanyOptions options;
  options.file = file;
  options.sample.employees = employees;
  return options;
}

// The first column of every row, joined by "; ".
inline std::string Ask(const std::filesystem::path& file, const std::string& sql) {
  RawDatabase database(file);
  std::string answer;
  for (const auto& value : database.Column(sql)) answer += (answer.empty() ? "" : "; ") + value;
  return answer;
}

}  // namespace ktl
