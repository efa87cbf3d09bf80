#include "Tests/Support/ChildProcess.h"

#include <signal.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace {

/// What a shell says for a program that it does not find.
constexpr int NotFound = 127;

std::string contentsOf(int file) {
  std::ostringstream text;
  text << std::ifstream("/proc/self/fd/" + std::to_string(file)).rdbuf();
  return text.str();
}

/// A file in memory for what a program writes: it never blocks the writer, as a pipe may.
int openSink(const char* name) {
  const int file = memfd_create(name, MFD_CLOEXEC);
  if (file < 0) throw std::runtime_error("no file in memory for a program's output");
  return file;
}

}  // namespace

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + limit;
  while (!condition()) {
    if (Clock::now() >= deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

ChildProcess::ChildProcess(const std::vector<std::string>& command, const Environment& environment)
    : output_(openSink("output")), errors_(openSink("errors")) {
  auto texts = command;
  std::vector<char*> arguments;
  for (std::string& text : texts)
    arguments.push_back(text.data());
  arguments.push_back(nullptr);
  const pid_t parent = getpid();
  pid_ = fork();
  if (pid_ < 0) throw std::runtime_error("no new process for " + command.front());
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may have gone before the line above.
    if (getppid() != parent) _exit(1);
    dup2(output_, STDOUT_FILENO);
    dup2(errors_, STDERR_FILENO);
    for (const auto& [name, value] : environment)
      value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    execvp(arguments.front(), arguments.data());
    _exit(NotFound);
  }
}

ChildProcess::~ChildProcess() {
  if (!exitStatus()) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  close(output_);
  close(errors_);
}

void ChildProcess::sendSignal(int signal) const {
  if (!exitStatus_) kill(pid_, signal);
}

std::optional<int> ChildProcess::exitStatus() {
  int status = 0;
  if (!exitStatus_ && waitpid(pid_, &status, WNOHANG) == pid_) {
    exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  return exitStatus_;
}

std::optional<int> ChildProcess::waitForExit() {
  waitUntil([this] { return exitStatus().has_value(); });
  return exitStatus_;
}

std::string ChildProcess::output() const { return contentsOf(output_); }

std::string ChildProcess::errors() const { return contentsOf(errors_); }

FinishedProcess runToEnd(const std::vector<std::string>& command, const Environment& environment) {
  ChildProcess process(command, environment);
  const auto status = process.waitForExit();
  return {status, process.output(), process.errors()};
}
