#pragma once

#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "Platform/Foundation/Text/NSString.h"
#include "Tests/Platform/Support/Files.h"

/// The fields of a table of cases, a file below `Tests/`: one case a line, with a bar between two
/// fields and blanks around them as it looks best. Lines that begin with "#" are remarks, a heading
/// in brackets begins a section, and "" is what stands before the first. Throws where there is no
/// case.
std::vector<std::vector<std::string>> fieldsOfCases(const std::string& file,
                                                    const std::string& section = "");

/// A field of a case: a text, in which "␣" is a blank that counts; a list between blanks; a moment
/// in UTC, "2026-11-21 15:04:05"; or a number or a truth value, "true" or "false".
template <typename Value>
Value valueOfField(const std::string& field) {
  if constexpr (std::is_same_v<Value, std::string>) {
    return stringByReplacingOccurrences(field, "␣", " ");
  } else if constexpr (std::is_same_v<Value, NSDate>) {
    return utc(field);
  } else if constexpr (requires { typename Value::value_type; }) {
    Value list;
    std::istringstream words(field);
    for (std::string word; words >> word;)
      list.push_back(valueOfField<typename Value::value_type>(word));
    return list;
  } else {
    Value value{};
    std::istringstream number(field);
    number >> std::boolalpha >> value;
    if (number.fail() || number.peek() >= 0) throw std::invalid_argument(field);
    return value;
  }
}

/// The cases themselves. Throws where one has another number of fields or a field of another kind.
template <typename... Fields>
std::vector<std::tuple<Fields...>> casesIn(const std::string& file,
                                           const std::string& section = "") {
  std::vector<std::tuple<Fields...>> cases;
  for (const std::vector<std::string>& fields : fieldsOfCases(file, section)) {
    if (fields.size() != sizeof...(Fields)) throw std::invalid_argument(file + ": " + fields[0]);
    auto field = fields.begin();
    cases.push_back({valueOfField<Fields>(*field++)...});
  }
  return cases;
}
