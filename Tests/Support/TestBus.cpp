#include "Tests/Support/TestBus.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <vector>

#include "Tests/Support/TestEnvironment.h"

TestBus::TestBus(const std::string& variable) : socket_((testFolder() / variable).string()) {
  setenv(variable.c_str(), ("unix:path=" + socket_).c_str(), 1);
  start();
}

void TestBus::start() {
  std::filesystem::remove(socket_);
  daemon_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                               "--address=unix:path=" + socket_, "--print-address"});
  EXPECT_TRUE(waitUntil([this] { return daemon_->output().ends_with('\n'); })) << daemon_->errors();
}
