#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Tests/Support/ChildProcess.h"

constexpr const char* Timectl = VELMORA_BINARY_DIR "/bin/velmora-timectl";

/// Runs the real program to its end, in this test's own environment.
inline FinishedProcess timectl(std::vector<std::string> arguments,
                               const Environment& environment = {}) {
  arguments.insert(arguments.begin(), Timectl);
  return runToEnd(arguments, environment);
}

/// What the program answers to a call that it must understand.
inline nlohmann::json answer(const std::vector<std::string>& arguments) {
  const auto result = timectl(arguments);
  EXPECT_EQ(result.status, 0) << result.errors;
  return nlohmann::json::parse(result.output);
}
