#pragma once

#include <wayland-client.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Hosts/Wayland/LayerShellProtocol.h"
#include "Hosts/Wayland/WaylandObject.h"
#include "Hosts/Wayland/WaylandOutput.h"
#include "Hosts/Wayland/WaylandSeat.h"
#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"

#include <fractional-scale-v1-client.h>
#include <viewporter-client.h>
#include <xdg-output-unstable-v1-client.h>

/// One connection to the compositor, with the globals that a bar uses.
///
/// Its events are read in the run loop while it is watched, and else when `readEvents` is called.
class WaylandConnection {
 public:
  /// Asks for the compositor's globals, without waiting. Null if there is no compositor.
  static std::unique_ptr<WaylandConnection> begin();
  /// Waits for them, and asks what they are.
  void learnGlobals();
  /// Waits for that. False if the compositor is of no use, or has gone.
  bool describeGlobals();
  WaylandConnection(const WaylandConnection&) = delete;
  WaylandConnection& operator=(const WaylandConnection&) = delete;
  ~WaylandConnection() = default;

  wl_compositor* compositor() const { return compositor_.get(); }
  wl_subcompositor* subcompositor() const { return subcompositor_.get(); }
  wl_shm* shm() const { return shm_.get(); }
  /// These are null where the compositor does not have them.
  zwlr_layer_shell_v1* layerShell() const { return layerShell_.get(); }
  wp_viewporter* viewporter() const { return viewporter_.get(); }
  wp_fractional_scale_manager_v1* fractionalScale() const { return fractionalScale_.get(); }

  const std::vector<std::unique_ptr<WaylandOutput>>& outputs() const { return outputs_; }
  /// Null if there is none.
  WaylandOutput* outputNamed(const std::string& name) const;
  /// Null without input devices.
  WaylandSeat* seat() const { return seat_.get(); }

  /// Called after events have been read, with each read.
  std::function<void()> onEvents;
  /// An output has come, gone or changed.
  std::function<void()> onOutputsChanged;
  /// The connection has ended, with the reason; called once.
  std::function<void(const std::string& reason)> onLost;

  bool isWatched() const { return static_cast<bool>(watch_); }
  void setWatched(bool watched);
  /// Serves what has arrived, without waiting.
  void readEvents();
  /// Sends what was asked for.
  void flush();
  /// Does so in the loop's next pass, together with what is asked for until then.
  void flushSoon() { flushAfter(0); }
  /// Waits for the answers to everything asked for so far.
  void roundTrip();

 private:
  explicit WaylandConnection(wl_display* display);
  void globalAdded(wl_registry* registry, uint32_t name, const char* interface, uint32_t version);
  void globalRemoved(wl_registry* registry, uint32_t name);
  void makeSeat();
  void flushAfter(int64_t pause);
  void lose();

  LibraryHandle<wl_display, wl_display_disconnect> display_;
  WaylandObject<wl_registry> registry_;
  WaylandObject<wl_compositor> compositor_;
  WaylandObject<wl_subcompositor> subcompositor_;
  WaylandObject<wl_shm> shm_;
  WaylandObject<zwlr_layer_shell_v1> layerShell_;
  WaylandObject<wp_viewporter> viewporter_;
  WaylandObject<wp_fractional_scale_manager_v1> fractionalScale_;
  WaylandObject<zxdg_output_manager_v1> outputManager_;
  std::vector<std::unique_ptr<WaylandOutput>> outputs_;
  struct SeatGlobal {
    uint32_t name = 0;
    uint32_t version = 0;
  };
  std::optional<SeatGlobal> seatGlobal_;
  std::unique_ptr<WaylandSeat> seat_;
  NSRunLoop::Watch watch_;
  NSRunLoop::Timer flushing_;
  bool isLost_ = false;
};
