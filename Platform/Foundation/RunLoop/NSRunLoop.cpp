#include "Platform/Foundation/RunLoop/NSRunLoop.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <set>
#include <string>

#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/SharedInstance.h"

namespace {

std::atomic<NSRunLoop*> installedLoop = nullptr;

void reportOnce(const std::string& text) {
  // A fault in the tick repeats each second; the bound keeps a text that varies from growing this.
  constexpr size_t MaximumRemembered = 256;
  static std::mutex mutex;
  static SharedInstance<std::set<std::string>> shared;
  const std::lock_guard guard(mutex);
  std::set<std::string>& reported = shared.get();
  if (reported.size() >= MaximumRemembered) reported.clear();
  if (reported.insert(text).second) NSLog("error: " + text);
}

}  // namespace

NSRunLoop& makeDesktopRunLoop();

NSRunLoop& NSRunLoop::mainRunLoop() {
  NSRunLoop* const loop = installedLoop;
  return loop != nullptr ? *loop : makeDesktopRunLoop();
}

void NSRunLoop::setMainRunLoop(NSRunLoop* loop) { installedLoop = loop; }

void NSRunLoop::guarded(const Callback& callback) {
  try {
    callback();
  } catch (const std::exception& exception) {
    reportOnce(exception.what());
  } catch (...) {
    reportOnce("an exception of an unknown kind");
  }
}
