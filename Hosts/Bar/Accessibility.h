#pragma once

#include <memory>
#include <string>

#include "Hosts/Accessibility/AccessibleBar.h"
#include "Platform/Foundation/AccessibilityStatus.h"

/// Tells assistive technologies of the bar, from when the session has some.
class Accessibility {
 public:
  Accessibility();

  void setItemName(const std::string& name);

 private:
  void load();

  std::string itemName_;
  std::unique_ptr<AccessibleBar> bar_;
  AccessibilityStatus status_;
};
