#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "Platform/AppKit/Drawing/NSKeyedUnarchiver.h"
#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"

/// Settings, settings of the previous version and archived colours are property lists from outside.
/// What reads must read the same when it is written and read again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  unarchiveObjectWithData(PropertyList::Data(data, data + size));
  const auto value = propertyListWithData({reinterpret_cast<const char*>(data), size});
  if (value && propertyListWithData(dataWithPropertyList(*value)) != value) std::abort();
  return 0;
}
