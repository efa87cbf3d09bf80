#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// A folder of code or resources under one name.
class NSBundle {
 public:
  NSBundle() = default;

  /// The bundle at a path as the code gives it (see `resolvedPath`). It may be missing: look-ups
  /// then give nothing.
  static NSBundle bundleWithPath(std::string_view path);

  /// The bundle that holds the code at an address, or else the installed one of that name: a
  /// program can be made of a bundle's code without being loaded from it.
  static NSBundle bundleForCode(const void* address, std::string_view name);

  /// Where a bundle of that name is installed.
  static std::filesystem::path installedPath(std::string_view name);

  const std::filesystem::path& bundlePath() const { return path_; }

  /// The file of a picture in this bundle: `name` without its extension, as SVG or else as PNG.
  /// An empty path if there is none, or if the name would lead out of the bundle.
  std::filesystem::path pathForImageResource(std::string_view name) const;

  /// The languages that the bundle has resources in, by the names of its `.lproj` folders, sorted.
  std::vector<std::string> localizations() const;

  /// A file in one language's folder; an empty path if it is not there.
  std::filesystem::path pathForResource(std::string_view fileName,
                                        std::string_view localization) const;

  /// The localisations that suit the user's languages, best first: the wanted language with its
  /// region, else in another region of it; English last, or whatever there is.
  static std::vector<std::string> preferredLocalizationsFromArray(
      const std::vector<std::string>& localizations, const std::vector<std::string>& preferences);

 private:
  explicit NSBundle(std::filesystem::path path) : path_(std::move(path)) {}

  std::filesystem::path path_;
};

/// `name` without the extension of a picture file (".tiff", ".png", ".svg"), if it has one.
std::string_view nameWithoutImageExtension(std::string_view name);
