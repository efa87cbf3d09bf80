#pragma once

#include <gio/gio.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Foundation/NSGeometry.h"

/// Turns the session's assistive technologies on or off, as a screen reader does.
void setAccessibilityEnabled(bool enabled);

/// What programs show to assistive technologies on this session bus, as a screen reader gets it.
class AccessibleDesktop {
 public:
  AccessibleDesktop();
  AccessibleDesktop(const AccessibleDesktop&) = delete;
  AccessibleDesktop& operator=(const AccessibleDesktop&) = delete;
  ~AccessibleDesktop();

  /// A line for each object, two spaces deeper than its parent's: role, "name", what can be done
  /// with it and the states that set it apart. Without the programs themselves.
  std::string tree() const;
  /// The line of the object of that name; empty if there is none. What is in it is not asked for.
  std::string line(const std::string& name) const;

  /// Does an action of the object of that name. False if there is none.
  bool perform(const std::string& name, const std::string& action) const;
  /// Where the object of that name is on the screen, in pixels.
  NSRect place(const std::string& name) const;

  /// Notices every event from now on.
  void listen();
  /// Those so far: "focused 1 Row 2", "accessible-name 0 Row 2", "add 3 Row 2" for its fourth
  /// child.
  const std::vector<std::string>& heard() const;

 private:
  struct Reference {
    std::string owner;
    std::string path;
  };
  struct Unreference {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
    void operator()(GDBusConnection* bus) const { g_object_unref(bus); }
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
  };
  using Answer = std::unique_ptr<GVariant, Unreference>;

  /// The first value of the answer. Null where there is none, the object has gone, or cannot do
  /// this.
  Answer call(const Reference& object, const char* interface, const char* method,
              GVariant* arguments = nullptr) const;
  std::string name(const Reference& object) const;
  std::string lineOf(const Reference& object) const;
  std::vector<std::string> actions(const Reference& object) const;
  std::vector<Reference> children(const Reference& object) const;
  void addLines(const Reference& object, const std::string& indent, std::string& lines) const;
  std::optional<Reference> find(const Reference& root, const std::string& name) const;

  std::unique_ptr<GMainContext, Unreference> context_{g_main_context_new()};
  std::unique_ptr<GDBusConnection, Unreference> bus_;
  std::vector<std::string> heard_;
};
