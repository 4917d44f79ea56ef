#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "support/temporary_folder.h"

namespace ktl::test {

// A sample company as the programs find it: named by settings.ini of a folder, with the local store beside
// it. In the folder too, or, with KTL_TEST_STORE=MariaDB in the environment, on the tests' own server, where
// all samples of a test program are the same one.
class SampleCompany {
 public:
  SampleCompany();

  // Company and folder as they were made, when nobody works there any more.
  void Reset() const;
  const std::filesystem::path& Folder() const { return folder_; }
  std::string ConnectionString() const;
  // Until nobody works on it any more: a server may still be busy with what a killed program had said.
  void AwaitQuiet() const;
  // Which tables of a company hold other rows than when Remember was called.
  void Remember();
  std::set<std::string> Changed() const;

 private:
  TemporaryFolder temporary_;
  std::map<std::string, std::string> sums_;  // on the server
  std::filesystem::path folder_ = temporary_.path() / "work";
};

}  // namespace ktl::test
