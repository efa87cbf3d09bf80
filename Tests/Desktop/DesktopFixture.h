#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Tests/Support/ChildProcess.h"

/// Starts a bus of the test's own and a fake desktop on it; the variables of this process name them
/// from then on. Both end with this object.
class DesktopFixture {
 public:
  DesktopFixture();

  void set(const std::string& key, unsigned value);
  void sleep(bool isGoing);
  void zoneChanged();

  /// Ends the fake desktop, and starts it anew with every setting at 0.
  void stop() { desktop_.reset(); }
  void start();

 private:
  void call(const std::vector<std::string>& arguments);

  std::unique_ptr<ChildProcess> systemBus_;
  std::unique_ptr<ChildProcess> desktop_;
};
