#pragma once

#include <cstdint>
#include <string>

/// The calling thread's number in the system and its name, as both were when the thread first
/// asked: to ask the kernel again each time would cost more than what they are asked for.
struct NSThread {
  uint32_t number = 0;
  std::string name;

  static const NSThread& currentThread();
};
