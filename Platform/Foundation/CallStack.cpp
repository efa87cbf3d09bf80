#include "Platform/Foundation/CallStack.h"

#include <execinfo.h>

#include <array>
#include <cstdlib>
#include <memory>

std::string callStackSymbols() {
  std::array<void*, 64> frames{};
  const int count = backtrace(frames.data(), static_cast<int>(frames.size()));
  const std::unique_ptr<char*, decltype(&std::free)> symbols(
      backtrace_symbols(frames.data(), count), &std::free);
  std::string text;
  for (int index = 0; symbols && index < count; ++index) {
    if (!text.empty()) text += '\n';
    text += symbols.get()[index];
  }
  return text;
}
