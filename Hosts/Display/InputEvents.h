#pragma once

#include <cstdint>

#include "Platform/AppKit/Events/NSEvent.h"
#include "Platform/Foundation/NSGeometry.h"

/// Input on one surface, as every kind of display tells it. Places are points from the surface's
/// upper left corner, y downwards; times are milliseconds of the display's own clock.

enum class PointerButton { Primary, Secondary, Middle, Other };

struct PointerEvent {
  /// `Cancel`: the display has taken the pointer away in the middle of a press.
  enum class Kind { Enter, Move, Leave, Press, Release, Cancel, Scroll };

  Kind kind = Kind::Move;
  NSPoint place;
  PointerButton button = PointerButton::Primary;  ///< Of a press or release.
  NSPoint scroll;                                 ///< Points to the right and down.
  NSEventModifierFlags modifiers = 0;             ///< Held, of a press or a move.
  uint32_t time = 0;
};

struct TouchEvent {
  enum class Kind { Down, Move, Up, Cancel };

  Kind kind = Kind::Down;
  int32_t finger = 0;
  NSPoint place;  ///< Of a touch or a move.
  uint32_t time = 0;
};
