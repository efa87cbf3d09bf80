#include "Hosts/Accessibility/AccessibleNode.h"

#include <algorithm>
#include <utility>

#include "Hosts/Accessibility/NodeType.h"

namespace {

/// They are told of once the object is in its place, for they draw the reader's attention to it.
constexpr NodeStates Attention = stateBit(ATK_STATE_FOCUSED) | stateBit(ATK_STATE_SELECTED);

bool isSame(const NodePointer& node, const NodeContent& content) {
  const NodeContent& own = nodeState(node.get()).content;
  return own.id == content.id && own.role == content.role &&
         (own.action == nullptr) == (content.action == nullptr);
}

/// All but states and children, of which others hear in their turn.
void takeContent(NodeContent& own, const NodeContent& content) {
  NodeContent taken = content;
  taken.children.clear();
  taken.states = own.states;
  own = std::move(taken);
}

void tellChild(AtkObject* parent, const char* signal, size_t index, AtkObject* child) {
  g_signal_emit_by_name(parent, signal, static_cast<guint>(index), child, nullptr);
}

void insertChild(AtkObject* parent, size_t index, NodePointer child) {
  auto& children = nodeState(parent).children;
  AtkObject* inserted = child.get();
  nodeState(inserted).parent = parent;
  children.insert(children.begin() + static_cast<std::ptrdiff_t>(index), std::move(child));
  tellChild(parent, "children-changed::add", index, inserted);
}

NodePointer takeChild(AtkObject* parent, size_t index) {
  auto& children = nodeState(parent).children;
  NodePointer child = std::move(children[index]);
  children.erase(children.begin() + static_cast<std::ptrdiff_t>(index));
  tellChild(parent, "children-changed::remove", index, child.get());
  return child;
}

void retire(const NodePointer& node) {
  NodeState& state = nodeState(node.get());
  for (const NodePointer& child : std::exchange(state.children, {}))
    retire(child);
  state.parent = nullptr;
  state.onPress = nullptr;
  state.content.states = stateBit(ATK_STATE_DEFUNCT);
  atk_object_notify_state_change(node.get(), ATK_STATE_DEFUNCT, TRUE);
}

void updateWords(AtkObject* node, const NodeContent& content) {
  NodeContent& own = nodeState(node).content;
  const bool isRenamed = own.name != content.name;
  const bool isDescribedAnew = own.description != content.description;
  takeContent(own, content);
  if (isRenamed) g_object_notify(G_OBJECT(node), "accessible-name");
  if (isDescribedAnew) g_object_notify(G_OBJECT(node), "accessible-description");
}

void updateTree(AtkObject* node, const NodeContent& content, const PressHandler& onPress) {
  updateWords(node, content);
  const auto& children = nodeState(node).children;
  for (size_t index = children.size(); index-- > 0;) {
    const auto isWanted = [&](const NodeContent& child) { return isSame(children[index], child); };
    if (std::ranges::none_of(content.children, isWanted)) retire(takeChild(node, index));
  }
  for (size_t index = 0; index < content.children.size(); ++index) {
    const NodeContent& wanted = content.children[index];
    size_t place = index;
    while (place < children.size() && !isSame(children[place], wanted))
      ++place;
    if (place == children.size()) {
      insertChild(node, index, makeNode(wanted, onPress));
    } else {
      if (place != index) insertChild(node, index, takeChild(node, place));
      updateTree(children[index].get(), wanted, onPress);
    }
  }
}

/// Tells of the states that have come, or of those that have gone.
void updateStates(AtkObject* node, const NodeContent& content, bool hasCome) {
  NodeState& state = nodeState(node);
  NodeStates& own = state.content.states;
  for (int number = 0; number < ATK_STATE_LAST_DEFINED; ++number) {
    const auto type = static_cast<AtkStateType>(number);
    const NodeStates bit = stateBit(type);
    if ((own & bit) == (content.states & bit) || ((content.states & bit) != 0) != hasCome) continue;
    own ^= bit;
    atk_object_notify_state_change(node, type, hasCome);
  }
  for (size_t index = 0; index < state.children.size(); ++index)
    updateStates(state.children[index].get(), content.children[index], hasCome);
}

}  // namespace

NodePointer makeNode(const NodeContent& content, const PressHandler& onPress) {
  const GType type = content.action != nullptr ? pressableNodeType() : nodeType();
  NodePointer node(ATK_OBJECT(g_object_new(type, nullptr)));
  NodeState& state = nodeState(node.get());
  takeContent(state.content, content);
  state.content.states = content.states & ~Attention;
  if (content.action != nullptr) state.onPress = onPress;
  for (const NodeContent& child : content.children) {
    state.children.push_back(makeNode(child, onPress));
    nodeState(state.children.back().get()).parent = node.get();
  }
  return node;
}

void updateNode(AtkObject* node, const NodeContent& content, const PressHandler& onPress) {
  updateTree(node, content, onPress);
  // The focus leaves one object before it comes to the next.
  updateStates(node, content, false);
  updateStates(node, content, true);
}
