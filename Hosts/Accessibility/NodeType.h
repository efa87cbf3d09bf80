#pragma once

#include <atk/atk.h>

#include <vector>

#include "Hosts/Accessibility/AccessibleNode.h"

/// What belongs to one accessible object.
struct NodeState {
  NodeContent content;  ///< Without its children: they are objects.
  AtkObject* parent = nullptr;
  std::vector<NodePointer> children;
  PressHandler onPress;
};

/// An object with a name, a role, states, a place and children, all of them from its `NodeState`.
GType nodeType();
/// The same with one action, a press.
GType pressableNodeType();

/// Of an object of either type.
NodeState& nodeState(AtkObject* node);
