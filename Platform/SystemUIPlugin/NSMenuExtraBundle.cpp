#include "Platform/SystemUIPlugin/NSMenuExtraBundle.h"

#include <dlfcn.h>

#include <stdexcept>
#include <string>

namespace fs = std::filesystem;

NSMenuExtraBundle::NSMenuExtraBundle(const fs::path& path)
    : bundle_(NSBundle::bundleWithPath(path.string())) {
  const fs::path absolute = fs::absolute(path);
  const fs::path object = absolute / (absolute.stem().string() + ".so");
  name_ = object.string();
  void* library = dlopen(name_.c_str(), RTLD_LAZY | RTLD_LOCAL);
  if (library == nullptr) throw std::runtime_error(std::string("no bundle: ") + dlerror());
  makePrincipalClass_ =
      reinterpret_cast<NSPrincipalClassFunction>(dlsym(library, NSPrincipalClassSymbol));
  if (makePrincipalClass_ == nullptr) {
    throw std::runtime_error("no bundle: " + name_ + " has no " + NSPrincipalClassSymbol);
  }
}

std::shared_ptr<NSMenuExtra> NSMenuExtraBundle::makeExtra(NSMenuExtraSlot& slot) const {
  std::shared_ptr<NSMenuExtra> extra;
  makePrincipalClass_(extra);
  if (!extra) throw std::runtime_error("no bundle: " + name_ + " makes no extra");
  extra->init(slot, bundle_);
  return extra;
}
