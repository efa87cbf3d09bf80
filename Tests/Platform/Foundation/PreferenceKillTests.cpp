// Two writers on one file, killed at any moment: the file is whole after each kill.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <string>
#include <utility>

#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Platform/Foundation/Settings/PreferenceFile.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Support/ChildProcess.h"

namespace {

/// A process that sets the key of its name over and over until it is killed: to a list, long enough
/// to take several writes to the disk, of one text throughout, "name-number".
class Writer {
 public:
  Writer(const std::filesystem::path& file, const std::string& name) : process_(fork()) {
    if (process_ != 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    PreferenceFile preferences(file);
    for (int64_t number = 0;; ++number) {
      const PropertyList text = name + "-" + std::to_string(number);
      preferences.apply({{name, PropertyList::Array(3000, text)}});
    }
  }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer() { end(); }

  void end() {
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(std::exchange(process_, 0), nullptr, 0);
  }

 private:
  pid_t process_;
};

bool hasWholeValues(const PropertyList::Dictionary& values) {
  for (const std::string name : {"first", "second"}) {
    const auto found = values.find(name);
    if (found == values.end() || found->second.array() == nullptr) return false;
    const PropertyList::Array& texts = *found->second.array();
    if (texts.size() != 3000 || !texts[0].string()->starts_with(name + "-")) return false;
    if (std::ranges::any_of(texts, [&](const auto& text) { return text != texts[0]; }))
      return false;
  }
  return true;
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
    Writer first(file, "first");
    Writer second(file, "second");
    const auto valuesAreWhole = [&file] {
      const auto list = propertyListWithContentsOfFile(file);
      return list && list->dictionary() != nullptr && hasWholeValues(*list->dictionary());
    };
    ASSERT_TRUE(waitUntil(valuesAreWhole));
    spin(std::chrono::microseconds(random() % LongestWrite));
    first.end();
    // One writer is dead, perhaps with the lock in its hands; the other goes on.
    ASSERT_TRUE(valuesAreWhole()) << round;
    spin(std::chrono::microseconds(random() % LongestWrite));
    second.end();

    PreferenceFile preferences(file);
    ASSERT_TRUE(preferences.apply({{"round", round}})) << round;
    EXPECT_EQ(preferences.contents().at("round"), PropertyList(round));
    ASSERT_TRUE(hasWholeValues(preferences.contents())) << round;
    std::filesystem::remove(file);
  }
  // Neither a damaged file that was set aside nor what a killed writer had begun.
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    EXPECT_EQ(entry.path(), file.string() + ".lock");
}

}  // namespace
