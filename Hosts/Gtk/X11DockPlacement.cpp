#include <gdk/gdkx.h>

#include <array>

#include "Hosts/Gtk/BarPlacement.h"
#include "Platform/SystemUIPlugin/NSMenuExtra.h"

namespace {

constexpr int BarHeight = static_cast<int>(NSMenuExtra::Height);

/// Left, right, top and bottom, then the start and the end of each in that order: the form of
/// _NET_WM_STRUT_PARTIAL. Its first four are _NET_WM_STRUT.
using Strut = std::array<gulong, 12>;

bool isBelowAnotherMonitor(const GdkRectangle& geometry) {
  GdkDisplay* display = gdk_display_get_default();
  for (int index = 0; index < gdk_display_get_n_monitors(display); ++index) {
    GdkRectangle other;
    gdk_monitor_get_geometry(gdk_display_get_monitor(display, index), &other);
    const bool isAbove = other.y < geometry.y;
    const bool sharesColumns =
        other.x < geometry.x + geometry.width && geometry.x < other.x + other.width;
    if (isAbove && sharesColumns) return true;
  }
  return false;
}

/// A strut is counted in device pixels from the edge of the whole desktop. Below another monitor it
/// would take that monitor's space away from windows, so there is none.
Strut topStrut(GdkMonitor* monitor) {
  GdkRectangle geometry;
  gdk_monitor_get_geometry(monitor, &geometry);
  Strut strut{};
  if (isBelowAnotherMonitor(geometry)) return strut;
  const int scale = gdk_monitor_get_scale_factor(monitor);
  strut[2] = static_cast<gulong>((geometry.y + BarHeight) * scale);
  strut[8] = static_cast<gulong>(geometry.x * scale);
  strut[9] = static_cast<gulong>((geometry.x + geometry.width) * scale - 1);
  return strut;
}

class X11DockPlacement : public BarPlacement {
 public:
  explicit X11DockPlacement(GtkWindow* bar) : bar_(bar) {
    gtk_window_set_type_hint(bar_, GDK_WINDOW_TYPE_HINT_DOCK);
    gtk_window_set_decorated(bar_, FALSE);
    gtk_window_set_resizable(bar_, FALSE);
    gtk_window_set_skip_taskbar_hint(bar_, TRUE);
    gtk_window_set_skip_pager_hint(bar_, TRUE);
    gtk_window_set_accept_focus(bar_, FALSE);
    gtk_window_stick(bar_);
  }

  void moveTo(GdkMonitor* monitor) override {
    GdkRectangle geometry;
    gdk_monitor_get_geometry(monitor, &geometry);
    gtk_widget_set_size_request(GTK_WIDGET(bar_), geometry.width, BarHeight);
    gtk_window_move(bar_, geometry.x, geometry.y);
    // Before the window is mapped, so that the window manager lays out the desktop only once.
    gtk_widget_realize(GTK_WIDGET(bar_));
    const Strut strut = topStrut(monitor);
    setCardinals("_NET_WM_STRUT", strut, 4);
    setCardinals("_NET_WM_STRUT_PARTIAL", strut, strut.size());
  }

 private:
  void setCardinals(const char* property, const Strut& values, size_t count) {
    gdk_property_change(gtk_widget_get_window(GTK_WIDGET(bar_)),
                        gdk_atom_intern_static_string(property),
                        gdk_atom_intern_static_string("CARDINAL"), 32, GDK_PROP_MODE_REPLACE,
                        reinterpret_cast<const guchar*>(values.data()), static_cast<int>(count));
  }

  GtkWindow* bar_;
};

}  // namespace

std::unique_ptr<BarPlacement> makeX11DockPlacement(GtkWindow* bar) {
  return std::make_unique<X11DockPlacement>(bar);
}
