#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Foundation/NSGeometry.h"

/// One thing that assistive technologies are told of, with all in it: plain data, for any host.
struct AccessibleElement {
  enum class Role { Menu, MenuItem, StaticText, Image, Button, Table, Row, Cell };

  /// The same as long as the thing is there, and no other's then.
  uint64_t id = 0;
  Role role = Role::StaticText;
  std::string name;
  bool isEnabled = true;
  bool isFocused = false;   ///< The keyboard is on it.
  bool isSelected = false;  ///< A row that is highlighted, a day that is chosen.
  bool hasMenu = false;     ///< It opens a menu, which is its child while it is open.
  bool canPress = false;
  NSRect frame;  ///< Points of the desktop, y downwards.
  std::vector<AccessibleElement> children;

  bool operator==(const AccessibleElement&) const = default;
};
