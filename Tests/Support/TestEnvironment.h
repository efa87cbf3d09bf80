#pragma once

#include <filesystem>

/// A folder of this test program's own, removed at its end. Its subfolders "config", "data",
/// "state", "home" and "runtime" are what the XDG variables and `HOME` name.
const std::filesystem::path& testFolder();
