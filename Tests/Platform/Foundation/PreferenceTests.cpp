#include "Platform/Foundation/Settings/CFPreferences.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <thread>

#include "Platform/Foundation/Files/FileDescriptor.h"
#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Platform/Support/VirtualTime.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* Domain = "org.example.test";

using Dictionary = PropertyList::Dictionary;

class Preferences : public testing::Test {
 protected:
  Preferences() { resetPreferences(); }

  /// What the file holds behind a write.
  Dictionary written() const {
    EXPECT_TRUE(CFPreferencesAppSynchronize(Domain));
    return *propertyListWithContentsOfFile(file).value().dictionary();
  }

  /// What another process does: a new file in the old one's place.
  void writeFromOutside(const Dictionary& values) const {
    writeFile(folder / "outside", dataWithPropertyList(values));
    fs::create_directories(file.parent_path());
    fs::rename(folder / "outside", file);
  }

  /// A file that nobody has been writing for an hour.
  void writeLongAgo(std::string_view bytes) const {
    writeFile(file, bytes);
    fs::last_write_time(file, fs::last_write_time(file) - std::chrono::hours(1));
  }

  std::vector<fs::path> setAside() const {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(file.parent_path())) {
      if (entry.path().string().starts_with(file.string() + ".corrupt-"))
        files.push_back(entry.path());
    }
    return files;
  }

  static PropertyList value(std::string_view key) { return CFPreferencesCopyAppValue(key, Domain); }
  static void set(std::string_view key, const PropertyList& value) {
    CFPreferencesSetAppValue(key, value, Domain);
  }

  const fs::path folder = freshFolder();
  const EnvironmentVariable config{"XDG_CONFIG_HOME", folder.string()};
  const fs::path file = folder / "velmora5" / (std::string(Domain) + ".plist");
};

TEST_F(Preferences, AreWrittenWhenSynchronised) {
  EXPECT_TRUE(value("a").isNull());
  set("a", 1);
  EXPECT_EQ(value("a"), PropertyList(1));
  EXPECT_FALSE(fs::exists(file));
  EXPECT_EQ(written(), (Dictionary{{"a", 1}}));
  EXPECT_EQ(fs::status(file).permissions() & fs::perms::all,
            fs::perms::owner_read | fs::perms::owner_write);
  set("b", "x");
  set("a", {});
  EXPECT_TRUE(value("a").isNull());
  EXPECT_EQ(CFPreferencesCopyAllValues(Domain), (Dictionary{{"b", "x"}}));
  EXPECT_EQ(written(), (Dictionary{{"b", "x"}}));
  resetPreferences();
  EXPECT_EQ(value("b"), PropertyList("x"));
}

TEST_F(Preferences, AnotherProcesssWritesAreSeenAtOnceAndKept) {
  for (int round = 0; round < 20; ++round) {
    writeFromOutside({{"a", round}});
    ASSERT_EQ(value("a"), PropertyList(round));
  }
  set("a", 2);
  writeFromOutside({{"a", 1}, {"b", 5}, {"c", PropertyList::Data{1, 2, 3}}});
  EXPECT_EQ(written(), (Dictionary{{"a", 2}, {"b", 5}, {"c", PropertyList::Data{1, 2, 3}}}));
  fs::remove(file);
  EXPECT_TRUE(value("a").isNull());
}

TEST_F(Preferences, OverridesAnswerAndAreNeverWritten) {
  writeFromOutside({{"a", 1}, {"b", 1}});
  setPreferenceOverride("a", "over", Domain);
  setPreferenceOverride("b", {}, Domain);
  set("c", 3);
  set("a", 2);
  EXPECT_EQ(value("a"), PropertyList("over"));
  EXPECT_TRUE(value("b").isNull());
  EXPECT_EQ(CFPreferencesCopyAllValues(Domain), (Dictionary{{"a", "over"}, {"c", 3}}));
  EXPECT_EQ(written(), (Dictionary{{"a", 2}, {"b", 1}, {"c", 3}}));
}

TEST_F(Preferences, IgnoredFilesStayUnseenAndWhole) {
  writeFromOutside({{"a", 1}});
  ignoreStoredPreferences(Domain);
  EXPECT_TRUE(value("a").isNull());
  set("b", 2);
  EXPECT_EQ(CFPreferencesCopyAllValues(Domain), (Dictionary{{"b", 2}}));
  EXPECT_EQ(written(), (Dictionary{{"a", 1}, {"b", 2}}));
}

