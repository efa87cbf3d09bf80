#pragma once

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// The rows of a table of cases beside a test. `file` is below `Tests/`. Tabs, one or more, stand
/// between columns, `""` is an empty text, a heading in brackets begins a section and '#' a note.
/// Throws where there is none.
std::vector<std::vector<std::string>> rowsOfTable(std::string_view file, std::string_view section);

/// The same, each row of just so many columns.
template <size_t Columns>
std::vector<std::array<std::string, Columns>> tableRows(std::string_view file,
                                                        std::string_view section) {
  std::vector<std::array<std::string, Columns>> rows;
  for (const auto& found : rowsOfTable(file, section)) {
    if (found.size() != Columns) throw std::runtime_error("not a row of its table: " + found[0]);
    std::ranges::copy(found, rows.emplace_back().begin());
  }
  return rows;
}
