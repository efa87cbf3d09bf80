#pragma once

#include <filesystem>
#include <string>

/// What the headless host has drawn.
struct HeadlessPicture {
  std::string text;            ///< The words of the item, in drawing order.
  std::filesystem::path file;  ///< The PNG.
};

struct HeadlessOptions {
  std::filesystem::path bundle;
  std::filesystem::path output;  ///< A folder, made if it is missing.
  double scale = 1;              ///< Pixels a point.
  bool isDark = false;
};

/// Loads the bundle, gives it a slot, draws the bar with its item once into a PNG file and unloads
/// it. Throws `std::exception` with the reason on failure.
HeadlessPicture drawHeadless(const HeadlessOptions& options);
