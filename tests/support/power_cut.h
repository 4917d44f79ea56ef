#pragma once

#include <filesystem>

namespace ktl::test {

// A company whose machine can lose its power: in a program that has one, what was flushed of a file stands
// beside it.
class PowerCut {
 public:
  explicit PowerCut(std::filesystem::path company);
  ~PowerCut();
  PowerCut(const PowerCut&) = delete;
  PowerCut& operator=(const PowerCut&) = delete;

  // The employees that are there when the machine comes up again.
  int EmployeesLeft() const;
  static int Flushes();

 private:
  std::filesystem::path With(const char* ending) const { return company_.string() + ending; }

  std::filesystem::path company_;
};

}  // namespace ktl::test
