#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// Variables that differ from this process's own; null removes one.
using Environment = std::map<std::string, std::optional<std::string>>;

/// Looks at `condition` again and again until it holds. False if it does not within `limit`, which
/// is generous: it only ends a test that has failed.
bool waitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds limit = std::chrono::seconds(20));

/// A program that a test has started. It does not outlive this object, nor the test.
class ChildProcess {
 public:
  /// Starts `command`, found through PATH. A program that does not exist ends with status 127.
  explicit ChildProcess(const std::vector<std::string>& command,
                        const Environment& environment = {});
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  pid_t pid() const { return pid_; }
  void sendSignal(int signal) const;

  /// The exit status, or 128 and the number of the signal that ended the program. Null while it
  /// runs.
  std::optional<int> exitStatus();

  /// Waits for the end. Null if it does not come in time.
  std::optional<int> waitForExit();

  /// What the program has written so far to its standard output and to its standard error.
  std::string output() const;
  std::string errors() const;

 private:
  pid_t pid_ = 0;
  int output_ = -1;
  int errors_ = -1;
  std::optional<int> exitStatus_;
};

/// What a program that ends by itself has left behind.
struct FinishedProcess {
  std::optional<int> status;  ///< Null if it had to be ended.
  std::string output;
  std::string errors;
};

FinishedProcess runToEnd(const std::vector<std::string>& command,
                         const Environment& environment = {});
