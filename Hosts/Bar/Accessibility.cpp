#include "Hosts/Bar/Accessibility.h"

#include <dlfcn.h>

#include "Platform/Foundation/Files/NSPathUtilities.h"
#include "Platform/Foundation/Process/NSLog.h"

Accessibility::Accessibility() : status_([this] { load(); }) {}

void Accessibility::setItem(const std::string& name, const std::string& description) {
  itemName_ = name;
  itemDescription_ = description;
  if (bar_) bar_->setItem(name, description);
}

void Accessibility::load() {
  const auto path = installationPrefix() / "lib" / "velmora5" / "VelmoraAccessibility.so";
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    NSLog(std::string("error: nothing for screen readers: ") + dlerror());
    return;
  }
  const auto make =
      reinterpret_cast<MakeAccessibleBarFunction>(dlsym(library, MakeAccessibleBarSymbol));
  if (make == nullptr) return;
  make(bar_);
  bar_->setItem(itemName_, itemDescription_);
}
