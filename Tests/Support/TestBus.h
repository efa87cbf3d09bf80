#pragma once

#include <memory>
#include <string>

#include "Tests/Support/ChildProcess.h"

/// A message bus of the test's own, named by a variable of this process from then on. It can end
/// and come back at the same place.
class TestBus {
 public:
  /// Starts it. `variable` is "DBUS_SESSION_BUS_ADDRESS" or "DBUS_SYSTEM_BUS_ADDRESS".
  explicit TestBus(const std::string& variable);

  void start();
  void end() { daemon_.reset(); }

 private:
  std::string socket_;
  std::unique_ptr<ChildProcess> daemon_;
};
