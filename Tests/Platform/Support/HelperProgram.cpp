// A program that the tests start beside themselves:
//
//   platform_test_helper write FILE WRITER    sets the writer's key in a preference file, over and
//                                             over, until it is ended
//   platform_test_helper listen NAME          prints "ready", then a line for each notification of
//                                             that name: its texts as key=value, in order
//   platform_test_helper post NAME KEY VALUE  posts one, with a number beside the text

#include <cstdio>
#include <string>
#include <vector>

#include "Platform/Foundation/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/NSRunLoop.h"
#include "Platform/Foundation/PreferenceFile.h"

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

int listen(const std::string& name) {
  const auto observation = NSDistributedNotificationCenter::defaultCenter().addObserver(
      name, [](const NSNotification& notification) {
        for (const auto& [key, value] : notification.userInfo) {
          std::printf("%s=%s;", key.c_str(), value.string() ? value.string()->c_str() : "?");
        }
        std::puts("");
        std::fflush(stdout);
      });
  std::puts("ready");
  std::fflush(stdout);
  NSRunLoop::mainRunLoop().run();
  return 0;
}

int post(const std::string& name, const std::string& key, const std::string& value) {
  NSDistributedNotificationCenter::defaultCenter().postNotification(name,
                                                                    {{key, value}, {"number", 1}});
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() == 3 && arguments[0] == "write") {
    return writeForEver(arguments[1], arguments[2]);
  }
  if (arguments.size() == 2 && arguments[0] == "listen") return listen(arguments[1]);
  if (arguments.size() == 4 && arguments[0] == "post") {
    return post(arguments[1], arguments[2], arguments[3]);
  }
  return 2;
}
