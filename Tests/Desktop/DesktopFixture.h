#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/TestBus.h"

/// Starts buses of the test's own and a fake desktop on them; the variables of this process name
/// them from then on. All end with this object.
class DesktopFixture {
 public:
  DesktopFixture();

  void set(const std::string& key, unsigned value);
  /// Has the fake desktop do what its own interface names, with arguments as dbus-send's.
  void call(std::vector<std::string> arguments);

  /// Ends the fake desktop, and starts it anew with every setting at 0.
  void stop() { desktop_.reset(); }
  void start();

  /// Ends the session's bus, and the desktop with it, and starts both anew, now in this colour
  /// scheme.
  void restartSession(unsigned colorScheme);

 private:
  TestBus sessionBus_{"DBUS_SESSION_BUS_ADDRESS"};
  TestBus systemBus_{"DBUS_SYSTEM_BUS_ADDRESS"};
  std::unique_ptr<ChildProcess> desktop_;
};
