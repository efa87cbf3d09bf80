#pragma once

// The protocol has an argument of the name "namespace", which C++ keeps for itself.
// NOLINTNEXTLINE(clang-diagnostic-keyword-macro): that is the purpose.
#define namespace layerNamespace
#include <wlr-layer-shell-unstable-v1-client.h>
#undef namespace
