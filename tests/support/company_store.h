#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace ktl::test {

// Where a test's company lives: in a file of its own, or, with KTL_TEST_STORE=MariaDB in the environment, on
// the tests' own server.
class CompanyStore {
 public:
  virtual ~CompanyStore() = default;
  virtual std::string ConnectionString() const = 0;
  virtual std::filesystem::path File() const = 0;  // empty on a server
  // A statement that the language of the program does not have, in words that every store takes.
  virtual void Alter(const std::string& sql) = 0;
};

bool CompaniesAreOnServer();

// With the required rows and nothing else.
std::unique_ptr<CompanyStore> NewCompanyStore();

// A name for a file or a folder that no other test has.
std::filesystem::path UnusedPath(const char* ending);

}  // namespace ktl::test

// In front of a test that looks at the file of an embedded company, or changes it in the file's own language.
#define KTL_NEEDS_FILE() \
  if (ktl::test::CompaniesAreOnServer()) GTEST_SKIP() << "a test of the embedded database"
