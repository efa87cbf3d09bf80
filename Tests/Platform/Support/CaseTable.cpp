#include "Tests/Platform/Support/CaseTable.h"

#include <filesystem>
#include <fstream>

std::vector<std::vector<std::string>> fieldsOfCases(const std::string& file,
                                                    const std::string& section) {
  std::ifstream table(std::filesystem::path(PLATFORM_TEST_FOLDER).parent_path() / file);
  std::vector<std::vector<std::string>> cases;
  std::string heading;
  for (std::string line; std::getline(table, line);) {
    if (line.empty() || line.starts_with('#')) continue;
    if (line.starts_with('[')) {
      heading = line.substr(1, line.size() - 2);
    } else if (heading == section) {
      for (std::string& field : cases.emplace_back(componentsSeparatedByString(line, "|"))) {
        field.erase(0, field.find_first_not_of(' '));
        field.erase(field.find_last_not_of(' ') + 1);
      }
    }
  }
  if (cases.empty()) throw std::invalid_argument(file + " has no case of [" + section + "]");
  return cases;
}
