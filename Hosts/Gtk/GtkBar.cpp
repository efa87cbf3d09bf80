#include "Hosts/Gtk/GtkBar.h"

#include "Platform/AppKit/CairoGraphicsContext.h"
#include "Platform/AppKit/NSBezierPath.h"

namespace {

constexpr int BarHeight = static_cast<int>(NSMenuExtra::Height);

/// What stays free between the item and the monitor's right edge.
constexpr int RightMargin = 8;

/// Sets the bar off from what is below it.
NSColor hairlineColor(bool isDark) {
  return NSColor::colorWithDeviceWhite(0, isDark ? 0.45 : 0.14);
}

void drawBackground(cairo_t* cairo, int width, int scale, bool isDark) {
  CairoGraphicsContext context(cairo, BarHeight);
  const NSCurrentGraphicsContext current(context);
  menuBarBackgroundColor(isDark).setFill();
  NSBezierPath::bezierPathWithRect(NSMakeRect(0, 0, width, BarHeight)).fill();
  hairlineColor(isDark).setFill();
  NSBezierPath::bezierPathWithRect(NSMakeRect(0, 0, width, 1.0 / scale)).fill();
}

}  // namespace

GtkBar::GtkBar(DisplayKind display)
    : window_(GTK_WINDOW(gtk_window_new(GTK_WINDOW_TOPLEVEL))), area_(gtk_drawing_area_new()) {
  gtk_window_set_title(window_, "Menu bar");
  gtk_widget_set_app_paintable(GTK_WIDGET(window_), TRUE);
  gtk_widget_set_size_request(GTK_WIDGET(window_), -1, BarHeight);
  gtk_widget_add_events(area_, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK);
  gtk_container_add(GTK_CONTAINER(window_), area_);
  gtk_widget_show(area_);
  placement_ = display == DisplayKind::LayerShell ? makeLayerShellPlacement(window_)
                                                  : makeX11DockPlacement(window_);

  const auto connect = [this](SignalConnection connection) {
    connections_.push_back(std::move(connection));
  };
  connect(connectSignal<&GtkBar::followFrameClock>(area_, "realize", this));
  connect(connectSignal<&GtkBar::scaleChanged>(area_, "notify::scale-factor", this));
  connect(connectSignal<&GtkBar::draw>(area_, "draw", this));
  connect(connectSignal<&GtkBar::buttonPressed>(area_, "button-press-event", this));
  connect(connectSignal<&GtkBar::buttonReleased>(area_, "button-release-event", this));
  connect(connectSignal<&GtkBar::grabBroken>(area_, "grab-broken-event", this));
  connect(connectSignal<&GtkBar::closeRequested>(window_, "delete-event", this));

  slot_.onNeedsDisplay = [this] { requestUpdate(); };
  slot_.onLengthChanged = [this] { requestUpdate(); };
}

GtkBar::~GtkBar() {
  slot_.setExtra(nullptr);
  connections_.clear();
  frameClockConnection_ = {};
  placement_.reset();
  gtk_widget_destroy(GTK_WIDGET(window_));
}

void GtkBar::showOn(GdkMonitor* monitor) {
  if (monitor == nullptr) {
    gtk_widget_hide(GTK_WIDGET(window_));
    return;
  }
  placement_->moveTo(monitor);
  gtk_widget_show(GTK_WIDGET(window_));
}

void GtkBar::redraw() {
  gtk_widget_queue_draw(area_);
  requestUpdate();
}

void GtkBar::followFrameClock() {
  frameClockConnection_ =
      connectSignal<&GtkBar::update>(gtk_widget_get_frame_clock(area_), "update", this);
  requestUpdate();
}

void GtkBar::requestUpdate() {
  // What the item asks for while it draws is part of that very drawing.
  if (isUpdating_ || !gtk_widget_get_realized(area_)) return;
  needsUpdate_ = true;
  gdk_frame_clock_request_phase(gtk_widget_get_frame_clock(area_), GDK_FRAME_CLOCK_PHASE_UPDATE);
}

void GtkBar::update() {
  if (!needsUpdate_) return;
  needsUpdate_ = false;
  const GdkRectangle oldArea = slotArea();
  isUpdating_ = true;
  const bool hasChanged = picture_.render(slot_, gtk_widget_get_scale_factor(area_));
  isUpdating_ = false;
  updateAccessibleName();
  // A clock without seconds draws the same for most of its ticks: that need not wake the
  // compositor.
  if (!hasChanged) return;
  const GdkRectangle newArea = slotArea();
  GdkRectangle changed;
  gdk_rectangle_union(&oldArea, &newArea, &changed);
  gtk_widget_queue_draw_area(area_, changed.x, changed.y, changed.width, changed.height);
}

gboolean GtkBar::draw(cairo_t* cairo) {
  drawBackground(cairo, gtk_widget_get_allocated_width(area_), gtk_widget_get_scale_factor(area_),
                 menuBarIsDark());
  const GdkRectangle slot = slotArea();
  picture_.paint(cairo, slot.x, slot.y);
  return TRUE;
}

GdkRectangle GtkBar::slotArea() const {
  const int width = picture_.width();
  return {gtk_widget_get_allocated_width(area_) - RightMargin - width, 0, width, BarHeight};
}

gboolean GtkBar::buttonPressed(GdkEventButton* event) {
  // The second press of a double click comes as a press and as a double press.
  if (event->type != GDK_BUTTON_PRESS || event->button != GDK_BUTTON_PRIMARY) return FALSE;
  const GdkRectangle slot = slotArea();
  const bool isInSlot = event->x >= slot.x && event->x < slot.x + slot.width;
  if (!isInSlot || !slot_.extra()) return FALSE;
  slot_.setMenuDown(true);
  slot_.extra()->menu();
  return TRUE;
}

gboolean GtkBar::buttonReleased(GdkEventButton* event) {
  if (event->button == GDK_BUTTON_PRIMARY) slot_.setMenuDown(false);
  return FALSE;
}

gboolean GtkBar::grabBroken(GdkEvent*) {
  slot_.setMenuDown(false);
  return FALSE;
}

gboolean GtkBar::closeRequested(GdkEvent*) {
  // The bar ends with its program. A compositor asks for this when the monitor goes, and then the
  // bar moves to another one.
  return TRUE;
}

void GtkBar::updateAccessibleName() {
  if (!slot_.extra()) return;
  AtkObject* accessible = gtk_widget_get_accessible(area_);
  const std::string name = slot_.extra()->AXTitle();
  if (const char* known = atk_object_get_name(accessible); known == nullptr || name != known) {
    atk_object_set_name(accessible, name.c_str());
  }
}
