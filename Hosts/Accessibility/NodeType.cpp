#include "Hosts/Accessibility/NodeType.h"

#include <algorithm>

namespace {

struct Node {
  AtkObject base;
  NodeState* state;
};

NodeState& stateOf(gpointer instance) { return *static_cast<Node*>(instance)->state; }

// --- AtkObject ----------------------------------------------------------------------------------

const char* name(AtkObject* node) { return nodeState(node).content.name.c_str(); }
const char* description(AtkObject* node) { return nodeState(node).content.description.c_str(); }
AtkRole role(AtkObject* node) { return nodeState(node).content.role; }
AtkObject* parent(AtkObject* node) { return nodeState(node).parent; }

gint childCount(AtkObject* node) { return static_cast<gint>(nodeState(node).children.size()); }

AtkObject* child(AtkObject* node, gint index) {
  const auto& children = nodeState(node).children;
  if (index < 0 || static_cast<size_t>(index) >= children.size()) return nullptr;
  return ATK_OBJECT(g_object_ref(children[static_cast<size_t>(index)].get()));
}

gint indexInParent(AtkObject* node) {
  AtkObject* parent = nodeState(node).parent;
  if (parent == nullptr) return -1;
  const auto& siblings = nodeState(parent).children;
  const auto place = std::ranges::find(siblings, node, &NodePointer::get);
  return place != siblings.end() ? static_cast<gint>(place - siblings.begin()) : -1;
}

AtkStateSet* states(AtkObject* node) {
  AtkStateSet* set = atk_state_set_new();
  for (int state = 0; state < ATK_STATE_LAST_DEFINED; ++state) {
    const auto type = static_cast<AtkStateType>(state);
    if (nodeState(node).content.states & stateBit(type)) atk_state_set_add_state(set, type);
  }
  return set;
}

void finalize(GObject* object) {
  const std::unique_ptr<NodeState> state(&stateOf(object));
  G_OBJECT_CLASS(g_type_class_peek(ATK_TYPE_OBJECT))->finalize(object);
}

void initializeClass(gpointer pointer, gpointer) {
  auto* object = static_cast<AtkObjectClass*>(pointer);
  object->get_name = name;
  object->get_description = description;
  object->get_role = role;
  object->get_parent = parent;
  object->get_n_children = childCount;
  object->ref_child = child;
  object->get_index_in_parent = indexInParent;
  object->ref_state_set = states;
  G_OBJECT_CLASS(pointer)->finalize = finalize;
}

void initialize(GTypeInstance* instance, gpointer) {
  reinterpret_cast<Node*>(instance)->state = std::make_unique<NodeState>().release();
}

// --- AtkComponent -------------------------------------------------------------------------------

void extents(AtkComponent* component, gint* x, gint* y, gint* width, gint* height,
             AtkCoordType coordinates) {
  const NodeState& state = stateOf(component);
  const NodeContent& content = state.content;
  AtkRectangle origin = content.window;
  if (coordinates == ATK_XY_PARENT && state.parent != nullptr) {
    origin = nodeState(state.parent).content.frame;
  } else if (coordinates == ATK_XY_SCREEN && content.hasScreenPlace) {
    origin = {};
  }
  *x = content.frame.x - origin.x;
  *y = content.frame.y - origin.y;
  *width = content.frame.width;
  *height = content.frame.height;
}

void initializeComponent(gpointer pointer, gpointer) {
  static_cast<AtkComponentIface*>(pointer)->get_extents = extents;
}

// --- AtkAction ----------------------------------------------------------------------------------

gint actionCount(AtkAction*) { return 1; }

const char* actionName(AtkAction* action, gint index) {
  return index == 0 ? stateOf(action).content.action : nullptr;
}

gboolean press(AtkAction* action, gint index) {
  const NodeState& state = stateOf(action);
  if (index != 0 || !state.onPress) return FALSE;
  state.onPress(state.content.id);
  return TRUE;
}

void initializeAction(gpointer pointer, gpointer) {
  auto* action = static_cast<AtkActionIface*>(pointer);
  action->get_n_actions = actionCount;
  action->get_name = actionName;
  action->get_localized_name = actionName;
  action->do_action = press;
}

GTypeInfo typeInfo(GType parent, GClassInitFunc initializeClass, GInstanceInitFunc initialize) {
  GTypeQuery query;
  g_type_query(parent, &query);
  return {
      .class_size = static_cast<guint16>(query.class_size),
      .base_init = nullptr,
      .base_finalize = nullptr,
      .class_init = initializeClass,
      .class_finalize = nullptr,
      .class_data = nullptr,
      .instance_size = sizeof(Node),
      .n_preallocs = 0,
      .instance_init = initialize,
      .value_table = nullptr,
  };
}

void addInterface(GType type, GType interface, GInterfaceInitFunc initialize) {
  const GInterfaceInfo info{initialize, nullptr, nullptr};
  g_type_add_interface_static(type, interface, &info);
}

}  // namespace

NodeState& nodeState(AtkObject* node) { return stateOf(node); }

GType nodeType() {
  static const GType type = [] {
    const GTypeInfo info = typeInfo(ATK_TYPE_OBJECT, initializeClass, initialize);
    const GType made =
        g_type_register_static(ATK_TYPE_OBJECT, "VelmoraAccessible", &info, GTypeFlags(0));
    addInterface(made, ATK_TYPE_COMPONENT, initializeComponent);
    return made;
  }();
  return type;
}

GType pressableNodeType() {
  static const GType type = [] {
    const GTypeInfo info = typeInfo(nodeType(), nullptr, nullptr);
    const GType made = g_type_register_static(nodeType(), "VelmoraPressable", &info, GTypeFlags(0));
    addInterface(made, ATK_TYPE_ACTION, initializeAction);
    return made;
  }();
  return type;
}
