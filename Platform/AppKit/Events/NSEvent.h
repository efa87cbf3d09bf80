#pragma once

#include <cstdint>
#include <string>

#include "Platform/Foundation/NSGeometry.h"

/// The kinds of input, by the platform's numbers.
enum class NSEventType {
  LeftMouseDown = 1,
  LeftMouseUp = 2,
  RightMouseDown = 3,
  RightMouseUp = 4,
  MouseMoved = 5,
  LeftMouseDragged = 6,
  MouseEntered = 8,
  MouseExited = 9,
  KeyDown = 10,
  KeyUp = 11,
  ScrollWheel = 22,
};

using NSEventModifierFlags = uint32_t;
constexpr NSEventModifierFlags NSEventModifierFlagShift = 1U << 17;
constexpr NSEventModifierFlags NSEventModifierFlagControl = 1U << 18;
constexpr NSEventModifierFlags NSEventModifierFlagOption = 1U << 19;   ///< Alt.
constexpr NSEventModifierFlags NSEventModifierFlagCommand = 1U << 20;  ///< Super.

/// Keys that mean something to a menu, by the platform's numbers. Every other key has a number
/// above 0xFF that says nothing.
enum NSKeyCode : uint16_t {
  NSKeyCodeReturn = 36,
  NSKeyCodeTab = 48,
  NSKeyCodeSpace = 49,
  NSKeyCodeBackspace = 51,
  NSKeyCodeEscape = 53,
  NSKeyCodeKeypadEnter = 76,
  NSKeyCodeHome = 115,
  NSKeyCodePageUp = 116,
  NSKeyCodeEnd = 119,
  NSKeyCodePageDown = 121,
  NSKeyCodeLeft = 123,
  NSKeyCodeRight = 124,
  NSKeyCodeDown = 125,
  NSKeyCodeUp = 126,
  NSKeyCodeOther = 0x100,
};

/// One input, made by a host and handed down. A value: it knows no window.
struct NSEvent {
  NSEventType type = NSEventType::MouseMoved;
  /// Of a pointer's event: points, in the coordinates of the view tree's root.
  NSPoint locationInWindow;
  NSPoint scrollingDelta;  ///< Points to the right and down.
  uint16_t keyCode = 0;
  std::string characters;  ///< What the key types, in UTF-8; empty for a key that types nothing.
  bool isARepeat = false;  ///< Of a held key.
  NSEventModifierFlags modifierFlags = 0;
  int64_t eventNumber = 0;  ///< A press and its release have the same.
};
