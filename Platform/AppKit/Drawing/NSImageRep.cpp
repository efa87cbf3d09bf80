#include "Platform/AppKit/Drawing/NSImageRep_p.h"

#include <dlfcn.h>
#include <librsvg/rsvg.h>

#include <array>
#include <fstream>
#include <string>
#include <type_traits>

#include "Platform/Foundation/Process/NSLog.h"

namespace fs = std::filesystem;

namespace {

/// Pictures are for a panel: beyond these a file is damaged or hostile.
constexpr double MaximumPoints = 4096;
constexpr uintmax_t MaximumFileSize = 4 << 20;

void paintSurface(cairo_t* cairo, cairo_surface_t* surface, double fraction) {
  cairo_set_source_surface(cairo, surface, 0, 0);
  cairo_paint_with_alpha(cairo, fraction);
}

/// librsvg, loaded with the first picture: a clock of text alone does without its megabytes.
struct RsvgLibrary {
  decltype(&rsvg_handle_new_from_file) newFromFile = nullptr;
  decltype(&rsvg_handle_get_intrinsic_size_in_pixels) intrinsicSize = nullptr;
  decltype(&rsvg_handle_render_document) render = nullptr;

  /// Null, with the reason logged once, if it is not there.
  static const RsvgLibrary* sharedLibrary() {
    static const RsvgLibrary library;
    return library.render != nullptr ? &library : nullptr;
  }

 private:
  RsvgLibrary() {
    void* object = dlopen("librsvg-2.so.2", RTLD_LAZY | RTLD_LOCAL);
    if (object == nullptr) {
      NSLog(std::string("error: no pictures: ") + dlerror());
      return;
    }
    const auto load = [object](auto& function, const char* name) {
      function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(object, name));
    };
    load(newFromFile, "rsvg_handle_new_from_file");
    load(intrinsicSize, "rsvg_handle_get_intrinsic_size_in_pixels");
    load(render, "rsvg_handle_render_document");
  }
};

using Svg = LibraryHandle<RsvgHandle, g_object_unref>;

class SvgImageRep : public NSImageRep {
 public:
  SvgImageRep(const RsvgLibrary& library, Svg handle, NSSize size)
      : library_(library), handle_(std::move(handle)), size_(size) {}

  NSSize size() const override { return size_; }

  void paint(cairo_t* cairo, double fraction) const override {
    bitmaps_.paint(cairo, size_, fraction, [this](cairo_t* target) {
      const RsvgRectangle viewport{0, 0, size_.width, size_.height};
      library_.render(handle_.get(), target, &viewport, nullptr);
    });
  }

 private:
  const RsvgLibrary& library_;
  Svg handle_;
  NSSize size_;
  mutable ScaledBitmaps bitmaps_;
};

class PngImageRep : public NSImageRep {
 public:
  explicit PngImageRep(Surface surface) : surface_(std::move(surface)) {}

  NSSize size() const override {
    return {static_cast<double>(cairo_image_surface_get_width(surface_.get())),
            static_cast<double>(cairo_image_surface_get_height(surface_.get()))};
  }

  void paint(cairo_t* cairo, double fraction) const override {
    paintSurface(cairo, surface_.get(), fraction);
  }

 private:
  Surface surface_;
};

bool isSensible(double width, double height) {
  return width > 0 && height > 0 && width <= MaximumPoints && height <= MaximumPoints;
}

std::unique_ptr<NSImageRep> svgRep(const fs::path& file) {
  const RsvgLibrary* library = RsvgLibrary::sharedLibrary();
  if (library == nullptr) return nullptr;
  Svg handle(library->newFromFile(file.c_str(), nullptr));
  NSSize size;
  if (!handle || !library->intrinsicSize(handle.get(), &size.width, &size.height) ||
      !isSensible(size.width, size.height)) {
    return nullptr;
  }
  return std::make_unique<SvgImageRep>(*library, std::move(handle), size);
}

/// The size that a PNG file claims. Asked before it is read: a small file can hold a picture that
/// fills the memory.
NSSize claimedPngSize(const fs::path& file) {
  constexpr size_t HeaderSize = 24;
  constexpr size_t WidthPosition = 16;
  constexpr size_t HeightPosition = 20;
  std::array<char, HeaderSize> header{};
  std::ifstream(file, std::ios::binary).read(header.data(), header.size());
  const auto numberAt = [&](size_t position) {
    uint32_t value = 0;
    for (size_t index = position; index < position + 4; ++index) {
      value = value << 8 | static_cast<unsigned char>(header[index]);
    }
    return static_cast<double>(value);
  };
  return {numberAt(WidthPosition), numberAt(HeightPosition)};
}

std::unique_ptr<NSImageRep> pngRep(const fs::path& file) {
  const NSSize size = claimedPngSize(file);
  if (!isSensible(size.width, size.height)) return nullptr;
  Surface surface(cairo_image_surface_create_from_png(file.c_str()));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  return std::make_unique<PngImageRep>(std::move(surface));
}

}  // namespace

std::unique_ptr<NSImageRep> imageRepFromFile(const fs::path& file) {
  std::error_code error;
  if (!fs::is_regular_file(file, error) || fs::file_size(file, error) > MaximumFileSize) {
    return nullptr;
  }
  return file.extension() == ".svg" ? svgRep(file) : pngRep(file);
}

RecordedImageRep::RecordedImageRep(NSSize size)
    : size_(isSensible(size.width, size.height) ? size : NSSize{}) {
  const cairo_rectangle_t extents{0, 0, size_.width, size_.height};
  surface_.reset(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &extents));
}

cairo_surface_t* RecordedImageRep::beginRecording() {
  bitmaps_.clear();
  return surface_.get();
}

void RecordedImageRep::paint(cairo_t* cairo, double fraction) const {
  bitmaps_.paint(cairo, size_, fraction,
                 [this](cairo_t* target) { paintSurface(target, surface_.get(), 1); });
}
