#include "Tests/Platform/Support/Files.h"

#include <stdlib.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "Tests/Support/TestEnvironment.h"

namespace fs = std::filesystem;

fs::path freshFolder() {
  static int count = 0;
  const fs::path folder = testFolder() / ("folder-" + std::to_string(++count));
  fs::create_directory(folder);
  return folder;
}

void writeFile(const fs::path& file, std::string_view bytes) {
  fs::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary);
  if (!(stream << bytes)) throw std::runtime_error(file.string() + " cannot be written");
}

std::string readFile(const fs::path& file) {
  std::ostringstream bytes;
  bytes << std::ifstream(file, std::ios::binary).rdbuf();
  return bytes.str();
}

fs::path fixture(std::string_view name) {
  return fs::path(PLATFORM_TEST_FOLDER) / "Fixtures" / name;
}

NSDate utc(std::string_view text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0;
  double second = 0;
  const int read = std::sscanf(std::string(text).c_str(), "%d-%d-%d %d:%d:%lf", &year, &month, &day,
                               &hour, &minute, &second);
  if (read < 3) throw std::invalid_argument(std::string(text));
  const auto days = std::chrono::sys_days(std::chrono::year(year) / month / day);
  return NSDate::dateWithTimeIntervalSince1970(
      static_cast<double>(days.time_since_epoch().count()) * 86'400 + hour * 3600 + minute * 60 +
      second);
}

EnvironmentVariable::EnvironmentVariable(const std::string& name,
                                         const std::optional<std::string>& value) {
  value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
}
