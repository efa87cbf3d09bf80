#pragma once

#include <string>

/// The functions on the call stack from which this thread threw its last exception, one a line,
/// innermost first; empty if it has thrown none.
std::string callStackSymbolsOfException();
