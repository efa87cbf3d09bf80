#include "Platform/Foundation/Files/NSBundle.h"

#include <dlfcn.h>

#include <algorithm>

#include "Platform/Foundation/Files/NSPathUtilities.h"

namespace fs = std::filesystem;

namespace {

constexpr std::string_view LanguageFolder = ".lproj";

std::string_view languageOf(std::string_view localization) {
  return localization.substr(0, localization.find_first_of("_-"));
}

bool isPlainName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos;
}

}  // namespace

NSBundle NSBundle::bundleWithPath(std::string_view path) { return NSBundle(resolvedPath(path)); }

NSBundle NSBundle::bundleForCode(const void* address, std::string_view name) {
  Dl_info object{};
  if (dladdr(address, &object) != 0 && object.dli_fname != nullptr) {
    const fs::path folder = fs::path(object.dli_fname).parent_path();
    if (folder.extension() == ".bundle") return NSBundle(folder);
  }
  return NSBundle(installedPath(name));
}

fs::path NSBundle::installedPath(std::string_view name) {
  return installationPrefix() / "lib" / "velmora5" / (std::string(name) + ".bundle");
}

std::string_view nameWithoutImageExtension(std::string_view name) {
  for (const std::string_view extension : {".tiff", ".png", ".svg"}) {
    if (name.ends_with(extension)) return name.substr(0, name.size() - extension.size());
  }
  return name;
}

fs::path NSBundle::pathForImageResource(std::string_view name) const {
  const std::string_view stem = nameWithoutImageExtension(name);
  if (path_.empty() || !isPlainName(stem)) return {};
  std::error_code error;
  for (const std::string_view extension : {".svg", ".png"}) {
    fs::path file = path_ / stem;
    file += extension;
    if (fs::is_regular_file(file, error)) return file;
  }
  return {};
}

std::vector<std::string> NSBundle::localizations() const {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(path_, error)) {
    if (entry.path().extension() == LanguageFolder) names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

fs::path NSBundle::pathForResource(std::string_view fileName, std::string_view localization) const {
  if (path_.empty() || !isPlainName(fileName) || !isPlainName(localization)) return {};
  const fs::path file =
      path_ / (std::string(localization) + std::string(LanguageFolder)) / fileName;
  std::error_code error;
  return fs::is_regular_file(file, error) ? file : fs::path();
}

std::vector<std::string> NSBundle::preferredLocalizationsFromArray(
    const std::vector<std::string>& localizations, const std::vector<std::string>& preferences) {
  std::vector<std::string> ordered;
  const auto add = [&](const auto& suits) {
    for (const std::string& candidate : localizations) {
      const bool isNew = std::find(ordered.begin(), ordered.end(), candidate) == ordered.end();
      if (isNew && suits(candidate)) ordered.push_back(candidate);
    }
  };
  for (const std::string& wanted : preferences) {
    add([&](const std::string& candidate) { return candidate == wanted; });
    add([&](const std::string& candidate) { return candidate == languageOf(wanted); });
    add([&](const std::string& candidate) { return languageOf(candidate) == languageOf(wanted); });
  }
  if (ordered.empty()) add([](const std::string& candidate) { return candidate == "en"; });
  if (ordered.empty() && !localizations.empty()) ordered.push_back(localizations.front());
  return ordered;
}
