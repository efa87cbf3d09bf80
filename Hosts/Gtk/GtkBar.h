#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <vector>

#include "Hosts/Gtk/BarPlacement.h"
#include "Hosts/Gtk/SignalConnection.h"
#include "Hosts/Gtk/SlotPicture.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"

/// The bar's window: a strip along the upper edge of a monitor with one item at its right end.
class GtkBar {
 public:
  explicit GtkBar(DisplayKind display);
  GtkBar(const GtkBar&) = delete;
  GtkBar& operator=(const GtkBar&) = delete;
  ~GtkBar();

  /// The place of the bar's one item.
  NSMenuBarSlot& slot() { return slot_; }

  /// Shows the bar on a monitor, or hides it if there is none.
  void showOn(GdkMonitor* monitor);

  /// Draws the whole bar anew, for a change of the desktop's appearance.
  void redraw();

 private:
  void followFrameClock();
  void requestUpdate();
  void update();
  void scaleChanged(GParamSpec*) { redraw(); }
  gboolean draw(cairo_t* cairo);
  gboolean buttonPressed(GdkEventButton* event);
  gboolean buttonReleased(GdkEventButton* event);
  gboolean grabBroken(GdkEvent* event);
  gboolean closeRequested(GdkEvent* event);
  GdkRectangle slotArea() const;
  void updateAccessibleName();

  NSMenuBarSlot slot_;
  SlotPicture picture_;
  bool isUpdating_ = false;
  bool needsUpdate_ = false;
  GtkWindow* window_;
  GtkWidget* area_;
  std::unique_ptr<BarPlacement> placement_;
  std::vector<SignalConnection> connections_;
  SignalConnection frameClockConnection_;
};
