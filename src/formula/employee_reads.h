#pragma once

#include <functional>
#include <memory>
#include <string>

#include "common/fetch.h"
#include "database/recordset.h"
#include "runtime/value.h"

namespace ktl {

// What formulas and day counts read of an employee. A statement is written once, with Employee() and its like
// where his numbers stand. Here every statement is run as it comes, for one employee; RunReads puts columns
// there and asks a statement for many employees at once.
class EmployeeReads {
 public:
  explicit EmployeeReads(DataAccess& data) : data_(data) {}
  virtual ~EmployeeReads() = default;
  EmployeeReads(const EmployeeReads&) = delete;
  EmployeeReads& operator=(const EmployeeReads&) = delete;

  // The number, or what stands for it: of the employee, of his detail row, of that row's attendance head and
  // salary structure.
  virtual std::string Employee(long empId) const { return std::to_string(empId); }
  virtual std::string DetailRow(long empDetId) const { return std::to_string(empDetId); }
  virtual std::string Head(long attHeadId) const { return std::to_string(attHeadId); }
  virtual std::string Structure(long structId) const { return std::to_string(structId); }

  // Field 0 of the first row; the default when there is no row or it is null. A statement that fails throws;
  // in Fetch it shows its box and gives Empty.
  virtual Value Read(const std::string& sql, Value ifNone);
  virtual Value Fetch(const std::string& sql, Value ifNone);
  virtual bool Exists(const std::string& sql);
  // Of a plain "Select columns From tables Where conditions", ordered or not.
  virtual Recordset Rows(const std::string& sql);

  double Number(const std::string& sql) { return Fetch(sql, 0).NumberOr0(); }
  std::string Text(const std::string& sql, const char* ifNone) { return Fetch(sql, ifNone).ToText(); }

  virtual DataAccess& data() { return data_; }
  // The same, for what may depend on anything that is written meanwhile.
  virtual DataAccess& AskingAnew() { return data(); }

  // What `make` gives. A run makes it once under the key.
  template <typename T>
  std::shared_ptr<const T> Once(const std::string& key, const std::function<T()>& make) {
    std::shared_ptr<const void>* const kept = Kept(key);
    if (kept != nullptr && *kept) return std::static_pointer_cast<const T>(*kept);
    auto made = std::make_shared<const T>(make());
    if (kept != nullptr) *kept = made;
    return made;
  }

 protected:
  // The place of what a run makes once; null alone.
  virtual std::shared_ptr<const void>* Kept(const std::string&) { return nullptr; }

 private:
  DataAccess& data_;
};

}  // namespace ktl
