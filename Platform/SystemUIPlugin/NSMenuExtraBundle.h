#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "Platform/SystemUIPlugin/NSMenuExtra.h"

/// The one function that a bundle's shared object exports: makes its principal class, not yet
/// initialised, into `extra`.
using NSPrincipalClassFunction = void (*)(std::shared_ptr<NSMenuExtra>& extra);
constexpr const char* NSPrincipalClassSymbol = "NSMakePrincipalClass";

/// A loadable bundle: the folder `Name.bundle` with the shared object `Name.so`. Its code stays
/// loaded for the life of the process, since objects of its classes may.
class NSMenuExtraBundle {
 public:
  /// Throws `std::runtime_error` with the reason if it cannot be loaded.
  explicit NSMenuExtraBundle(const std::filesystem::path& path);

  /// Makes the extra and gives it its slot, which must outlive it. Throws `std::runtime_error` if
  /// the bundle makes none.
  std::shared_ptr<NSMenuExtra> makeExtra(NSMenuExtraSlot& slot) const;

 private:
  NSBundle bundle_;
  std::string name_;  ///< Of the shared object.
  NSPrincipalClassFunction makePrincipalClass_ = nullptr;
};
