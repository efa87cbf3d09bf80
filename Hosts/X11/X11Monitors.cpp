#include "Hosts/X11/X11Monitors.h"

#include <xcb/randr.h>

#include <cmath>
#include <optional>

PixelRect pixelFrame(const Monitor& monitor) {
  const auto pixels = [&](double points) {
    return static_cast<int>(std::lround(points * monitor.scale));
  };
  const NSRect& frame = monitor.frame;
  return {pixels(frame.origin.x), pixels(frame.origin.y), pixels(frame.size.width),
          pixels(frame.size.height)};
}

X11Monitors::X11Monitors(X11Connection& connection, std::function<void()> onChange)
    : X11EventHandler(connection), onChange_(std::move(onChange)), hasRandr_(hasRandrMonitors()) {
  if (!hasRandr_) return;
  xcb_randr_select_input(connection.get(), connection.root(),
                         XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                             XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
}

bool X11Monitors::hasRandrMonitors() {
  const xcb_query_extension_reply_t* extension =
      xcb_get_extension_data(connection().get(), &xcb_randr_id);
  if (extension == nullptr || extension->present == 0) return false;
  firstRandrEvent_ = extension->first_event;
  const auto version =
      connection().waitFor(xcb_randr_query_version_reply,
                           xcb_randr_query_version(connection().get(), XCB_RANDR_MAJOR_VERSION,
                                                   XCB_RANDR_MINOR_VERSION));
  return version && (version->major_version > 1 || version->minor_version >= 5);
}

void X11Monitors::read() { known_ = hasRandr_ ? readRandrMonitors() : std::vector{wholeDesktop()}; }

std::vector<X11Monitor> X11Monitors::readRandrMonitors() {
  xcb_connection_t* const x11 = connection().get();
  const auto answer = connection().waitFor(xcb_randr_get_monitors_reply,
                                           xcb_randr_get_monitors(x11, connection().root(), 1));
  if (!answer) return {};
  std::vector<X11Monitor> monitors;
  std::vector<xcb_get_atom_name_cookie_t> names;
  for (auto next = xcb_randr_get_monitors_monitors_iterator(answer.get()); next.rem > 0;
       xcb_randr_monitor_info_next(&next)) {
    const xcb_randr_monitor_info_t& told = *next.data;
    names.push_back(xcb_get_atom_name(x11, told.name));
    monitors.push_back({.name = {},
                        .frame = {told.x, told.y, told.width, told.height},
                        .isPrimary = told.primary != 0});
  }
  for (size_t index = 0; index < monitors.size(); ++index) {
    const auto name = connection().waitFor(xcb_get_atom_name_reply, names[index]);
    if (!name) continue;
    monitors[index].name.assign(xcb_get_atom_name_name(name.get()),
                                static_cast<size_t>(xcb_get_atom_name_name_length(name.get())));
  }
  return monitors;
}

X11Monitor X11Monitors::wholeDesktop() {
  const auto geometry = connection().waitFor(
      xcb_get_geometry_reply, xcb_get_geometry(connection().get(), connection().root()));
  X11Monitor whole{.name = "screen", .frame = {}, .isPrimary = true};
  if (geometry) whole.frame = {0, 0, geometry->width, geometry->height};
  return whole;
}

void X11Monitors::handleEvent(const xcb_generic_event_t& event) {
  const uint8_t type = eventType(event);
  // RandR tells a monitor that was set by hand only by another report of the desktop's size.
  const bool isAboutDesktop =
      type == XCB_CONFIGURE_NOTIFY &&
      eventAs<xcb_configure_notify_event_t>(event).window == connection().root();
  const bool isAboutOutput =
      hasRandr_ && (type == firstRandrEvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                    type == firstRandrEvent_ + XCB_RANDR_NOTIFY);
  if (isAboutDesktop || isAboutOutput) onChange_();
}
