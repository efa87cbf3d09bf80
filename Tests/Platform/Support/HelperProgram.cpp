// A program that the tests start beside themselves:
//
//   platform_test_helper write FILE WRITER    sets the writer's key in a preference file, over and
//                                             over, until it is ended

#include <cstdio>
#include <string>
#include <vector>

#include "Platform/Foundation/Settings/PreferenceFile.h"

namespace {

/// Long enough to take several writes to the disk, and equal throughout.
PropertyList wholeValue(const std::string& writer, int64_t number) {
  const std::string text = writer + "-" + std::to_string(number);
  return PropertyList::Array(3000, PropertyList(text));
}

int writeForEver(const std::string& file, const std::string& writer) {
  PreferenceFile preferences(file);
  for (int64_t number = 0;; ++number) {
    if (!preferences.apply({{writer, wholeValue(writer, number)}})) return 1;
    std::puts("written");
    std::fflush(stdout);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() == 3 && arguments[0] == "write") {
    return writeForEver(arguments[1], arguments[2]);
  }
  return 2;
}
