#pragma once

#include <atk/atk.h>

#include <functional>
#include <memory>

#include "Hosts/Accessibility/NodeContent.h"

struct NodeUnreference {
  void operator()(AtkObject* node) const { g_object_unref(node); }
};
/// A reference to an accessible object. Others may have more of them: the object is safe to be
/// asked for as long as they do.
using NodePointer = std::unique_ptr<AtkObject, NodeUnreference>;

using PressHandler = std::function<void(uint64_t id)>;

/// Makes an object with all in it. `onPress` is called with the id of what is to be pressed.
NodePointer makeNode(const NodeContent& content, const PressHandler& onPress);

/// Has a tree of objects tell other things, and whoever listens hear of what is different. Objects
/// stay where id, role and ability to be pressed do. What is gone is defunct: it has no parent and
/// no children and calls nothing any more.
void updateNode(AtkObject* node, const NodeContent& content, const PressHandler& onPress);
