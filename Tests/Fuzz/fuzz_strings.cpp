#include <cstddef>
#include <cstdint>

#include "Platform/Foundation/Text/StringsFile.h"

/// Tables of translations come from files that anybody may edit.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  stringsTableFromText({reinterpret_cast<const char*>(data), size});
  return 0;
}
