#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

/// A program started by a test, ended and collected with this object at the latest.
class ChildProcess {
 public:
  explicit ChildProcess(const std::vector<std::string>& arguments);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  /// The next line of its standard output; nothing at its end, or after ten seconds.
  std::optional<std::string> readLine();

  /// Ends it at once, as a power cut would.
  void kill();

  /// Its exit status, or -1 if a signal ended it.
  int wait();

 private:
  pid_t process_ = -1;
  int output_ = -1;
  std::string unread_;
};
