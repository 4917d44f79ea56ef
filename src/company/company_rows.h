#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "company/company_address.h"
#include "company/row_sum.h"
#include "company/table_catalogue.h"

namespace ktl {

using Row = std::vector<Value>;
using RowHandler = std::function<void(const Row&)>;

// A company whose rows are read as they stood at one moment, whatever others write meanwhile. Failures are
// DatabaseErrors.
class RowSource {
 public:
  virtual ~RowSource() = default;
  // Of everything that the database holds, in the spelling of the database.
  virtual std::vector<std::string> Tables() = 0;
  virtual std::vector<std::string> ColumnsOf(const std::string& table) = 0;
  // The columns of the description, which must be there, in the order of the key.
  virtual void Read(const TableDescription& table, const RowHandler& handler) = 0;
};

// A company in the making. Until Keep has returned the place holds what it held before, whatever ends the
// program; what a killed one has left goes with the next that is made there.
class RowTarget {
 public:
  virtual ~RowTarget() = default;
  virtual void Make(const TableDescription& table) = 0;
  // Rows go to the table that was made last; they are there when Flush has returned.
  virtual void Add(const Row& row) = 0;
  virtual void Flush() = 0;
  // What stands in a table that was made.
  virtual RowSum SumOf(const TableDescription& table) = 0;
  virtual void Keep() = 0;
  // What was found of an earlier one that was killed, for a person; "" for nothing.
  virtual std::string Cleaned() const { return ""; }
};

// Throw CompanyError and DatabaseError: no company, one that is in the way and not to be replaced.
std::unique_ptr<RowSource> OpenSource(const CompanyAddress& address);
std::unique_ptr<RowTarget> OpenTarget(const CompanyAddress& address, bool replace);

}  // namespace ktl
