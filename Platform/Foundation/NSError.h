#pragma once

#include <cstdint>
#include <string>

/// What went wrong, as a value: who says so, its number there, and words for a person.
struct NSError {
  std::string domain;
  int64_t code = 0;
  std::string localizedDescription;

  friend bool operator==(const NSError&, const NSError&) = default;
};
