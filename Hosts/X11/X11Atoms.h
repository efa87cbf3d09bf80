#pragma once

#include <xcb/xcb.h>

#include <array>

/// The words that the bar and the rest of the desktop have in common: ICCCM, EWMH and XSETTINGS.
enum class X11Atom {
  Manager,
  NetWmCompositorSelection,
  NetWmDesktop,
  NetWmName,
  NetWmPid,
  NetWmPing,
  NetWmState,
  NetWmStateAbove,
  NetWmStateSkipPager,
  NetWmStateSkipTaskbar,
  NetWmStateSticky,
  NetWmStrut,
  NetWmStrutPartial,
  NetWmWindowType,
  NetWmWindowTypeDock,
  NetWmWindowTypeDropdownMenu,
  Utf8String,
  WmDeleteWindow,
  WmProtocols,
  XSettingsSelection,
  XSettingsSettings,
  Count
};

/// The server's numbers for them. Zero for a word that it did not tell.
class X11Atoms {
 public:
  /// Asks for all of them at once. Selections are those of the screen with this number.
  X11Atoms(xcb_connection_t* connection, int screenNumber);

  xcb_atom_t operator[](X11Atom atom) const { return atoms_[static_cast<size_t>(atom)]; }

 private:
  std::array<xcb_atom_t, static_cast<size_t>(X11Atom::Count)> atoms_{};
};
