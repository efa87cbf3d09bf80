#include "Tests/Desktop/DesktopFixture.h"

#include <gtest/gtest.h>

DesktopFixture::DesktopFixture() { start(); }

void DesktopFixture::start() {
  desktop_ = std::make_unique<ChildProcess>(std::vector<std::string>{FAKE_DESKTOP});
  EXPECT_TRUE(waitUntil([&] { return desktop_->output() == "ready\n"; })) << desktop_->errors();
}

void DesktopFixture::restartSession(unsigned colorScheme) {
  sessionBus_.end();
  stop();
  sessionBus_.start();
  start();
  set("color-scheme", colorScheme);
}

void DesktopFixture::set(const std::string& key, unsigned value) {
  call({"Set", "string:" + key, "uint32:" + std::to_string(value)});
}

void DesktopFixture::call(std::vector<std::string> arguments) {
  arguments.front().insert(0, "com.wenmark.velmora5.FakeDesktop.");
  arguments.insert(arguments.begin(),
                   {"dbus-send", "--session", "--print-reply",
                    "--dest=org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"});
  const FinishedProcess sent = runToEnd(arguments);
  EXPECT_EQ(sent.status, 0) << sent.errors;
}
