// Gives every test program an environment of its own, before anything can read the machine's: no
// test sees the user's zone, locale, home, settings, desktop or session bus.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include "Tests/Support/TestEnvironment.h"

namespace {

/// The libraries are not built for the thread sanitizer, which takes their own locks for none.
constexpr const char* ThreadSanitizerOptions = "ignore_noninstrumented_modules=1";

std::filesystem::path temporaryFolder;

}  // namespace

#if defined(__SANITIZE_THREAD__)
// The sanitizer asks for this by its own name before main.
extern "C" const char* __tsan_default_options() { return ThreadSanitizerOptions; }
#endif

const std::filesystem::path& testFolder() { return temporaryFolder; }

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  std::string pattern = (std::filesystem::temp_directory_path() / "velmora-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) return 1;
  temporaryFolder = pattern;
  for (const auto& [variable, folder] : {std::pair{"HOME", "home"},
                                         {"XDG_CONFIG_HOME", "config"},
                                         {"XDG_DATA_HOME", "data"},
                                         {"XDG_STATE_HOME", "state"},
                                         {"XDG_CACHE_HOME", "cache"},
                                         {"XDG_RUNTIME_DIR", "runtime"}}) {
    const auto path = temporaryFolder / folder;
    std::filesystem::create_directory(path);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    setenv(variable, path.c_str(), 1);
  }
  for (const char* variable :
       {"DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "WAYLAND_DISPLAY", "LC_ALL", "LC_TIME",
        "LC_MESSAGES", "LANGUAGE", "TZDIR", "VELMORA_SUPPORT_DIR"}) {
    unsetenv(variable);
  }
  setenv("TSAN_OPTIONS", ThreadSanitizerOptions, 1);  // For the programs that a test starts.
  setenv("LANG", "en_US.UTF-8", 1);
  setenv("TZ", "UTC", 1);
  const int status = RUN_ALL_TESTS();
  std::error_code error;
  std::filesystem::remove_all(temporaryFolder, error);
  return status;
}
