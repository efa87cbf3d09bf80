#include "Hosts/Accessibility/AccessibleBar.h"

#include <atk-bridge.h>
#include <atk/atk.h>

#include "Hosts/Accessibility/AccessibleNode.h"

namespace {

NodeContent applicationContent() {
  NodeContent content;
  content.role = ATK_ROLE_APPLICATION;
  content.name = "velmora-menubar";
  content.states = stateBit(ATK_STATE_ENABLED) | stateBit(ATK_STATE_SENSITIVE) |
                   stateBit(ATK_STATE_SHOWING) | stateBit(ATK_STATE_VISIBLE);
  return content;
}

/// It stays until the process ends: the bridge may ask until then.
AtkObject* application() {
  static AtkObject* const root = makeNode(applicationContent(), nullptr).release();
  return root;
}

class AtkBar : public AccessibleBar {
 public:
  AtkBar() {
    update();
    auto* util = static_cast<AtkUtilClass*>(g_type_class_ref(ATK_TYPE_UTIL));
    util->get_root = application;
    util->get_toolkit_name = [] { return "velmora"; };
    util->get_toolkit_version = [] { return "5"; };
    atk_bridge_adaptor_init(nullptr, nullptr);
  }
  AtkBar(const AtkBar&) = delete;
  AtkBar& operator=(const AtkBar&) = delete;
  ~AtkBar() override { updateNode(application(), applicationContent(), nullptr); }

  void setItem(const AccessibleItem& item) override {
    if (item == item_) return;
    item_ = item;
    update();
  }

  void setMenu(const std::optional<AccessibleElement>& menu) override {
    if (menu == menu_) return;
    menu_ = menu;
    update();
  }

 private:
  void update() {
    NodeContent content = applicationContent();
    content.children.push_back(barContent(item_, menu_));
    updateNode(application(), content, [this](uint64_t id) {
      if (onPress) onPress(id);
    });
  }

  AccessibleItem item_;
  std::optional<AccessibleElement> menu_;
};

}  // namespace

extern "C" void VelmoraMakeAccessibleBar(std::unique_ptr<AccessibleBar>& bar) {
  bar = std::make_unique<AtkBar>();
}
