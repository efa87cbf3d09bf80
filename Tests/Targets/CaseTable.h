#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "Platform/Foundation/Text/NSString.h"
#include "Tests/Platform/Support/Files.h"

/// A field of a case: a text, in which "␣" is a blank that counts; a list of them, between blanks;
/// a moment in UTC, "2026-11-21 15:04:05"; or a number or a truth value, "true" or "false".
template <typename Value>
Value valueOfField(const std::string& field) {
  if constexpr (std::is_same_v<Value, std::string>) {
    return stringByReplacingOccurrences(field, "␣", " ");
  } else if constexpr (std::is_same_v<Value, std::vector<std::string>>) {
    std::vector<std::string> list;
    std::istringstream words(field);
    for (std::string word; words >> word;)
      list.push_back(valueOfField<std::string>(word));
    return list;
  } else if constexpr (std::is_same_v<Value, NSDate>) {
    return utc(field);
  } else {
    Value value{};
    std::istringstream number(field);
    number >> std::boolalpha >> value;
    if (number.fail() || number.peek() >= 0) throw std::invalid_argument(field);
    return value;
  }
}

/// The cases of a file below this folder, one a line, with a bar between two fields and blanks
/// around them as it looks best. Lines that begin with "#" are remarks. Throws where a line has
/// another number of fields or one of another kind, or the file no case.
template <typename... Fields>
std::vector<std::tuple<Fields...>> casesIn(const std::string& name) {
  std::vector<std::tuple<Fields...>> cases;
  std::ifstream file(VELMORA_SOURCE_DIR "/Tests/Targets/" + name);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.starts_with('#')) continue;
    std::vector<std::string> fields = componentsSeparatedByString(line, "|");
    if (fields.size() != sizeof...(Fields)) throw std::invalid_argument(name + ": " + line);
    for (std::string& field : fields) {
      field.erase(0, field.find_first_not_of(' '));
      field.erase(field.find_last_not_of(' ') + 1);
    }
    auto field = fields.begin();
    cases.push_back({valueOfField<Fields>(*field++)...});
  }
  if (cases.empty()) throw std::invalid_argument(name + " has no case");
  return cases;
}
