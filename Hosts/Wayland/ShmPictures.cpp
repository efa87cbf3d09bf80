#include "Hosts/Wayland/ShmPictures.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

#include "Platform/Foundation/Files/FileDescriptor.h"

ShmPictures::~ShmPictures() { release(); }

void ShmPictures::release() {
  for (Buffer& buffer : buffers_)
    buffer = {};
  if (memory_ != nullptr) munmap(memory_, size_);
  memory_ = nullptr;
}

void ShmPictures::allocate(int width, int height) {
  release();
  width_ = width;
  height_ = height;
  const int stride = width * static_cast<int>(sizeof(uint32_t));
  const int pictureSize = stride * height;
  size_ = static_cast<size_t>(pictureSize) * Count;
  const FileDescriptor file(memfd_create("velmora-menubar", MFD_CLOEXEC));
  const bool hasSpace = file && ftruncate(file.get(), static_cast<off_t>(size_)) == 0;
  void* memory = hasSpace ? mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0)
                          : MAP_FAILED;
  if (memory == MAP_FAILED) throw std::runtime_error("no memory to share with the display");
  memory_ = memory;
  static constexpr wl_buffer_listener Listener = {&WaylandEvent<&Buffer::released>::call};
  wl_shm_pool* pool = wl_shm_create_pool(shm_, file.get(), static_cast<int32_t>(size_));
  int offset = 0;
  for (Buffer& buffer : buffers_) {
    buffer.pixels = reinterpret_cast<uint32_t*>(static_cast<std::byte*>(memory_) + offset);
    buffer.object.reset(
        wl_shm_pool_create_buffer(pool, offset, width, height, stride, WL_SHM_FORMAT_ARGB8888));
    wl_buffer_add_listener(buffer.object.get(), &Listener, &buffer);
    offset += pictureSize;
  }
  wl_shm_pool_destroy(pool);
}

wl_buffer* ShmPictures::buffer(const PixelPicture& picture) {
  const auto isFree = [](const Buffer& buffer) { return !buffer.isTaken; };
  auto free = std::ranges::find_if(buffers_, isFree);
  if (picture.width != width_ || picture.height != height_ || memory_ == nullptr ||
      free == buffers_.end()) {
    // A compositor that keeps both keeps their memory, too.
    allocate(picture.width, picture.height);
    free = buffers_.begin();
  }
  for (int y = 0; y < picture.height; ++y) {
    std::copy_n(picture.row(y), picture.width,
                free->pixels + static_cast<ptrdiff_t>(y) * picture.width);
  }
  free->isTaken = true;
  return free->object.get();
}
