#pragma once

// A structure's member there has a name that C++ keeps for itself.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit
