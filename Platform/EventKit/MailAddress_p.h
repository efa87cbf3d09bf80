#pragma once

#include <string>
#include <string_view>

/// A mail address as it is compared: in lower case, without "mailto:" and blanks around it.
std::string mailAddress(std::string_view written);
