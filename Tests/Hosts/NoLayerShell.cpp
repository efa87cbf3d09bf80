// Loaded ahead of the library of that name, this makes any Wayland compositor one without
// layer-shell.
extern "C" int gtk_layer_is_supported() { return 0; }
