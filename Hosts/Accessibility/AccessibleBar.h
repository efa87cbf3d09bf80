#pragma once

#include <memory>
#include <string>

/// What assistive technologies are told of a bar: that it is there, with one item. It is a plug-in
/// of the bar's program, because nothing of it is wanted in a session without them.
class AccessibleBar {
 public:
  virtual ~AccessibleBar() = default;

  virtual void setItem(const std::string& name, const std::string& description) = 0;
};

/// The plug-in's one function. It takes the process's own place in the session's tree, so it is
/// called once.
using MakeAccessibleBarFunction = void (*)(std::unique_ptr<AccessibleBar>& bar);
constexpr const char* MakeAccessibleBarSymbol = "VelmoraMakeAccessibleBar";
