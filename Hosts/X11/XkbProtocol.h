#pragma once

// A structure's member there has a name that C++ keeps for itself.
// NOLINTNEXTLINE(clang-diagnostic-keyword-macro): that is the purpose.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit
