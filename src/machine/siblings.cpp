#include "machine/siblings.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <thread>

#include "machine/files.h"

namespace ktl {

namespace {

constexpr std::chrono::milliseconds kTimeToEnd{2000};
constexpr std::chrono::milliseconds kEndingStep{20};

class LocalProcess final : public SiblingProcess {
 public:
  LocalProcess(pid_t process, int output) : process_(process), output_(output) {}
  LocalProcess(const LocalProcess&) = delete;
  LocalProcess& operator=(const LocalProcess&) = delete;
  ~LocalProcess() override {
    End();
    ::close(output_);
  }

  bool IsRunning() override {
    if (ended_) return false;
    int status = 0;
    const pid_t reaped = ::waitpid(process_, &status, WNOHANG);
    ended_ = reaped == process_ || (reaped < 0 && errno == ECHILD);
    return !ended_;
  }

  // The last whole line; what has no line end yet waits for it.
  std::string TakeStatus() override {
    std::array<char, 1024> read{};
    for (ssize_t count = 0; (count = ::read(output_, read.data(), read.size())) > 0;)
      pending_.append(read.data(), static_cast<std::size_t>(count));
    const std::size_t end = pending_.rfind('\n');
    if (end == std::string::npos) return "";
    const std::size_t before = end == 0 ? std::string::npos : pending_.rfind('\n', end - 1);
    const std::size_t begin = before == std::string::npos ? 0 : before + 1;
    std::string line = pending_.substr(begin, end - begin);
    pending_.erase(0, end + 1);
    return line;
  }

 private:
  // Asked first, then without asking.
  void End() {
    if (!IsRunning()) return;
    ::kill(process_, SIGTERM);
    const auto deadline = std::chrono::steady_clock::now() + kTimeToEnd;
    while (IsRunning() && std::chrono::steady_clock::now() < deadline)
      std::this_thread::sleep_for(kEndingStep);
    if (!IsRunning()) return;
    ::kill(process_, SIGKILL);
    int status = 0;
    while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
  }

  pid_t process_;
  int output_;
  bool ended_ = false;
  std::string pending_;
};

}  // namespace

std::string LocalSiblings::Find(const Sibling& sibling) {
  if (sibling.program.empty()) return "";
  std::error_code ignored;
  for (const std::filesystem::path& folder :
       {std::filesystem::path(folder_.Path()), std::filesystem::current_path(ignored),
        std::filesystem::path(sibling.searchFolder)}) {
    if (!folder.empty() && FnBlnFileExists(folder / sibling.program))
      return (folder / sibling.program).string();
  }
  return "";
}

std::unique_ptr<SiblingProcess> LocalSiblings::Launch(const std::string& path, const Sibling& sibling) {
  int pipe[2] = {};
  if (::pipe2(pipe, O_CLOEXEC) != 0) return nullptr;
  ::fcntl(pipe[0], F_SETFL, O_NONBLOCK);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  // Our standard input may be a script, which is ours to read.
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
  std::string program = path;
  std::string arguments = sibling.arguments;
  char* const argv[] = {program.data(), arguments.empty() ? nullptr : arguments.data(), nullptr};
  pid_t process = 0;
  const int failed = ::posix_spawn(&process, path.c_str(), &actions, nullptr, argv, environ);
  ::posix_spawn_file_actions_destroy(&actions);
  ::close(pipe[1]);
  if (failed != 0) {
    ::close(pipe[0]);
    return nullptr;
  }
  return std::make_unique<LocalProcess>(process, pipe[0]);
}

bool LocalSiblings::IsAlive(long windowHandle) {
  return windowHandle > 0 && (::kill(static_cast<pid_t>(windowHandle), 0) == 0 || errno == EPERM);
}

}  // namespace ktl
