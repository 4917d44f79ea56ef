#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "database/connection.h"

namespace ktl::test {

// A MariaDB server of the tests' own: in a folder of its own, on a socket, without a network. It ends with
// the process that started it.
class PrivateServer {
 public:
  // Throws std::runtime_error when none can be started.
  PrivateServer();
  ~PrivateServer();
  PrivateServer(const PrivateServer&) = delete;
  PrivateServer& operator=(const PrivateServer&) = delete;

  // The one that all tests share, named in KTL_TEST_MARIADB_SOCKET or started by the first who asks. Null
  // when none can be had; WhyNot tells.
  static PrivateServer* Shared();
  static const std::string& WhyNot();

  // More settings may follow: "Database=..;".
  std::string ConnectionString(const std::string& database) const;
  // As the server's administrator, in its own language.
  void Run(const std::string& sql) const;

  void Kill();  // as if the machine had failed
  void Start();
  void Hang();  // until it is awoken
  void Awake();

 private:
  explicit PrivateServer(std::filesystem::path socket) : socket_(std::move(socket)) {}

  std::filesystem::path folder_;  // empty for a server that is not ours
  std::filesystem::path socket_;
  pid_t process_ = 0;
};

// A database on the shared server with nothing in it, gone with the object.
class ServerDatabase {
 public:
  ServerDatabase();
  ~ServerDatabase();
  ServerDatabase(const ServerDatabase&) = delete;
  ServerDatabase& operator=(const ServerDatabase&) = delete;

  const std::string& Name() const { return name_; }
  std::string ConnectionString() const;
  // Statements of the server's own language in this database.
  void Run(const std::vector<std::string>& statements) const;
  void Run(const std::string& sql) const { Run(std::vector{sql}); }

 private:
  std::string name_;
};

}  // namespace ktl::test

// In front of a test that needs a server.
#define KTL_NEEDS_SERVER() \
  if (ktl::test::PrivateServer::Shared() == nullptr) GTEST_SKIP() << ktl::test::PrivateServer::WhyNot()
