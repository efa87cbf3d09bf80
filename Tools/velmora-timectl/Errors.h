#pragma once

#include <stdexcept>

/// The arguments cannot be used: status 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What was asked for does not exist or cannot be done: status 1.
struct CommandFailure : std::runtime_error {
  using std::runtime_error::runtime_error;
};
