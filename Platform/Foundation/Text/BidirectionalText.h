#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

/// A stretch of a line that is read in one direction; positions count bytes.
struct DirectionalRun {
  size_t start = 0;
  size_t end = 0;
  bool isRightToLeft = false;
};

/// A line of UTF-8 text, in the order in which it is shown (Unicode Standard Annex #9).
struct DirectionalLine {
  bool isRightToLeft = false;        ///< As its first strong letter; left to right without one.
  std::vector<DirectionalRun> runs;  ///< From left to right. Together they are all of the text.
};

DirectionalLine directionalLine(std::string_view text);
