#include "Tests/Hosts/AccessibleNames.h"

#include <deque>
#include <regex>

#include "Tests/Support/ChildProcess.h"

namespace {

/// Everything in double quotes in the answer to a call; nothing if there is no answer, for objects
/// come and go.
std::vector<std::string> call(const std::string& bus, const std::string& owner,
                              const std::string& path, const std::string& method,
                              const std::vector<std::string>& arguments = {}) {
  std::vector<std::string> command{"dbus-send",       bus,  "--print-reply",
                                   "--dest=" + owner, path, method};
  command.insert(command.end(), arguments.begin(), arguments.end());
  const std::string answer = runToEnd(command).output;
  const std::regex quoted("\"([^\"]*)\"");
  std::vector<std::string> texts;
  for (std::sregex_iterator match(answer.begin(), answer.end(), quoted), end; match != end; ++match)
    texts.push_back((*match)[1]);
  return texts;
}

}  // namespace

std::vector<std::string> accessibleNames() {
  // Accessible objects have a bus of their own, whose address the session bus knows.
  const auto address =
      call("--session", "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress");
  if (address.empty()) return {};
  const std::string bus = "--bus=" + address.front();
  std::vector<std::string> names;
  std::deque<std::pair<std::string, std::string>> objects = {
      {"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"}};
  for (; !objects.empty(); objects.pop_front()) {
    const auto [owner, path] = objects.front();
    for (const std::string& name : call(bus, owner, path, "org.freedesktop.DBus.Properties.Get",
                                        {"string:org.a11y.atspi.Accessible", "string:Name"})) {
      if (!name.empty()) names.push_back(name);
    }
    const auto children = call(bus, owner, path, "org.a11y.atspi.Accessible.GetChildren");
    for (size_t index = 0; index + 1 < children.size(); index += 2)
      objects.emplace_back(children[index], children[index + 1]);
  }
  return names;
}

void setAccessibilityEnabled(bool enabled) {
  call("--session", "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties.Set",
       {"string:org.a11y.Status", "string:IsEnabled",
        std::string("variant:boolean:") + (enabled ? "true" : "false")});
}
