#include <gtk-layer-shell.h>

#include "Hosts/Gtk/BarPlacement.h"
#include "Platform/SystemUIPlugin/NSMenuExtra.h"

namespace {

class LayerShellPlacement : public BarPlacement {
 public:
  explicit LayerShellPlacement(GtkWindow* bar) : bar_(bar) {
    gtk_layer_init_for_window(bar_);
    gtk_layer_set_namespace(bar_, "velmora-menubar");
    gtk_layer_set_layer(bar_, GTK_LAYER_SHELL_LAYER_TOP);
    for (const auto edge :
         {GTK_LAYER_SHELL_EDGE_TOP, GTK_LAYER_SHELL_EDGE_LEFT, GTK_LAYER_SHELL_EDGE_RIGHT}) {
      gtk_layer_set_anchor(bar_, edge, TRUE);
    }
    gtk_layer_set_exclusive_zone(bar_, static_cast<int>(NSMenuExtra::Height));
    gtk_layer_set_keyboard_mode(bar_, GTK_LAYER_SHELL_KEYBOARD_MODE_NONE);
  }

  void moveTo(GdkMonitor* monitor) override {
    // Between its anchors the compositor stretches the bar itself; a new monitor needs a new
    // surface, which the library makes.
    if (gtk_layer_get_monitor(bar_) != monitor) gtk_layer_set_monitor(bar_, monitor);
  }

 private:
  GtkWindow* bar_;
};

}  // namespace

std::unique_ptr<BarPlacement> makeLayerShellPlacement(GtkWindow* bar) {
  return std::make_unique<LayerShellPlacement>(bar);
}
