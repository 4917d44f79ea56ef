#pragma once

#include <cstdint>

#include "company/row_writer.h"
#include "company/sample_model.h"

namespace ktl {

// The employees, each with his detail rows; ids of detail rows are counted over all employees.
class SamplePeople final {
 public:
  explicit SamplePeople(std::uint64_t seed) : seed_(seed) {}
  SamplePerson Make(int id);

 private:
  std::uint64_t seed_;
  int nextDetail_ = 1;
};

class PeopleWriter final {
 public:
  explicit PeopleWriter(SqliteDatabase& database);
  void Write(const SamplePerson& person);

 private:
  void WriteClasses(const SamplePerson& person);
  void WriteHistory(const SamplePerson& person);

  RowWriter employee_;
  RowWriter detail_;
  RowWriter classes_;
  RowWriter custom_;
  RowWriter fundHistory_;
  RowWriter insuranceHistory_;
};

}  // namespace ktl
