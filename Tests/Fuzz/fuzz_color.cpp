#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Targets/Shared/ZEVColorText.h"

/// A colour text of any form reads as four finite numbers or as nothing.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const auto color =
      colorFromString(PropertyList(std::string(reinterpret_cast<const char*>(data), size)));
  if (!color) return 0;
  for (const double part : {color->redComponent(), color->greenComponent(), color->blueComponent(),
                            color->alphaComponent()}) {
    if (!std::isfinite(part)) std::abort();
  }
  stringFromColor(*color);
  return 0;
}
