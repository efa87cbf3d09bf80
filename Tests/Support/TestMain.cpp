// Gives every test program an environment of its own, before anything can read the machine's: no
// test sees the user's zone, locale, home, settings, desktop or session bus.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/SharedInstance.h"
#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Time/SystemClock.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Tests/Support/TestEnvironment.h"

namespace {

/// The libraries are not built for the thread sanitizer, which takes their own locks for none.
constexpr const char* ThreadSanitizerOptions = "ignore_noninstrumented_modules=1";

std::filesystem::path temporaryFolder;

/// Folders of the test's own, and the variables that name them.
constexpr std::pair<const char*, const char*> Folders[] = {{"HOME", "home"},
                                                           {"XDG_CONFIG_HOME", "config"},
                                                           {"XDG_DATA_HOME", "data"},
                                                           {"XDG_STATE_HOME", "state"},
                                                           {"XDG_CACHE_HOME", "cache"},
                                                           {"XDG_RUNTIME_DIR", "runtime"}};

void makeFolders() {
  for (const auto& [variable, folder] : Folders) {
    const auto path = temporaryFolder / folder;
    std::filesystem::create_directory(path);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  }
}

/// Leaves nothing of a test to the next one in the same process.
class FreshStart : public testing::EmptyTestEventListener {
 public:
  FreshStart() {
    for (char** variable = environ; *variable != nullptr; ++variable)
      environment_.emplace_back(*variable);
  }

  void OnTestEnd(const testing::TestInfo&) override {
    // The test's own clock and loop have gone with it.
    NSRunLoop::setMainRunLoop(nullptr);
    SystemClock::install(nullptr);
    resetSharedInstances();
    restoreEnvironment();
    NSTimeZone::setSystemTimeZone(std::nullopt);
    NSTimeZone::resetSystemTimeZone();
    NSLocale::setCurrentLocale("");
    for (const auto& entry : std::filesystem::directory_iterator(temporaryFolder)) {
      std::error_code error;
      std::filesystem::remove_all(entry, error);
    }
    makeFolders();
  }

 private:
  void restoreEnvironment() {
    clearenv();
    for (std::string& variable : environment_)
      putenv(variable.data());
  }

  std::vector<std::string> environment_;  ///< It is that of the process, in part.
};

}  // namespace

#if defined(__SANITIZE_THREAD__)
// The sanitizer asks for this by its own name before main.
extern "C" const char* __tsan_default_options() { return ThreadSanitizerOptions; }
#endif

const std::filesystem::path& testFolder() { return temporaryFolder; }

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  std::string pattern = (std::filesystem::temp_directory_path() / "velmora-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) return 1;
  temporaryFolder = pattern;
  // Also where a test ends the process itself, but not where that is a copy of this one.
  static const pid_t owner = getpid();
  std::atexit([] {
    std::error_code error;
    if (getpid() == owner) std::filesystem::remove_all(temporaryFolder, error);
  });
  makeFolders();
  for (const auto& [variable, folder] : Folders)
    setenv(variable, (temporaryFolder / folder).c_str(), 1);
  for (const char* variable :
       {"DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "WAYLAND_DISPLAY", "LC_ALL", "LC_TIME",
        "LC_MESSAGES", "LANGUAGE", "TZDIR", "VELMORA_SUPPORT_DIR"}) {
    unsetenv(variable);
  }
  setenv("TSAN_OPTIONS", ThreadSanitizerOptions, 1);  // For the programs that a test starts.
  setenv("LANG", "en_US.UTF-8", 1);
  setenv("TZ", "UTC", 1);
  testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<FreshStart>().release());
  return RUN_ALL_TESTS();
}
