#include "machine/settings_store.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "support/temporary_folder.h"

namespace ktl {
namespace {

namespace fs = std::filesystem;

class SettingsStoreTest : public testing::Test {
 protected:
  void WriteFile(const std::string& text) {
    fs::create_directories(path_.parent_path());
    std::ofstream(path_, std::ios::binary) << text;
  }

  TemporaryFolder folder_;
  const fs::path path_ = folder_.path() / "config" / "kestrel-ledger" / "settings.ini";
};

TEST_F(SettingsStoreTest, ValuesComeBackByteForByte) {
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  const std::string values[] = {"",           " both ends ",          "a=b;c#d [e]",
                                "\"quoted\"", "C:\\data\\x41",        "line\r\nline",
                                "\t",         "\xc3\xb1\xe2\x82\xb9", everyByte};
  SettingsFile writer(path_);
  for (const std::string& value : values) {
    writer.Set("Settings", "DefLnk", value);
    writer.Set("[odd]", " key=;#", value);
    SettingsFile reader(path_);
    EXPECT_EQ(reader.Get("Settings", "DefLnk", "none"), value);
    EXPECT_EQ(reader.Get("[odd]", " key=;#", "none"), value);
  }
}

TEST_F(SettingsStoreTest, NamesKnowNoLetterCaseAndSectionsAreApart) {
  SettingsFile store(path_);
  EXPECT_EQ(store.Get("Settings", "USER", "ADMIN"), "ADMIN");
  store.Set("Settings", "User", "RAVI");
  store.Set("SETTINGS", "USER", "MEENA");
  store.Set("ExeTalk", "User", "other");
  EXPECT_EQ(store.Get("settings", "user"), "MEENA");
  EXPECT_EQ(store.Get("EXETALK", "uSER"), "other");
  EXPECT_EQ(ReadAll(path_), "[Settings]\nUSER=MEENA\n[ExeTalk]\nUser=other\n");
}

TEST_F(SettingsStoreTest, WhatTheHostWroteStays) {
  WriteFile("; of the host\r\n[Settings]\r\nPath = /data \r\n\r\n[ExeTalk]\nFilter=1");
  SettingsFile store(path_);
  EXPECT_EQ(store.Get("Settings", "Path"), "/data");
  store.Set("Settings", "User", "RAVI");
  EXPECT_EQ(ReadAll(path_),
            "; of the host\r\n[Settings]\r\nPath = /data \r\nUser=RAVI\n\r\n[ExeTalk]\nFilter=1\n");

  SettingsFile(path_).Set("ExeTalk", "Filter", "0");
  EXPECT_EQ(store.Get("ExeTalk", "Filter"), "0");
  fs::remove(path_);
  EXPECT_EQ(store.Get("ExeTalk", "Filter", "gone"), "gone");
}

TEST_F(SettingsStoreTest, BelongsToItsUserAlone) {
  SettingsFile store(path_);
  store.Set("Settings", "User", "RAVI");
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms(0600));
  EXPECT_EQ(fs::status(path_.parent_path()).permissions(), fs::perms(0700));
  fs::permissions(path_, fs::perms(0644));
  store.Set("Settings", "User", "MEENA");
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms(0600));
}

TEST_F(SettingsStoreTest, RefusesWhatItCannotUnderstandAndLeavesItAlone) {
  const std::pair<const char*, const char*> cases[] = {
      {"[Settings]\nUser\n", "line 2: neither a [section] nor key=value"},
      {"\x7f\x45LF\x02\x01", "line 1: neither"},
      {"[Settings]\n\nPath=C:\\data\n", "line 3: a \"\\\""},
      {"Path=\\xG1\n", "line 1: a \"\\\""},
      {"a=\x01\x02\n", "line 1: neither"},
  };
  for (const auto& [text, why] : cases) {
    WriteFile(text);
    SettingsFile store(path_);
    try {
      store.Get("Settings", "User");
      ADD_FAILURE() << text << " was understood";
    } catch (const SettingsError& error) {
      EXPECT_NE(error.description().find(path_.string()), std::string::npos);
      EXPECT_NE(error.description().find(why), std::string::npos) << error.description();
    }
    EXPECT_THROW(store.Set("Settings", "User", "RAVI"), SettingsError);
    EXPECT_EQ(ReadAll(path_), text);
  }
  fs::remove(path_);
  fs::create_directory(path_);
  EXPECT_THROW(SettingsFile(path_).Get("Settings", "User"), SettingsError);
}

TEST_F(SettingsStoreTest, ALinkStaysALinkAndAByteOrderMarkIsPassedOver) {
  const fs::path real = folder_.path() / "shared.ini";
  std::ofstream(real, std::ios::binary) << "\xEF\xBB\xBF[Settings]\nUser=RAVI\n";
  fs::create_directories(path_.parent_path());
  fs::create_symlink(real, path_);
  SettingsFile store(path_);
  EXPECT_EQ(store.Get("Settings", "User"), "RAVI");
  store.Set("Settings", "Path", "/data");
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_EQ(ReadAll(real), "[Settings]\nUser=RAVI\nPath=/data\n");
}

TEST_F(SettingsStoreTest, ALockThatIsHeldIsToldAfterAWhile) {
  SettingsFile(path_).Set("Settings", "User", "RAVI");
  const int lock = ::open((path_.string() + ".lock").c_str(), O_RDWR);
  ASSERT_EQ(::flock(lock, LOCK_EX), 0);
  SettingsFile store(path_, std::chrono::milliseconds(60));
  try {
    store.Set("Settings", "User", "MEENA");
    ADD_FAILURE() << "written through a lock";
  } catch (const SettingsError& error) {
    EXPECT_NE(error.description().find("written by another program"), std::string::npos);
  }
  EXPECT_EQ(store.Get("Settings", "User"), "RAVI");
  ::close(lock);
  store.Set("Settings", "User", "MEENA");
  EXPECT_EQ(store.Get("Settings", "User"), "MEENA");
}

TEST_F(SettingsStoreTest, TwoProgramsWriteAtOnceAndNothingIsLost) {
  constexpr int kWrites = 60;
  const auto write = [&](const std::string& who) {
    SettingsFile store(path_);
    for (int i = 0; i < kWrites; ++i) store.Set("ExeTalk", who + std::to_string(i), std::to_string(i));
  };
  const pid_t child = ::fork();
  if (child == 0) {
    [&]() noexcept { write("child"); }();  // what it throws aborts it
    ::_exit(0);
  }
  write("parent");
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_EQ(status, 0);
  SettingsFile store(path_);
  for (const std::string who : {"child", "parent"})
    for (int i = 0; i < kWrites; ++i)
      EXPECT_EQ(store.Get("ExeTalk", who + std::to_string(i)), std::to_string(i)) << who;
}

}  // namespace
}  // namespace ktl
