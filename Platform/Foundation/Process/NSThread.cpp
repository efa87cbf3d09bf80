#include "Platform/Foundation/Process/NSThread.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <array>

namespace {

NSThread askedFor() {
  std::array<char, 16> name{};  // The kernel's length, with the end.
  prctl(PR_GET_NAME, name.data());
  return {static_cast<uint32_t>(gettid()), name.data()};
}

}  // namespace

const NSThread& NSThread::currentThread() {
  static thread_local const NSThread thread = askedFor();
  return thread;
}
