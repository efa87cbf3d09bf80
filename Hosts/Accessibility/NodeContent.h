#pragma once

#include <atk/atk.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Hosts/Accessibility/AccessibleBar.h"

/// A set of `AtkStateType`, a bit each.
using NodeStates = uint64_t;

constexpr NodeStates stateBit(AtkStateType state) { return NodeStates{1} << state; }

/// What one accessible object tells, with all in it.
struct NodeContent {
  uint64_t id = 0;
  AtkRole role = ATK_ROLE_UNKNOWN;
  std::string name;
  std::string description;
  const char* action = nullptr;  ///< The name of what a press on it does; null if that is nothing.
  NodeStates states = 0;
  AtkRectangle frame{};   ///< Pixels of the desktop, or points where `hasScreenPlace` is false.
  AtkRectangle window{};  ///< The window in which it is shown, likewise.
  bool hasScreenPlace = false;  ///< Whether other programs know places on the desktop.
  std::vector<NodeContent> children;
};

/// The bar, with its item and the item's open menu.
NodeContent barContent(const AccessibleItem& item, const std::optional<AccessibleElement>& menu);
