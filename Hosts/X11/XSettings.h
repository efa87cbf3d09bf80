#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>

/// The whole numbers among a desktop's settings, from the property in which its settings manager
/// publishes them (freedesktop.org's XSETTINGS protocol 0.5). Of a damaged property, those before
/// the damage.
std::map<std::string, int32_t> readXSettings(std::span<const uint8_t> property);
