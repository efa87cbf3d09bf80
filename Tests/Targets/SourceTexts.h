#pragma once

#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <string>

#include "Tests/Platform/Support/Files.h"

/// The C++ files below a folder of the repository, by path.
inline std::map<std::string, std::string> sourcesIn(const char* folder) {
  std::map<std::string, std::string> sources;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(
           std::filesystem::path(VELMORA_SOURCE_DIR) / folder)) {
    const auto extension = entry.path().extension();
    if (extension == ".cpp" || extension == ".h")
      sources.emplace(entry.path().string(), readFile(entry.path()));
  }
  return sources;
}

/// Adds what a pattern's first group matches in a source.
inline void collect(const std::string& source, const std::regex& pattern,
                    std::set<std::string>& found) {
  for (std::sregex_iterator match(source.begin(), source.end(), pattern), end; match != end;
       ++match)
    found.insert((*match)[1]);
}
