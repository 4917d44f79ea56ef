#include "company/company_copy.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "company/company_error.h"
#include "company/company_rows.h"
#include "company/new_file.h"
#include "database/drivers/server_dialect.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr std::int64_t kRowsBetweenTellings = 1000;

// A company may be without it: nothing but its presence is asked for.
constexpr std::string_view kOptionalTable = "HVN_ATTENDANCE";

bool Has(const std::vector<std::string>& names, std::string_view wanted) {
  return std::ranges::any_of(names, [&](const std::string& name) { return EqualsNoCase(name, wanted); });
}

// What workstations, the embedded store and a copy under way keep for themselves is made anew.
bool IsOfTheMoment(const std::string& table) {
  const std::string name = UpperCase(table);
  return std::ranges::any_of(std::initializer_list<std::string_view>{"TMP", "KTL_", "SQLITE_"},
                             [&](std::string_view begin) { return name.starts_with(begin); });
}

std::string Told(const ServerError& error) {
  switch (error.failure()) {
    case ServerFailure::Denied:
      return fmt::format("The user of the database may not do this: {}.", error.description());
    case ServerFailure::LockWait:
      return "Somebody is at work in the company that is to be replaced. Please try again.";
    case ServerFailure::ConnectionLost:
      return fmt::format(
          "The connection to the database server was lost: {}. Do the same again: it cleans up what was begun.",
          error.description());
    default:
      return error.description();
  }
}

class Copying final {
 public:
  explicit Copying(const CompanyCopy& copy)
      : copy_(copy), source_(OpenSource(copy.from)), target_(OpenTarget(copy.to, copy.replace)) {
    const std::string cleaned = target_->Cleaned();
    if (!cleaned.empty() && copy_.watch.onCleaned) copy_.watch.onCleaned(cleaned);
  }

  CopiedCompany Run() {
    FindTables();
    std::vector<RowSum> sums;
    for (const auto& table : tables_) sums.push_back(CopyRows(table));
    for (std::size_t i = 0; i < tables_.size(); ++i) {
      if (target_->SumOf(tables_[i]) == sums[i]) continue;
      throw CompanyError(fmt::format("{}: what arrived in {} is not what was read; nothing is changed there.",
                                     copy_.to.shown, tables_[i].name));
    }
    source_.reset();  // nothing of it is held, should it be what gives way
    target_->Keep();
    return done_;
  }

 private:
  void FindTables() {
    const auto there = source_->Tables();
    for (const auto& table : TableCatalogue()) {
      if (Has(there, table.name)) {
        tables_.push_back(OfSource(table));
      } else if (table.name != kOptionalTable) {
        throw CompanyError(fmt::format("{}: no company, it has no table {}.", copy_.from.shown, table.name));
      }
    }
    done_.tables = tables_.size();
    for (const auto& name : there)
      if (FindTable(name) == nullptr && !IsOfTheMoment(name)) done_.leftOut.push_back(name);
  }

  TableDescription OfSource(const TableDescription& table) {
    const auto there = source_->ColumnsOf(table.name);
    for (const auto& column : table.columns)
      if (!Has(there, column.name))
        throw CompanyError(
            fmt::format("{}: {} has no column {}.", copy_.from.shown, table.name, column.name));
    for (const auto& column : there)
      if (std::ranges::none_of(table.columns, [&](const ColumnDescription& known) {
            return EqualsNoCase(known.name, column);
          }))
        done_.leftOut.push_back(table.name + "." + column);
    return table;
  }

  RowSum CopyRows(const TableDescription& table) {
    RowSum sum;
    target_->Make(table);
    source_->Read(table, [&](const Row& row) {
      sum.Add(row);
      target_->Add(row);
      if (copy_.watch.onProgress && sum.rows() % kRowsBetweenTellings == 0)
        copy_.watch.onProgress(table.name, sum.rows());
    });
    target_->Flush();
    if (copy_.watch.onProgress) copy_.watch.onProgress(table.name, sum.rows());
    done_.rows += sum.rows();
    return sum;
  }

  const CompanyCopy& copy_;
  std::unique_ptr<RowSource> source_;
  std::unique_ptr<RowTarget> target_;
  std::vector<TableDescription> tables_;
  CopiedCompany done_;
};

}  // namespace

CopiedCompany CopyCompany(const CompanyCopy& copy) {
  std::error_code apart;
  if (copy.from.connectionString == copy.to.connectionString ||
      std::filesystem::equivalent(copy.from.file, copy.to.file, apart))
    throw CompanyError(copy.to.shown + ": is the company to be copied");
  return TellingFiles([&] {
    try {
      return Copying(copy).Run();
    } catch (const ServerError& error) {
      throw CompanyError(Told(error));
    }
  });
}

}  // namespace ktl
