#include "Tests/Support/Transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <utility>

namespace {

std::vector<std::string> commandOf(const std::string& program, std::string_view text) {
  std::vector<std::string> arguments{program};
  bool isQuoted = false;
  bool isInside = false;
  for (const char letter : text) {
    if (letter == ' ' && !isQuoted) {
      isInside = false;
      continue;
    }
    if (!std::exchange(isInside, true)) arguments.emplace_back();
    if (letter == '`') {
      isQuoted = !isQuoted;
    } else {
      arguments.back() += letter;
    }
  }
  return arguments;
}

}  // namespace

void expectComplaint(const FinishedProcess& result, const std::filesystem::path& program,
                     int status, std::string_view words) {
  EXPECT_EQ(result.status, status);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
  EXPECT_TRUE(result.errors.starts_with(program.filename().string() + ": ")) << result.errors;
  EXPECT_TRUE(result.errors.ends_with('\n')) << result.errors;
  EXPECT_NE(result.errors.find(words), std::string::npos) << result.errors;
}

void expectTranscript(const std::filesystem::path& file, const std::filesystem::path& program,
                      const Environment& environment) {
  std::ifstream stream(file);
  ASSERT_TRUE(stream.is_open()) << file;
  std::string call;
  for (std::string line; std::getline(stream, line);) {
    if (line.empty() || line.starts_with('#')) continue;
    SCOPED_TRACE(call + "\n" + line);
    if (line.starts_with('$')) {
      EXPECT_EQ(call, "") << "a call without an answer";
      call = line;
      continue;
    }
    const auto command = commandOf(program, std::exchange(call, "").substr(1));
    const auto result = runToEnd(command, environment);
    if (line.starts_with('!')) {
      expectComplaint(result, program, line.at(2) - '0', line.substr(4));
    } else {
      EXPECT_EQ(result.status, 0);
      EXPECT_EQ(result.output, line + "\n");
      EXPECT_EQ(result.errors, "");
    }
  }
  EXPECT_EQ(call, "") << "a call without an answer";
}
