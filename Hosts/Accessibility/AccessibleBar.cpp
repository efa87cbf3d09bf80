#include "Hosts/Accessibility/AccessibleBar.h"

#include <atk-bridge.h>
#include <atk/atk.h>

#include <vector>

namespace {

/// One object of the tree. Its children are there from its start.
struct Node {
  AtkObject base;
  std::vector<AtkObject*>* children;
};

Node* nodeOf(AtkObject* object) { return reinterpret_cast<Node*>(object); }

gint childCount(AtkObject* object) { return static_cast<gint>(nodeOf(object)->children->size()); }

AtkObject* child(AtkObject* object, gint index) {
  const auto& children = *nodeOf(object)->children;
  if (index < 0 || static_cast<size_t>(index) >= children.size()) return nullptr;
  return ATK_OBJECT(g_object_ref(children[static_cast<size_t>(index)]));
}

gint indexInParent(AtkObject* object) {
  AtkObject* parent = atk_object_get_parent(object);
  if (parent == nullptr) return -1;
  const auto& siblings = *nodeOf(parent)->children;
  for (size_t index = 0; index < siblings.size(); ++index) {
    if (siblings[index] == object) return static_cast<gint>(index);
  }
  return -1;
}

AtkStateSet* states(AtkObject*) {
  AtkStateSet* set = atk_state_set_new();
  for (const AtkStateType state :
       {ATK_STATE_ENABLED, ATK_STATE_SENSITIVE, ATK_STATE_SHOWING, ATK_STATE_VISIBLE}) {
    atk_state_set_add_state(set, state);
  }
  return set;
}

GType nodeType() {
  static const GType type = [] {
    GTypeQuery parent;
    g_type_query(ATK_TYPE_OBJECT, &parent);
    const GTypeInfo info = {
        .class_size = static_cast<guint16>(parent.class_size),
        .base_init = nullptr,
        .base_finalize = nullptr,
        .class_init =
            [](gpointer pointer, gpointer) {
              auto* object = static_cast<AtkObjectClass*>(pointer);
              object->get_n_children = childCount;
              object->ref_child = child;
              object->get_index_in_parent = indexInParent;
              object->ref_state_set = states;
            },
        .class_finalize = nullptr,
        .class_data = nullptr,
        .instance_size = sizeof(Node),
        .n_preallocs = 0,
        // The tree stays until the process ends: the bridge may ask until then.
        .instance_init =
            [](GTypeInstance* instance, gpointer) {
              reinterpret_cast<Node*>(instance)->children =
                  std::make_unique<std::vector<AtkObject*>>().release();
            },
        .value_table = nullptr,
    };
    return g_type_register_static(ATK_TYPE_OBJECT, "VelmoraAccessible", &info, GTypeFlags(0));
  }();
  return type;
}

AtkObject* makeNode(AtkRole role, const char* name, AtkObject* parent) {
  auto* object = ATK_OBJECT(g_object_new(nodeType(), nullptr));
  atk_object_set_role(object, role);
  atk_object_set_name(object, name);
  if (parent != nullptr) {
    nodeOf(parent)->children->push_back(object);
    atk_object_set_parent(object, parent);
  }
  return object;
}

AtkObject* application() {
  static AtkObject* const root = makeNode(ATK_ROLE_APPLICATION, "velmora-menubar", nullptr);
  return root;
}

class AtkBar : public AccessibleBar {
 public:
  AtkBar() {
    auto* util = static_cast<AtkUtilClass*>(g_type_class_ref(ATK_TYPE_UTIL));
    util->get_root = application;
    util->get_toolkit_name = [] { return "velmora"; };
    util->get_toolkit_version = [] { return "5"; };
    atk_bridge_adaptor_init(nullptr, nullptr);
  }

  void setItem(const std::string& name, const std::string& description) override {
    atk_object_set_name(item_, name.c_str());
    atk_object_set_description(item_, description.c_str());
  }

 private:
  AtkObject* bar_ = makeNode(ATK_ROLE_MENU_BAR, "Menu bar", application());
  AtkObject* item_ = makeNode(ATK_ROLE_PUSH_BUTTON, "", bar_);
};

}  // namespace

extern "C" void VelmoraMakeAccessibleBar(std::unique_ptr<AccessibleBar>& bar) {
  bar = std::make_unique<AtkBar>();
}
