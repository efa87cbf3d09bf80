// Calls and what the program says to them; see Support/Transcript.h.

#include "Tests/Support/Transcript.h"
#include "Tests/Tools/Timectl.h"

namespace {

class Transcript : public testing::TestWithParam<std::string> {};

TEST_P(Transcript, IsWhatTheProgramSays) {
  expectTranscript(VELMORA_SOURCE_DIR "/Tests/Tools/Transcripts/" + GetParam() + ".txt", Timectl);
}

INSTANTIATE_TEST_SUITE_P(, Transcript,
                         testing::Values("formats", "fuzzy", "instants", "misuse", "settings"),
                         [](const auto& tested) { return tested.param; });

TEST(Misuse, OfWhatNoTranscriptHolds) {
  const auto write = [](size_t depth) {
    return timectl({"defaults", "write", "Key", std::string(depth, '[') + std::string(depth, ']')});
  };
  expectComplaint(write(60'000), Timectl, 2, "nested");
  expectComplaint(write(64), Timectl, 2, "63 deep");
  const std::string zone = "Europe/Paris\nUTC";
  expectComplaint(timectl({"format", "--time", "0", "--zone", zone, "--elements", "[]"}), Timectl,
                  2, "there is no time zone");
  expectComplaint(runToEnd({"sh", "-c", std::string(Timectl) + " --version >/dev/full"}), Timectl,
                  1, "the answer could not be written\n");
}

}  // namespace
