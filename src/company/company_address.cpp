#include "company/company_address.h"

#include <fmt/format.h>

#include <fstream>

#include "company/company_error.h"
#include "database/connection_string.h"
#include "runtime/text.h"

namespace ktl {

namespace {

std::string FirstLineOf(const std::string& file) {
  std::ifstream stream(file);
  std::string line;
  if (!std::getline(stream, line)) throw CompanyError(file + ": no connection string can be read");
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

std::string FirstOf(const std::string& connection, const char* one, const char* other) {
  const std::string value = ConnectionSetting(connection, one);
  return value.empty() ? ConnectionSetting(connection, other) : value;
}

CompanyAddress OfFile(const std::string& file) {
  const auto full = std::filesystem::absolute(file).lexically_normal();
  return {fmt::format("Provider=SQLite;Data Source={};", full.string()), file, full.string()};
}

}  // namespace

CompanyAddress AddressOf(const std::string& text) {
  if (text.starts_with('@')) return AddressOf(FirstLineOf(text.substr(1)));
  const std::string provider = ConnectionSetting(text, "Provider");
  // It may hold a password: it is not repeated.
  if (provider.empty() && text.find(';') != text.npos)
    throw CompanyError(
        "Neither a file, whose name holds no semicolon, nor a connection string, which names a provider.");
  if (provider.empty()) return OfFile(text);
  if (EqualsNoCase(provider, "SQLite")) return OfFile(ConnectionSetting(text, "Data Source"));
  const std::string server = FirstOf(text, "Server", "Data Source");
  return {text,
          {},
          fmt::format("database {} on {}", FirstOf(text, "Database", "Initial Catalog"),
                      server.empty() ? "localhost" : server)};
}

}  // namespace ktl
