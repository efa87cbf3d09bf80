#include "Platform/Foundation/Files/NSPathUtilities.h"

#include <dlfcn.h>
#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace fs = std::filesystem;

namespace {

fs::path homeDirectory() {
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') return home;
  const passwd* user = getpwuid(getuid());
  return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
}

/// A variable that is unset, empty or relative counts as unset, as the base directory
/// specification has it.
fs::path baseDirectory(const char* variable, const char* fallback) {
  if (const char* value = std::getenv(variable); value != nullptr && *value == '/') return value;
  return homeDirectory() / fallback;
}

fs::path supportDirectory() {
  if (const char* value = std::getenv("VELMORA_SUPPORT_DIR"); value != nullptr && *value != '\0') {
    return value;
  }
  return installationPrefix() / "share" / "velmora5";
}

struct Root {
  std::string_view given;
  fs::path (*directory)();
};

const std::array<Root, 5> Roots = {{
    {"/Library/Application Support/Velmora 5/", supportDirectory},
    {"~/Library/Preferences/",
     [] { return baseDirectory("XDG_CONFIG_HOME", ".config") / "velmora5"; }},
    {"~/Library/Logs/",
     [] { return baseDirectory("XDG_STATE_HOME", ".local/state") / "velmora5" / "Logs"; }},
    {"~/Library/Application Support/",
     [] { return baseDirectory("XDG_DATA_HOME", ".local/share"); }},
    {"~/", homeDirectory},
}};

}  // namespace

fs::path installationPrefix() {
  Dl_info library{};
  if (dladdr(reinterpret_cast<const void*>(&installationPrefix), &library) == 0) return "/usr";
  std::error_code error;
  fs::path path = fs::canonical(library.dli_fname, error);
  // The library lies in lib/ or lib/<architecture>/.
  for (path = path.parent_path(); path.has_relative_path(); path = path.parent_path()) {
    if (path.filename().string().starts_with("lib")) return path.parent_path();
  }
  return "/usr";
}

fs::path resolvedPath(std::string_view path) {
  for (const Root& root : Roots) {
    if (path.starts_with(root.given)) return root.directory() / path.substr(root.given.size());
  }
  return path;
}
