#include "Platform/Foundation/Text/NSUUID.h"

#include <glib.h>

#include <memory>

#include "Platform/Foundation/Text/NSString.h"

std::string NSUUIDString() {
  const std::unique_ptr<char, decltype(&g_free)> text(g_uuid_string_random(), &g_free);
  return uppercaseString(text.get());
}
