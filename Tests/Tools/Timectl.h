#pragma once

#include <string>
#include <vector>

#include "Tests/Support/ChildProcess.h"

/// Runs the real program to its end, in this test's own environment.
inline FinishedProcess timectl(std::vector<std::string> arguments,
                               const Environment& environment = {}) {
  arguments.insert(arguments.begin(), VELMORA_BINARY_DIR "/bin/velmora-timectl");
  return runToEnd(arguments, environment);
}
