#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "company/company_copy.h"
#include "company/sample.h"

namespace ktl {

struct CompanyOptions {
  std::filesystem::path file;
  std::string server;  // instead of a file: "Provider=..;" or "@FILE"
  bool empty = false;  // the required rows and the months, no sample
  bool force = false;  // an existing file is replaced
  SampleOptions sample;
  CopyWatch watch;                                    // of one on a server
  std::optional<std::filesystem::path> settingsFile;  // where the program finds the company from
};

// What a table holds: the same rows in the same order give the same sum.
struct TableSum {
  std::string table;
  std::int64_t rows = 0;
  std::uint64_t checksum = 0;

  bool operator==(const TableSum&) const = default;
};

// Makes a company in a file beside the wanted one and puts it there when it is whole; the local store
// klgen.MDB comes into the same folder when there is none. A CompanyError, with nothing left behind, when it
// cannot be done or when the file exists already.
std::vector<TableSum> CreateCompany(const CompanyOptions& options);

// The same on options.server: made in a file of its own for the moment, and copied.
std::vector<TableSum> CreateOnServer(const CompanyOptions& options);

// What an embedded company has besides its tables and rows, behind which it is made.
void FinishCompany(SqliteDatabase& database);

// The local store klgen.MDB of a program's folder, which may hold years of its own: one that is there stays.
void CreateLocalStore(const std::filesystem::path& folder);

// Every table of the company, by name.
std::vector<TableSum> TableSums(SqliteDatabase& database);

// Lets the settings store name the company and its user. The connection string, which may hold a password,
// stands there scrambled; that is no encryption.
void WriteSettings(const std::filesystem::path& settingsFile, const CompanyAddress& company);

}  // namespace ktl
