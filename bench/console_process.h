#pragma once

#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace ktl {

// KTLStInsConsole as a person at another workstation uses it: a few commands at a time, and what came of
// them.
class ConsoleProcess {
 public:
  ConsoleProcess(const std::string& program, const std::string& commandLine) {
    int commands[2], answers[2];
    if (pipe2(commands, O_CLOEXEC) != 0 || pipe2(answers, O_CLOEXEC) != 0) return;
    pid_ = fork();
    if (pid_ == 0) {
      dup2(commands[0], STDIN_FILENO);
      dup2(answers[1], STDOUT_FILENO);
      dup2(answers[1], STDERR_FILENO);
      execl(program.c_str(), program.c_str(), commandLine.c_str(), nullptr);
      _exit(127);
    }
    close(commands[0]);
    close(answers[1]);
    commands_ = fdopen(commands[1], "w");
    answers_ = fdopen(answers[0], "r");
  }
  ~ConsoleProcess() { End(); }
  ConsoleProcess(const ConsoleProcess&) = delete;
  ConsoleProcess& operator=(const ConsoleProcess&) = delete;

  // The transcript of the commands; nothing when the program ended before their end, which a control that is
  // printed marks.
  std::optional<std::vector<std::string>> Ask(const std::string& script, const std::string& mark) {
    const std::string last = mark + " = ";
    fprintf(commands_, "%sprint %s\n", script.c_str(), mark.c_str());
    if (fflush(commands_) != 0) return std::nullopt;
    std::vector<std::string> lines;
    while (const auto line = ReadLine()) {
      lines.push_back(*line);
      if (line->starts_with(last)) return lines;
    }
    left_ = std::move(lines);
    return std::nullopt;
  }

  void Kill() const { kill(pid_, SIGKILL); }
  // What it said that nobody has read, and its exit status (-1 for a signal); once.
  int End() {
    if (pid_ < 0) return 0;
    fclose(commands_);
    while (const auto line = ReadLine()) left_.push_back(*line);
    fclose(answers_);
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  const std::vector<std::string>& Left() const { return left_; }

 private:
  std::optional<std::string> ReadLine() {
    std::string line;
    for (int c = fgetc(answers_); c != EOF; c = fgetc(answers_)) {
      if (c == '\n') return line;
      line += static_cast<char>(c);
    }
    return line.empty() ? std::nullopt : std::optional(line);
  }

  pid_t pid_ = -1;
  FILE* commands_ = nullptr;
  FILE* answers_ = nullptr;
  std::vector<std::string> left_;
};

}  // namespace ktl
