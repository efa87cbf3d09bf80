#pragma once

#include <wayland-client.h>

#include <array>
#include <cstdint>
#include <memory>
#include <span>

#include "Hosts/Display/Display.h"
#include "Hosts/Wayland/WaylandObject.h"

/// The pictures of a surface in memory shared with the compositor: while it shows one, the next is
/// written into another.
class ShmPictures {
 public:
  explicit ShmPictures(wl_shm* shm) : shm_(shm) {}
  ShmPictures(const ShmPictures&) = delete;
  ShmPictures& operator=(const ShmPictures&) = delete;
  ~ShmPictures();

  /// Copies a picture to where the compositor reads it. The buffer stays this object's; it is valid
  /// until the next call for a picture of another size. Throws `std::runtime_error` if the memory
  /// cannot be had.
  wl_buffer* buffer(const PixelPicture& picture);

 private:
  struct Buffer {
    WaylandObject<wl_buffer> object;
    uint32_t* pixels = nullptr;
    bool isTaken = false;  ///< By the compositor.

    void released(wl_buffer*) { isTaken = false; }
  };
  static constexpr size_t Count = 2;

  void allocate(int width, int height);
  void release();

  wl_shm* shm_;
  std::array<Buffer, Count> buffers_;
  void* memory_ = nullptr;
  size_t size_ = 0;
  int width_ = 0;
  int height_ = 0;
};
