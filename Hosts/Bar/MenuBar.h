#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Hosts/Accessibility/AccessibleBar.h"
#include "Hosts/Bar/BarLock.h"
#include "Hosts/Bar/BarMenus.h"
#include "Hosts/Bar/ItemPicture.h"
#include "Hosts/Display/Display.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"

/// The bar on one monitor of a display, with one item at its right end.
class MenuBar : private SurfaceClient {
 public:
  /// The bar goes to the monitor of the name, as long as there is one, else to the primary one,
  /// else to the first. `display` must outlive it.
  MenuBar(Display& display, std::optional<std::string> wantedMonitor);
  MenuBar(const MenuBar&) = delete;
  MenuBar& operator=(const MenuBar&) = delete;
  ~MenuBar() override;

  /// The place of the bar's one item.
  NSMenuBarSlot& slot() { return slot_; }

  /// Shows the bar, or hides it while there is no monitor. Throws `std::runtime_error` with the
  /// reason if it cannot be shown on the monitor that there is.
  void show();

  /// Draws the whole bar anew, for a change of the desktop's appearance.
  void redraw();

  /// Opens or closes the item's menu by a request, with the keyboard on it. Answers whether it is
  /// open then.
  bool setMenuOpen(bool isOpen);
  BarMenus& menus() { return menus_; }

  /// What assistive technologies are told of the item: its name is its words, or its title where it
  /// has none. The name changes once a minute at most, for one that changes each second is read
  /// aloud each second.
  const AccessibleItem& accessibleItem() const { return accessibleItem_; }
  std::function<void()> onItemChanged;

 private:
  void surfaceChanged() override;
  void frameReady() override;
  void pointerEvent(const PointerEvent& event) override;
  void touchEvent(const TouchEvent& event) override;
  void surfaceClosed() override;

  void followMonitors();
  std::optional<Monitor> chooseMonitor();
  void updateScreens(const Monitor& first) const;
  void takeBackground();
  void requestUpdate();
  bool isOnItem(NSPoint place) const;
  void press();
  bool openMenu(MenuOpening opening);
  NSPoint onDesktop(NSPoint place) const;
  NSRect itemFrame() const;
  void updateAccessibleItem();
  void updateName(AccessibleItem& item);

  Display& display_;
  std::optional<std::string> wantedMonitor_;
  bool hasToldOfWaiting_ = false;
  BarLock lock_;
  NSMenuBarSlot slot_;
  ItemPicture picture_;
  std::vector<uint32_t> background_;
  AccessibleItem accessibleItem_;
  double nameMinute_ = 0;
  bool isDrawing_ = false;
  Monitor monitor_;
  BarMenus menus_{display_, slot_};
  std::unique_ptr<BarSurface> closed_;   // On its way out.
  std::unique_ptr<BarSurface> surface_;  // Last: it calls this object.
};
