#include "Platform/Foundation/Process/CallStack.h"

#include <dlfcn.h>
#include <execinfo.h>

#include <array>
#include <cstdlib>
#include <memory>

#include "Platform/Foundation/LibraryHandle.h"

namespace {

struct CallStack {
  std::array<void*, 64> frames;
  int count;
};

thread_local CallStack thrownFrom{};

}  // namespace

// Every throw comes through here, those of the libraries too: this library is loaded ahead of the
// one whose function it stands for. The handler would be too late, the frames have gone by then.
extern "C" [[noreturn]] void __cxa_throw(void* exception, void* type, void (*destructor)(void*)) {
  using Throw = void (*)(void*, void*, void (*)(void*));
  static const auto real = reinterpret_cast<Throw>(dlsym(RTLD_NEXT, "__cxa_throw"));
  thrownFrom.count =
      backtrace(thrownFrom.frames.data(), static_cast<int>(thrownFrom.frames.size()));
  real(exception, type, destructor);
  std::abort();
}

std::string callStackSymbolsOfException() {
  const LibraryHandle<char*, std::free> symbols(
      backtrace_symbols(thrownFrom.frames.data(), thrownFrom.count));
  std::string text;
  // The first is the function above.
  for (int index = 1; symbols && index < thrownFrom.count; ++index) {
    if (!text.empty()) text += '\n';
    text += symbols.get()[index];
  }
  return text;
}
