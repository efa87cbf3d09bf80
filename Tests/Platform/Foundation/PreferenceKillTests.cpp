// Two writers on one file, killed at any moment: the file is whole after each kill.

#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <random>
#include <string>

#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Platform/Foundation/Settings/PreferenceFile.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Support/ChildProcess.h"

namespace {

std::unique_ptr<ChildProcess> startWriter(const std::filesystem::path& file, const char* writer) {
  return std::make_unique<ChildProcess>(
      std::vector<std::string>{PLATFORM_TEST_HELPER, "write", file.string(), writer});
}

/// A writer's value is a list of one text throughout, "name-number".
void expectWholeValue(const PropertyList& value, const std::string& writer) {
  ASSERT_NE(value.array(), nullptr);
  ASSERT_EQ(value.array()->size(), 3000U);
  const PropertyList& first = value.array()->front();
  ASSERT_NE(first.string(), nullptr);
  EXPECT_TRUE(first.string()->starts_with(writer + "-"));
  EXPECT_TRUE(std::all_of(value.array()->begin(), value.array()->end(),
                          [&](const PropertyList& item) { return item == first; }));
}

/// Waits without sleeping, so that a kill can fall anywhere into a write of some milliseconds.
void spin(std::chrono::microseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < end) {
  }
}

TEST(KilledWriters, LeaveAWholeFile) {
  constexpr int Rounds = 200;
  constexpr unsigned LongestWrite = 6000;
  const auto folder = freshFolder();
  const auto file = folder / "killed.plist";
  std::mt19937 random(20240229);
  for (int round = 0; round < Rounds; ++round) {
    const auto first = startWriter(file, "first");
    const auto second = startWriter(file, "second");
    ASSERT_TRUE(waitUntil([&] {
      return first->output().starts_with("written\n") && second->output().starts_with("written\n");
    }));
    spin(std::chrono::microseconds(random() % LongestWrite));
    first->sendSignal(SIGKILL);
    first->waitForExit();

    // One writer is dead, perhaps with the lock in its hands; the other goes on.
    const auto list = propertyListWithContentsOfFile(file);
    ASSERT_TRUE(list.has_value()) << round;
    ASSERT_NE(list->dictionary(), nullptr) << round;
    for (const char* writer : {"first", "second"}) {
      expectWholeValue(list->dictionary()->at(writer), writer);
    }
    spin(std::chrono::microseconds(random() % LongestWrite));
    second->sendSignal(SIGKILL);
    second->waitForExit();

    PreferenceFile preferences(file);
    ASSERT_TRUE(preferences.apply({{"round", round}})) << round;
    EXPECT_EQ(preferences.contents().at("round"), PropertyList(round));
    for (const char* writer : {"first", "second"})
      expectWholeValue(preferences.contents().at(writer), writer);
  }
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    EXPECT_EQ(entry.path().string().find(".corrupt-"), std::string::npos) << entry.path();
  }
}

}  // namespace
