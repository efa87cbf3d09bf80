#include "Shared/Extensions/WENImage.h"
#include "Platform/Foundation/SharedInstance.h"

#include <map>
#include <string>

namespace {

std::shared_ptr<WENImage_Time> keptImage(const NSImage& image, ImagePartsLayout layout,
                                         const ImageInsets& insets) {
  static SharedInstance<std::map<std::string, std::shared_ptr<WENImage_Time>, std::less<>>> shared;
  auto& images = shared.get();
  if (image.name().empty()) return nullptr;
  const auto found = images.find(image.name());
  if (found != images.end()) return found->second;
  auto made = std::make_shared<WENImage_Time>(image, layout, insets);
  images.emplace(image.name(), made);
  return made;
}

std::shared_ptr<NSImage> namedImageAtPath(const std::filesystem::path& path) {
  auto image = NSImage::imageWithContentsOfFile(path);
  if (image) image->setName(path.stem().string());
  return image;
}

ImageInsets sideCaps(int64_t width) {
  const auto points = static_cast<double>(width);
  return {0, points, 0, points};
}

}  // namespace

WENImage_Time::WENImage_Time(const NSImage& image, ImagePartsLayout layout,
                             const ImageInsets& insets)
    : NSImage(image.size()),
      parts_(imageParts(image, layout, insets)),
      vertical_(layout == ImagePartsLayout::Column) {}

std::shared_ptr<WENImage_Time> WENImage_Time::threePartImageFromImageLeftCapWidth(
    const NSImage& image, int64_t leftCapWidth) {
  return keptImage(image, ImagePartsLayout::Row, sideCaps(leftCapWidth));
}

std::shared_ptr<WENImage_Time> WENImage_Time::threePartImageFromPathLeftCapWidth(
    const std::filesystem::path& path, int64_t leftCapWidth) {
  const auto image = namedImageAtPath(path);
  return image ? threePartImageFromImageLeftCapWidth(*image, leftCapWidth) : nullptr;
}

std::shared_ptr<WENImage_Time> WENImage_Time::threePartImageFromImageTopCapHeight(
    const NSImage& image, int64_t topCapHeight) {
  return threePartImageFromImageTopCapHeight(image, topCapHeight, topCapHeight);
}

std::shared_ptr<WENImage_Time> WENImage_Time::threePartImageFromImageTopCapHeight(
    const NSImage& image, int64_t topCapHeight, int64_t bottomCapHeight) {
  return keptImage(image, ImagePartsLayout::Column,
                   {static_cast<double>(topCapHeight), 0, static_cast<double>(bottomCapHeight), 0});
}

std::shared_ptr<WENImage_Time> WENImage_Time::ninePartImage(const NSImage& image,
                                                            int64_t leftCapWidth,
                                                            int64_t topCapHeight) {
  ImageInsets insets = sideCaps(leftCapWidth);
  insets.top = insets.bottom = static_cast<double>(topCapHeight);
  return keptImage(image, ImagePartsLayout::Grid, insets);
}

std::shared_ptr<WENImage_Time> WENImage_Time::ninePartImageFromPath(
    const std::filesystem::path& path, int64_t leftCapWidth, int64_t topCapHeight) {
  const auto image = namedImageAtPath(path);
  return image ? ninePartImage(*image, leftCapWidth, topCapHeight) : nullptr;
}

void WENImage_Time::drawInRect(NSRect rect, double alpha) const {
  drawImageParts(parts_, rect, vertical_, alpha, false);
}
