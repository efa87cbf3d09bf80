#include "Tests/Platform/Support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

ChildProcess::ChildProcess(const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  output_ = ends[0];
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  std::vector<char*> pointers;
  for (const auto& argument : arguments)
    pointers.push_back(const_cast<char*>(argument.c_str()));
  pointers.push_back(nullptr);
  const int error =
      posix_spawnp(&process_, pointers[0], &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  if (error != 0) throw std::runtime_error(arguments[0] + " cannot be started");
}

ChildProcess::~ChildProcess() {
  kill();
  wait();
  close(output_);
}

std::optional<std::string> ChildProcess::readLine() {
  constexpr int Milliseconds = 10'000;
  while (true) {
    if (const size_t end = unread_.find('\n'); end != std::string::npos) {
      const std::string line = unread_.substr(0, end);
      unread_.erase(0, end + 1);
      return line;
    }
    pollfd waiting{output_, POLLIN, 0};
    if (poll(&waiting, 1, Milliseconds) <= 0) return std::nullopt;
    std::array<char, 4096> block{};
    const ssize_t count = read(output_, block.data(), block.size());
    if (count <= 0) return std::nullopt;
    unread_.append(block.data(), static_cast<size_t>(count));
  }
}

void ChildProcess::kill() {
  if (process_ > 0) ::kill(process_, SIGKILL);
}

int ChildProcess::wait() {
  int status = 0;
  if (process_ <= 0 || waitpid(process_, &status, 0) != process_) return -1;
  process_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
