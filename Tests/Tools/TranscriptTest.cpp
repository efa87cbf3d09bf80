// Calls and what the program says to them, to the letter, as the files in Transcripts tell:
//
//   $ ARGUMENTS   a call; what stands between two backquotes is one argument, blanks and all
//   ! 2 WORDS     it ends with status 2 and one line of complaint, which has these words
//   any other     its answer
//
// The calls of a file share their settings.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string_view>
#include <utility>

#include "Tests/Tools/Timectl.h"

namespace {

std::vector<std::string> argumentsOf(std::string_view text) {
  std::vector<std::string> arguments;
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

void expectComplaint(const FinishedProcess& result, int status, std::string_view words) {
  EXPECT_EQ(result.status, status);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
  EXPECT_TRUE(result.errors.starts_with("velmora-timectl: ")) << result.errors;
  EXPECT_TRUE(result.errors.ends_with('\n')) << result.errors;
  EXPECT_NE(result.errors.find(words), std::string::npos) << result.errors;
}

class Transcript : public testing::TestWithParam<const char*> {};

TEST_P(Transcript, IsWhatTheProgramSays) {
  std::ifstream file(std::string(VELMORA_SOURCE_DIR "/Tests/Tools/Transcripts/") + GetParam() +
                     ".txt");
  ASSERT_TRUE(file.is_open());
  std::string call;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.starts_with('#')) continue;
    SCOPED_TRACE(call + "\n" + line);
    if (line.starts_with('$')) {
      EXPECT_EQ(call, "") << "a call without an answer";
      call = line;
      continue;
    }
    const auto result = timectl(argumentsOf(std::exchange(call, "").substr(1)));
    if (line.starts_with('!')) {
      expectComplaint(result, line.at(2) - '0', line.substr(4));
    } else {
      EXPECT_EQ(result.status, 0);
      EXPECT_EQ(result.output, line + "\n");
      EXPECT_EQ(result.errors, "");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, Transcript,
                         testing::Values("formats", "fuzzy", "instants", "misuse", "settings"),
                         [](const auto& tested) { return tested.param; });

TEST(Misuse, OfWhatNoTranscriptHolds) {
  const auto write = [](size_t depth) {
    return timectl({"defaults", "write", "Key", std::string(depth, '[') + std::string(depth, ']')});
  };
  expectComplaint(write(60'000), 2, "nested");
  expectComplaint(write(64), 2, "63 deep");
  const std::string zone = "Europe/Paris\nUTC";
  expectComplaint(timectl({"format", "--time", "0", "--zone", zone, "--elements", "[]"}), 2,
                  "there is no time zone");
  const auto full =
      runToEnd({"sh", "-c", VELMORA_BINARY_DIR "/bin/velmora-timectl --version >/dev/full"});
  expectComplaint(full, 1, "the answer could not be written\n");
}

}  // namespace
