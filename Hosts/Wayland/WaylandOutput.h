#pragma once

#include <wayland-client.h>

#include <cstdint>
#include <functional>
#include <string>

#include <xdg-output-unstable-v1-client.h>
#include "Hosts/Display/Display.h"
#include "Hosts/Wayland/WaylandObject.h"

/// One output of the compositor.
class WaylandOutput {
 public:
  /// `onChange` is called when the output has told all about itself, and after each later change.
  WaylandOutput(wl_registry* registry, uint32_t globalName, uint32_t version,
                std::function<void()> onChange);
  WaylandOutput(const WaylandOutput&) = delete;
  WaylandOutput& operator=(const WaylandOutput&) = delete;

  /// Asks for the output's place in the desktop and for its name, where `wl_output` is too old to
  /// tell it.
  void describeWith(zxdg_output_manager_v1* manager);

  wl_output* output() const { return output_.get(); }
  uint32_t globalName() const { return globalName_; }

  /// The scale is the true one, also where the compositor tells clients a rounded one.
  Monitor monitor() const;
  /// The scale at which a client without fractional scales draws.
  int wholeScale() const { return scale_; }

 private:
  void geometry(wl_output*, int32_t x, int32_t y, int32_t, int32_t, int32_t, const char*,
                const char*, int32_t transform);
  void mode(wl_output*, uint32_t flags, int32_t width, int32_t height, int32_t);
  void scale(wl_output*, int32_t factor) { scale_ = factor; }
  void done(wl_output*) { onChange_(); }
  void name(wl_output*, const char* name) { name_ = name; }

  void logicalPosition(zxdg_output_v1*, int32_t x, int32_t y);
  void logicalSize(zxdg_output_v1*, int32_t width, int32_t height);
  void logicalDone(zxdg_output_v1*) { onChange_(); }
  void logicalName(zxdg_output_v1*, const char* name) { name_ = name; }

  WaylandObject<wl_output> output_;
  WaylandObject<zxdg_output_v1> logical_;
  uint32_t globalName_;
  std::function<void()> onChange_;
  std::string name_;
  NSPoint position_;
  NSSize logicalSize_;
  NSSize pixels_;  ///< As the output is turned.
  bool isTurned_ = false;
  int scale_ = 1;
};
