#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Turns a path as the code gives it into the one on this system, by a table of roots:
///
/// | given root                                | here                                         |
/// |-------------------------------------------|----------------------------------------------|
/// | "/Library/Application Support/Velmora 5/" | the installed `share/velmora5/`, or          |
/// |                                           | `$VELMORA_SUPPORT_DIR`                       |
/// | "~/Library/Preferences/"                  | `$XDG_CONFIG_HOME/velmora5/`                 |
/// | "~/Library/Logs/"                         | `$XDG_STATE_HOME/velmora5/Logs/`             |
/// | "~/Library/Application Support/"          | `$XDG_DATA_HOME/`                            |
/// | "~/"                                      | the home folder                              |
///
/// The environment's variables have the defaults of the XDG base directory specification. Every
/// other path comes back as it is.
std::filesystem::path resolvedPath(std::string_view path);

/// The folder of this library's installation prefix, from where the library itself lies.
std::filesystem::path installationPrefix();
