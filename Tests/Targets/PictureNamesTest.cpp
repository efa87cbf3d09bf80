// Fails when the code asks for a picture that the bundle lacks, or the bundle holds one that nobody
// asks for.

#include <gtest/gtest.h>

#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/Foundation/Files/NSBundle.h"
#include "Tests/Targets/SourceTexts.h"

namespace {

namespace fs = std::filesystem;

std::set<std::string> namesInTheBundle() {
  std::set<std::string> names;
  for (const auto& entry :
       fs::directory_iterator(fs::path(VELMORA_SOURCE_DIR) / "Resources" / "Velmora.bundle")) {
    const auto extension = entry.path().extension();
    if (extension == ".svg" || extension == ".png") names.insert(entry.path().stem().string());
  }
  return names;
}

/// Texts of the code that begin like the names of pictures; the day numbers are made from a stem.
std::set<std::string> namesInTheCode() {
  const std::regex named(R"re("((?:menubar|stats|map|icon)-[a-z0-9-]+)(?:\.tiff)?")re");
  std::set<std::string> names;
  for (const char* folder : {"Targets", "Shared"}) {
    for (const auto& [path, source] : sourcesIn(folder))
      collect(source, named, names);
  }
  if (names.erase("menubar-date-") != 0) {
    for (int day = 1; day <= 31; ++day) {
      names.insert("menubar-date-" + std::to_string(day));
      names.insert("menubar-date-" + std::to_string(day) + "-white");
    }
  }
  return names;
}

TEST(PictureNames, TheCodeAndTheBundleAgree) {
  const auto asked = namesInTheCode();
  const auto present = namesInTheBundle();
  EXPECT_GT(asked.size(), 65) << "the sources were not found";
  for (const std::string& name : asked)
    EXPECT_TRUE(present.contains(name)) << "the bundle lacks " << name;
  for (const std::string& name : present)
    EXPECT_TRUE(asked.contains(name)) << "nobody asks for " << name;
}

TEST(PictureNames, EveryPictureOfTheBundleCanBeDrawn) {
  const NSBundle bundle = NSBundle::bundleWithPath(VELMORA_SOURCE_DIR "/Resources/Velmora.bundle");
  for (const std::string& name : namesInTheBundle()) {
    const auto image = NSImage::imageWithContentsOfFile(bundle.pathForImageResource(name));
    ASSERT_NE(image, nullptr) << name;
    EXPECT_EQ(image->size().width, static_cast<int>(image->size().width)) << name;
    EXPECT_EQ(image->size().height, static_cast<int>(image->size().height)) << name;
  }
}

}  // namespace
