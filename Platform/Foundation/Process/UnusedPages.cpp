#include "Platform/Foundation/Process/UnusedPages.h"

#include <malloc.h>
#include <sys/mman.h>

#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Mapping {
  uintptr_t start = 0;
  uintptr_t end = 0;
  bool isReadOnlyFile = false;
  bool isUntouched = true;  ///< No page of it is the process's own.
};

bool tellsOwnPages(std::string_view line) {
  return line.starts_with("Anonymous:") || line.starts_with("Private_Dirty:") ||
         line.starts_with("Shared_Dirty:");
}

/// The mappings as the kernel tells them: a line with the range, the rights, the file, and below it
/// lines with amounts.
std::vector<Mapping> mappings() {
  std::vector<Mapping> all;
  std::ifstream smaps("/proc/self/smaps");
  for (std::string line; std::getline(smaps, line);) {
    const bool isRange = line.find(' ') < line.find(':');
    // Thousands of lines tell other amounts.
    if (!isRange && !tellsOwnPages(line)) continue;
    std::istringstream words(line);
    std::string first;
    words >> first;
    if (isRange) {
      Mapping mapping;
      char dash = 0;
      std::string rights;
      std::string offset;
      std::string device;
      uint64_t inode = 0;
      std::istringstream range(first);
      range >> std::hex >> mapping.start >> dash >> mapping.end;
      words >> rights >> offset >> device >> inode;
      mapping.isReadOnlyFile = inode != 0 && rights.find('w') == std::string::npos;
      all.push_back(mapping);
    } else {
      uint64_t kilobytes = 0;
      words >> kilobytes;
      if (kilobytes > 0 && !all.empty()) all.back().isUntouched = false;
    }
  }
  return all;
}

}  // namespace

void returnUnusedPages() {
  malloc_trim(0);
  for (const Mapping& mapping : mappings()) {
    // Relocated parts of libraries are read-only, too, but are the process's own: they would be
    // lost.
    if (!mapping.isReadOnlyFile || !mapping.isUntouched) continue;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel tells addresses as numbers.
    madvise(reinterpret_cast<void*>(mapping.start), mapping.end - mapping.start, MADV_DONTNEED);
  }
}
