#pragma once

#include <filesystem>
#include <string>

namespace ktl {

// Where a company is: in a file, or on a server.
struct CompanyAddress {
  std::string connectionString;
  std::filesystem::path file;  // empty for one on a server
  std::string shown;           // for a person: without the user and his password

  bool OnServer() const { return file.empty(); }
};

// What a person writes for a company: its file, a connection string ("Provider=..;"), or "@FILE" for one that
// the first line of a file holds, so that no password stands on a command line. Throws CompanyError.
CompanyAddress AddressOf(const std::string& text);

}  // namespace ktl
