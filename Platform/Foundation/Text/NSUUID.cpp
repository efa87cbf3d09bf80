#include "Platform/Foundation/Text/NSUUID.h"

#include <glib.h>

#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/Text/NSString.h"

std::string NSUUIDString() {
  const LibraryHandle<char, g_free> text(g_uuid_string_random());
  return uppercaseString(text.get());
}
