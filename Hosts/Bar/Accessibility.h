#pragma once

#include <memory>
#include <string>

#include "Hosts/Accessibility/AccessibleBar.h"
#include "Platform/Foundation/Settings/AccessibilityStatus.h"

/// Tells assistive technologies of the bar, from when the session has some.
class Accessibility {
 public:
  Accessibility();

  void setItem(const std::string& name, const std::string& description);

 private:
  void load();

  std::string itemName_;
  std::string itemDescription_;
  std::unique_ptr<AccessibleBar> bar_;
  AccessibilityStatus status_;
};
