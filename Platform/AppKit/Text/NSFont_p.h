#pragma once

// For the platform's own sources only.

#include <string>

/// The family of the interface font. From any thread; it asks what fonts there are.
const std::string& systemFontFamily();
