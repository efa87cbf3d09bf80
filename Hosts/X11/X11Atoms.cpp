#include "Hosts/X11/X11Atoms.h"

#include <cstdlib>
#include <memory>
#include <string>

#include "Platform/Foundation/LibraryHandle.h"

X11Atoms::X11Atoms(xcb_connection_t* connection, int screenNumber) {
  const std::string screen = std::to_string(screenNumber);
  // In the order of `X11Atom`.
  const std::array<std::string, static_cast<size_t>(X11Atom::Count)> names = {
      "MANAGER",
      "_NET_WM_CM_S" + screen,
      "_NET_WM_DESKTOP",
      "_NET_WM_NAME",
      "_NET_WM_PID",
      "_NET_WM_PING",
      "_NET_WM_STATE",
      "_NET_WM_STATE_ABOVE",
      "_NET_WM_STATE_SKIP_PAGER",
      "_NET_WM_STATE_SKIP_TASKBAR",
      "_NET_WM_STATE_STICKY",
      "_NET_WM_STRUT",
      "_NET_WM_STRUT_PARTIAL",
      "_NET_WM_WINDOW_TYPE",
      "_NET_WM_WINDOW_TYPE_DOCK",
      "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
      "UTF8_STRING",
      "WM_DELETE_WINDOW",
      "WM_PROTOCOLS",
      "_XSETTINGS_S" + screen,
      "_XSETTINGS_SETTINGS",
  };
  std::array<xcb_intern_atom_cookie_t, names.size()> cookies = {};
  for (size_t index = 0; index < names.size(); ++index) {
    cookies[index] = xcb_intern_atom(connection, 0, static_cast<uint16_t>(names[index].size()),
                                     names[index].data());
  }
  for (size_t index = 0; index < names.size(); ++index) {
    const LibraryHandle<xcb_intern_atom_reply_t, std::free> reply(
        xcb_intern_atom_reply(connection, cookies[index], nullptr));
    if (reply) atoms_[index] = reply->atom;
  }
}
