#include "Shared/External/Logging/FormattedText.h"

#include <algorithm>
#include <cstdio>

std::string formattedText(const char* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  std::string text(256, '\0');  // Most texts fit; a longer one is formatted twice.
  const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
  const auto size = static_cast<size_t>(std::max(length, 0));
  const bool fits = size < text.size();
  text.resize(size);
  if (!fits) std::vsnprintf(text.data(), size + 1, format, again);
  va_end(again);
  return text;
}
