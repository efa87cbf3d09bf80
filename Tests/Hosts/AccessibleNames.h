#pragma once

#include <string>
#include <vector>

/// The names of everything that programs show to assistive technologies on this session bus, each
/// parent before its children. Nameless objects are left out.
std::vector<std::string> accessibleNames();

/// Turns the session's assistive technologies on or off, as a screen reader does.
void setAccessibilityEnabled(bool enabled);
