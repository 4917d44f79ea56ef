#include "support/private_server.h"

#include <fmt/format.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "database/drivers/mariadb_dialect.h"
#include "database/drivers/odbc_database.h"

namespace ktl::test {

namespace {

namespace fs = std::filesystem;

const MariaDbDialect& Dialect() {
  static const MariaDbDialect dialect;
  return dialect;
}

std::string& Reason() {
  static std::string reason;
  return reason;
}

fs::path Program(const char* name) {
  for (const char* folder : {"/usr/sbin", "/usr/bin", "/usr/local/sbin", "/usr/local/bin", "/usr/libexec"})
    if (fs::exists(fs::path(folder) / name)) return fs::path(folder) / name;
  throw std::runtime_error(fmt::format("{} is not installed", name));
}

// Its output goes to a file of the folder. It ends when this process does.
pid_t Begin(const fs::path& folder, std::vector<std::string> words) {
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const std::string log = folder / "log";
  const pid_t parent = getpid();
  const pid_t process = fork();
  if (process != 0) return process;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);
  if (freopen(log.c_str(), "a", stdout) == nullptr) _exit(1);
  dup2(STDOUT_FILENO, STDERR_FILENO);
  execv(arguments[0], arguments.data());
  _exit(127);
}

ConnectionSettings Settings(const std::string& connectionString) {
  ConnectionSettings settings;
  settings.connectionString = connectionString;
  settings.connectionTimeout = 5;
  settings.commandTimeout = 60;
  return settings;
}

void RunOn(const std::string& connectionString, const std::vector<std::string>& statements) {
  OdbcDatabase database(Dialect());
  database.Open(Settings(connectionString));
  for (const auto& statement : statements) database.Run(statement);
}

}  // namespace

PrivateServer::PrivateServer() {
  static int number = 0;
  const fs::path memory = "/dev/shm";
  folder_ = (fs::exists(memory) ? memory : fs::temp_directory_path()) /
            fmt::format("ktl-mariadb-{}-{}", getpid(), ++number);
  fs::create_directories(folder_ / "tmp");
  socket_ = folder_ / "socket";
  const std::string data = "--datadir=" + (folder_ / "data").string();
  std::vector<std::string> install{Program("mariadb-install-db"), "--no-defaults", data,
                                   "--auth-root-authentication-method=normal", "--skip-test-db"};
  if (geteuid() == 0) install.push_back("--user=root");
  int status = 0;
  waitpid(Begin(folder_, install), &status, 0);
  if (status != 0)
    throw std::runtime_error("a MariaDB server cannot be set up, see " + (folder_ / "log").string());
  Start();
}

void PrivateServer::Start() {
  std::vector<std::string> words{
      Program("mariadbd"), "--no-defaults", "--datadir=" + (folder_ / "data").string(),
      "--socket=" + socket_.string(), "--pid-file=" + (folder_ / "pid").string(),
      // Not the machine's: a server that starts deletes what others have in theirs.
      "--tmpdir=" + (folder_ / "tmp").string(), "--skip-networking", "--skip-log-bin",
      "--innodb-flush-log-at-trx-commit=0", "--innodb-buffer-pool-size=64M"};
  if (geteuid() == 0) words.push_back("--user=root");
  process_ = Begin(folder_, words);
  for (int tries = 0;; ++tries) {
    try {
      return RunOn(ConnectionString("mysql"), {"SELECT 1"});
    } catch (const DatabaseError& error) {
      if (tries == 200 || waitpid(process_, nullptr, WNOHANG) != 0)
        throw std::runtime_error("a MariaDB server cannot be started: " + error.description());
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
}

void PrivateServer::Kill() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = 0;
}

void PrivateServer::Hang() {
  kill(process_, SIGSTOP);
  // Its threads stop one by one.
  const auto stopped = [](const fs::directory_entry& thread) {
    std::ifstream stat(thread.path() / "stat");
    const std::string text((std::istreambuf_iterator<char>(stat)), {});
    return text.find(") T ") != text.npos;
  };
  const auto threads = fmt::format("/proc/{}/task", process_);
  while (!std::ranges::all_of(fs::directory_iterator(threads), stopped))
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}
void PrivateServer::Awake() { kill(process_, SIGCONT); }

PrivateServer::~PrivateServer() {
  if (process_ != 0) Kill();
  std::error_code ignored;
  if (!folder_.empty()) fs::remove_all(folder_, ignored);
}

PrivateServer* PrivateServer::Shared() {
  static const std::unique_ptr<PrivateServer> shared = []() -> std::unique_ptr<PrivateServer> {
    const char* socket = std::getenv("KTL_TEST_MARIADB_SOCKET");
    if (socket != nullptr && fs::exists(socket))
      return std::unique_ptr<PrivateServer>(new PrivateServer(fs::path(socket)));
    try {
      return std::make_unique<PrivateServer>();
    } catch (const std::runtime_error& error) {
      Reason() = error.what();
      return nullptr;
    }
  }();
  return shared.get();
}

const std::string& PrivateServer::WhyNot() { return Reason(); }

std::string PrivateServer::ConnectionString(const std::string& database) const {
  return fmt::format("Provider=MariaDB;Socket={};Database={};User ID=root;", socket_.string(), database);
}

void PrivateServer::Run(const std::string& sql) const { RunOn(ConnectionString("mysql"), {sql}); }

ServerDatabase::ServerDatabase() {
  static int number = 0;
  name_ = fmt::format("ktl_test_{}_{}", getpid(), ++number);
  PrivateServer::Shared()->Run("CREATE DATABASE " + name_ +
                               " CHARACTER SET utf8mb4 COLLATE utf8mb4_uca1400_as_ci");
}

ServerDatabase::~ServerDatabase() { PrivateServer::Shared()->Run("DROP DATABASE " + name_); }

std::string ServerDatabase::ConnectionString() const {
  return PrivateServer::Shared()->ConnectionString(name_);
}

void ServerDatabase::Run(const std::vector<std::string>& statements) const {
  RunOn(ConnectionString(), statements);
}

}  // namespace ktl::test
