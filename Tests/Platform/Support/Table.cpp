#include "Tests/Platform/Support/Table.h"

#include <filesystem>
#include <fstream>
#include <sstream>

std::vector<std::vector<std::string>> rowsOfTable(std::string_view file, std::string_view section) {
  std::ifstream table(std::filesystem::path(PLATFORM_TEST_FOLDER).parent_path() / file);
  const std::string heading = "[" + std::string(section) + "]";
  std::vector<std::vector<std::string>> rows;
  bool isInside = false;
  for (std::string line; std::getline(table, line);) {
    const bool isHeading = line.starts_with('[');
    if (isHeading) isInside = line == heading;
    if (!isInside || isHeading || line.empty() || line.starts_with('#')) continue;
    std::istringstream columns(line);
    std::vector<std::string>& row = rows.emplace_back();
    for (std::string column; std::getline(columns, column, '\t');) {
      if (!column.empty()) row.push_back(column == "\"\"" ? "" : column);
    }
  }
  if (rows.empty()) throw std::runtime_error(std::string(file) + " has no rows of " + heading);
  return rows;
}
