#include "Hosts/X11/X11ScaleSetting.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "Hosts/X11/XSettings.h"

namespace {

constexpr double MaximumScale = 8;

/// The text resolution at which a point is one pixel.
constexpr double PlainDotsPerInch = 96;

/// 0 if the text begins with no number.
double numberIn(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return std::isfinite(number) ? number : 0;
}

/// Desktops give the resolution that follows from a monitor's size, 101 or 109. Following that
/// exactly would put every edge between two pixels.
double usableScale(double scale) {
  constexpr double Steps = 4;
  return std::clamp(std::round(scale * Steps) / Steps, 1.0, MaximumScale);
}

}  // namespace

X11ScaleSetting::X11ScaleSetting(X11Connection& connection, std::function<void()> onChange)
    : X11EventHandler(connection), onChange_(std::move(onChange)) {}

double X11ScaleSetting::read() {
  const char* wanted = std::getenv("GDK_SCALE");
  double scale = wanted != nullptr ? numberIn(wanted) : 0;
  if (scale < 1) scale = scaleOfSettingsManager();
  if (scale <= 0) scale = scaleOfResources();
  return usableScale(scale);
}

/// 0 if there is none or if it does not tell.
double X11ScaleSetting::scaleOfSettingsManager() {
  X11Connection& x11 = connection();
  const auto owner =
      x11.waitFor(xcb_get_selection_owner_reply,
                  xcb_get_selection_owner(x11.get(), x11.atom(X11Atom::XSettingsSelection)));
  manager_ = owner ? owner->owner : xcb_window_t{XCB_WINDOW_NONE};
  if (manager_ == XCB_WINDOW_NONE) return 0;
  const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  // It may go just now: then the server refuses this, and the property is empty.
  const auto watched =
      xcb_change_window_attributes_checked(x11.get(), manager_, XCB_CW_EVENT_MASK, &mask);
  const xcb_atom_t name = x11.atom(X11Atom::XSettingsSettings);
  const auto settings = readXSettings(x11.property(manager_, name, name));
  xcb_discard_reply(x11.get(), watched.sequence);
  const auto valueOf = [&](const char* key) {
    const auto found = settings.find(key);
    return found != settings.end() ? found->second : 0;
  };
  constexpr double UnitsOfResolution = 1024;
  // The resolution contains the factor, and larger text besides.
  return std::max<double>(valueOf("Gdk/WindowScalingFactor"),
                          valueOf("Xft/DPI") / UnitsOfResolution / PlainDotsPerInch);
}

double X11ScaleSetting::scaleOfResources() const {
  const auto bytes =
      connection().property(connection().root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING);
  const std::string resources(bytes.begin(), bytes.end());
  constexpr std::string_view Name = "Xft.dpi:";
  for (std::string_view rest = resources; !rest.empty();) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    if (line.starts_with(Name)) return numberIn(line.substr(Name.size())) / PlainDotsPerInch;
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
  }
  return 0;
}

void X11ScaleSetting::handleEvent(const xcb_generic_event_t& event) {
  switch (eventType(event)) {
    case XCB_CLIENT_MESSAGE: {
      const auto& message = eventAs<xcb_client_message_event_t>(event);
      if (message.type == connection().atom(X11Atom::Manager) &&
          message.data.data32[1] == connection().atom(X11Atom::XSettingsSelection)) {
        onChange_();
      }
      break;
    }
    case XCB_PROPERTY_NOTIFY: {
      const auto& change = eventAs<xcb_property_notify_event_t>(event);
      const bool isAboutResources =
          change.window == connection().root() && change.atom == XCB_ATOM_RESOURCE_MANAGER;
      if (isAboutResources || change.window == manager_) onChange_();
      break;
    }
    case XCB_DESTROY_NOTIFY:
      if (eventAs<xcb_destroy_notify_event_t>(event).window == manager_) onChange_();
      break;
    default:
      break;
  }
}
