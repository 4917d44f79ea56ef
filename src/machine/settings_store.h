#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "machine/machine.h"
#include "runtime/errors.h"

namespace ktl {

// A settings file that cannot be read, written or understood; the description names the file.
class SettingsError final : public RuntimeError {
 public:
  explicit SettingsError(std::string description) : RuntimeError(75, std::move(description)) {}
};

// The settings store as a text file of "[section]" and "key=value" lines, which the host writes too. Values
// come back byte for byte. A missing file is an empty store; a file changed by another program is read again;
// two programs may write at once. A link stays a link; a byte order mark is passed over. The file belongs to
// its user alone (mode 0600 in a folder of 0700).
class SettingsFile final : public SettingsStore {
 public:
  // patience: how long a Set waits for another program that is writing.
  explicit SettingsFile(std::filesystem::path path,
                        std::chrono::milliseconds patience = std::chrono::seconds(10))
      : path_(std::move(path)), patience_(patience) {}

  // Both throw SettingsError.
  std::string Get(std::string_view section, std::string_view key,
                  std::string_view defaultValue = "") override;
  void Set(std::string_view section, std::string_view key, std::string_view value) override;

  const std::filesystem::path& path() const { return path_; }

 private:
  using Entries = std::map<std::string, std::string, std::less<>>;
  struct Stamp {
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t nanoseconds = 0;
    bool operator==(const Stamp&) const = default;
  };

  std::optional<Stamp> StampOf() const;
  void ReadWhenChanged();

  std::filesystem::path path_;
  std::chrono::milliseconds patience_;
  std::optional<Stamp> readAt_;
  Entries entries_;
};

// KTL_SETTINGS, or kestrel-ledger/settings.ini under the user's configuration folder.
std::filesystem::path DefaultSettingsPath();

}  // namespace ktl
