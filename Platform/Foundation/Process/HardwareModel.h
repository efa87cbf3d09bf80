#pragma once

#include <string>

/// The machine's model as its firmware names it; empty if it does not.
std::string hardwareModel();