TEST_F(Preferences, ADamagedFileIsSetAsideWithItsBytes) {
  const VirtualTime time(1'700'000'000);
  writeFromOutside({{"a", 1}});
  const std::string whole = readFile(file);
  const std::vector<std::string> damages = {whole.substr(0, whole.size() / 2), "", "no list",
                                            dataWithPropertyList(PropertyList::Array{1})};
  for (size_t round = 0; round < damages.size(); ++round) {
    writeLongAgo(damages[round]);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(value("a").isNull());
    EXPECT_TRUE(value("a").isNull());
    const std::string log = testing::internal::GetCapturedStderr();
    // One line for two look-ups; the second file of a second gets a name of its own.
    const std::string name =
        file.filename().string() + ".corrupt-" + std::to_string(1'700'000'000 + round);
    EXPECT_NE(log.find(name), std::string::npos) << log;
    EXPECT_EQ(log.find('\n'), log.size() - 1) << log;
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(setAside().size(), round + 1);
    EXPECT_EQ(readFile(file.parent_path() / name), damages[round]);
  }
  // A write that finds the damage first does the same.
  writeLongAgo("damaged");
  set("b", 2);
  EXPECT_EQ(written(), (Dictionary{{"b", 2}}));
  EXPECT_EQ(setAside().size(), damages.size() + 1);
}

// An editor empties the file and fills it again, without the lock: here it waits for the look at
// the damaged file, which makes the lock's.
TEST_F(Preferences, AFileInTheMiddleOfBeingWrittenIsAwaited) {
  const std::string whole = dataWithPropertyList(Dictionary{{"a", 1}});
  writeFile(file, whole.substr(0, whole.size() / 2));
  std::thread editor([&] {
    while (!fs::exists(file.string() + ".lock"))
      std::this_thread::yield();
    writeFile(file, whole);
  });
  EXPECT_EQ(value("a"), PropertyList(1));
  editor.join();
  EXPECT_TRUE(setAside().empty());
}

TEST_F(Preferences, OneBadNumberIsDroppedAloneAndKeptInACopy) {
  std::string bytes = dataWithPropertyList(Dictionary{{"a", 1}, {"b", 22}});
  bytes.replace(bytes.find("22"), 2, "99999999999999999999");
  writeFile(file, bytes);
  testing::internal::CaptureStderr();
  EXPECT_EQ(CFPreferencesCopyAllValues(Domain), (Dictionary{{"a", 1}}));
  set("c", 3);
  EXPECT_EQ(written(), (Dictionary{{"a", 1}, {"c", 3}}));
  EXPECT_NE(testing::internal::GetCapturedStderr().find("hold for them: b\n"), std::string::npos);
  ASSERT_EQ(setAside().size(), 1U);
  EXPECT_EQ(readFile(setAside().front()), bytes);
}

// What is there and cannot be read: nothing waits for it, and nothing may take its place.
TEST_F(Preferences, AnUnreadableFileIsReportedAndKept) {
  const std::function<void()> makers[] = {[&] { fs::create_directory(file); },
                                          [&] { mkfifo(file.c_str(), 0600); },
                                          [&] { fs::create_symlink("/dev/zero", file); }};
  fs::create_directories(file.parent_path());
  for (const auto& make : makers) {
    make();
    const fs::file_type type = fs::symlink_status(file).type();
    resetPreferences();
    testing::internal::CaptureStderr();
    EXPECT_TRUE(value("a").isNull());
    EXPECT_TRUE(value("a").isNull());
    set("b", 1);
    EXPECT_FALSE(CFPreferencesAppSynchronize(Domain));
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("cannot be read"), std::string::npos) << log;
    EXPECT_EQ(log.find('\n'), log.size() - 1) << log;
    EXPECT_EQ(fs::symlink_status(file).type(), type);
    EXPECT_TRUE(setAside().empty());
    // Readable again, it counts again.
    fs::remove(file);
    writeFromOutside({{"a", 7}});
    EXPECT_EQ(value("a"), PropertyList(7));
    fs::remove(file);
  }
}

TEST_F(Preferences, ALinkStaysALink) {
  fs::create_directories(file.parent_path());
  fs::create_symlink("../elsewhere/settings", file);
  for (int round = 1; round <= 2; ++round) {
    set("a", round);
    EXPECT_EQ(written(), (Dictionary{{"a", round}}));
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_FALSE(fs::is_symlink(folder / "elsewhere" / "settings"));
  }
}

// No folder, then a lock that its holder keeps: what could not be written goes with the next write.
TEST_F(Preferences, AFailedWriteKeepsItsChanges) {
  writeFile(folder / "velmora5", "a file where the folder should be");
  set("a", 1);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(CFPreferencesAppSynchronize(Domain));
  fs::remove(folder / "velmora5");
  fs::create_directory(folder / "velmora5");
  {
    const FileDescriptor holder(open((file.string() + ".lock").c_str(), O_RDWR | O_CREAT, 0600));
    ASSERT_EQ(flock(holder.get(), LOCK_EX), 0);
    set("b", 2);
    EXPECT_FALSE(CFPreferencesAppSynchronize(Domain));
  }
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_NE(log.find("cannot be locked: Not a directory\n"), std::string::npos) << log;
  EXPECT_NE(log.find("does not give its lock back\n"), std::string::npos) << log;
  EXPECT_EQ(value("a"), PropertyList(1));
  EXPECT_EQ(written(), (Dictionary{{"a", 1}, {"b", 2}}));
}

// One such value, written, would make the whole file unreadable.
TEST_F(Preferences, AValueThatWouldNotReadBackIsRefused) {
  PropertyList deep = 1;
  for (int level = 0; level < 63; ++level)
    deep = PropertyList::Array{deep};
  set("deep", deep);
  EXPECT_EQ(written(), (Dictionary{{"deep", deep}}));
  for (const PropertyList& bad : {PropertyList(PropertyList::Array{deep}), PropertyList("a\x01"),
                                  PropertyList(std::nan("")), PropertyList("\xFF")}) {
    EXPECT_THROW(set("bad", bad), std::invalid_argument);
  }
}

}  // namespace
