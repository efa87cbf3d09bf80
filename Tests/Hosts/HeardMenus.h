#pragma once

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "Hosts/Display/MenuSession.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Tests/Support/ChildProcess.h"

/// Notes what a menu session tells it, a word or a line each: "press 20,40", "down 256 A shifted".
class HeardMenus : public MenuSessionClient {
 public:
  /// Serves the run loop until `condition` holds.
  static bool serveUntil(const std::function<bool()>& condition) {
    return waitUntil([&] {
      for (int passes = 0; passes < 100 && NSRunLoop::mainRunLoop().runPending();)
        ++passes;
      return condition();
    });
  }

  /// A window's picture of one colour.
  static void show(MenuWindow& window, PixelRect frame, uint32_t color, PixelRect changed) {
    const std::vector<uint32_t> pixels(static_cast<size_t>(frame.width * frame.height), color);
    window.present(frame, {pixels, frame.width, frame.height, frame.width}, changed);
  }

  /// Asks for that many frames, one after the other.
  void showFrames(MenuWindow& window, int count) {
    framesToCome = count;
    window.requestFrame();
    EXPECT_TRUE(serveUntil([&] { return framesToCome == 0; }));
  }

  void menuFrameReady(MenuWindow& window) override {
    if (--framesToCome > 0) window.requestFrame();
  }
  void menuScaleChanged() override { heard.push_back("scale"); }
  void menuPointerEvent(const PointerEvent& event) override {
    static constexpr std::array Kinds = {"enter",   "move",   "leave", "press",
                                         "release", "cancel", "scroll"};
    std::ostringstream line;
    line << Kinds.at(static_cast<size_t>(event.kind)) << " " << event.place.x << ","
         << event.place.y;
    if (event.kind == PointerEvent::Kind::Scroll) {
      line << " by " << event.scroll.x << "," << event.scroll.y;
    }
    line << shiftOf(event.modifiers);
    heard.push_back(line.str());
  }
  void menuTouchEvent(const TouchEvent&) override {}
  void menuKeyEvent(const NSEvent& event) override {
    std::ostringstream line;
    line << (event.type == NSEventType::KeyDown ? "down " : "up ") << event.keyCode << " "
         << event.characters << (event.isARepeat ? " again" : "") << shiftOf(event.modifierFlags);
    heard.push_back(line.str());
  }
  void menuSessionEnded() override { heard.push_back("ended"); }

  static const char* shiftOf(NSEventModifierFlags flags) {
    return flags == NSEventModifierFlagShift ? " shifted" : "";
  }

  std::vector<std::string> heard;
  int framesToCome = 0;
};
