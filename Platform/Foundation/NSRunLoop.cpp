#include "Platform/Foundation/NSRunLoop.h"

#include <exception>
#include <set>
#include <string>

#include "Platform/Foundation/NSLog.h"

namespace {

NSRunLoop* installedLoop = nullptr;

void reportOnce(const std::string& text) {
  // A fault in the tick repeats each second; the bound keeps a text that varies from growing this.
  constexpr size_t MaximumRemembered = 256;
  static std::set<std::string> reported;
  if (reported.size() >= MaximumRemembered) reported.clear();
  if (reported.insert(text).second) NSLog("error: " + text);
}

}  // namespace

NSRunLoop& makeDesktopRunLoop();

NSRunLoop& NSRunLoop::mainRunLoop() {
  return installedLoop != nullptr ? *installedLoop : makeDesktopRunLoop();
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
