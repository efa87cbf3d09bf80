#pragma once

#include <memory>

/// Gives back what a C library has handed over, by the library's own function for it.
template <auto Function>
struct Deleter {
  template <typename Type>
  void operator()(Type* object) const {
    Function(object);
  }
};

/// Owns such an object: `LibraryHandle<GVariant, g_variant_unref>`.
template <typename Type, auto Function>
using LibraryHandle = std::unique_ptr<Type, Deleter<Function>>;
