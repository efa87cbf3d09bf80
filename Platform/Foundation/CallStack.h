#pragma once

#include <string>

/// The functions on the present call stack, one a line, innermost first.
std::string callStackSymbols();
