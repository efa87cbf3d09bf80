#pragma once

#include <string>

/// A fresh random UUID as 36 upper-case characters.
std::string NSUUIDString();
