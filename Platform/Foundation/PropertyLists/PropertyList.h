#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// How many lists and dictionaries may stand inside one another; whatever is deeper does not read.
constexpr size_t MaximumPropertyListDepth = 64;

/// A value of a property list: what a preference domain, a notification's user information and a
/// resource file can hold. A null value means that there is none.
class PropertyList {
 public:
  using Array = std::vector<PropertyList>;
  using Dictionary = std::map<std::string, PropertyList, std::less<>>;
  using Data = std::vector<uint8_t>;
  /// Seconds since 1970.
  struct Date {
    double seconds = 0;
    friend bool operator==(const Date&, const Date&) = default;
  };

  PropertyList() = default;
  PropertyList(bool value) : value_(value) {}
  PropertyList(int value) : value_(static_cast<int64_t>(value)) {}
  PropertyList(int64_t value) : value_(value) {}
  PropertyList(double value) : value_(value) {}
  PropertyList(const char* value) : value_(std::string(value)) {}
  PropertyList(std::string_view value) : value_(std::string(value)) {}
  PropertyList(std::string value) : value_(std::move(value)) {}
  PropertyList(Data value) : value_(std::move(value)) {}
  PropertyList(Date value) : value_(value) {}
  PropertyList(Array value) : value_(std::move(value)) {}
  PropertyList(Dictionary value) : value_(std::move(value)) {}

  bool isNull() const { return std::holds_alternative<std::monostate>(value_); }
  /// A bool, an integer or a real.
  bool isNumber() const;

  /// The value if it is of that kind, else null.
  const bool* boolean() const { return std::get_if<bool>(&value_); }
  const int64_t* integer() const { return std::get_if<int64_t>(&value_); }
  const double* real() const { return std::get_if<double>(&value_); }
  const std::string* string() const { return std::get_if<std::string>(&value_); }
  const Data* data() const { return std::get_if<Data>(&value_); }
  const Date* date() const { return std::get_if<Date>(&value_); }
  const Array* array() const { return std::get_if<Array>(&value_); }
  const Dictionary* dictionary() const { return std::get_if<Dictionary>(&value_); }

  /// Number conversions: numbers convert among each other, a string gives the number it begins
  /// with, everything else 0. A real outside the integers' range stops at its end.
  bool boolValue() const;
  int64_t integerValue() const;
  double doubleValue() const;
  float floatValue() const;

  /// The name of the value's kind for messages: "a number", "a text", "a list", …
  std::string_view kindName() const;

  friend bool operator==(const PropertyList&, const PropertyList&) = default;

 private:
  std::variant<std::monostate, bool, int64_t, double, std::string, Data, Date, Array, Dictionary>
      value_;
};

/// Data as base64 text.
std::string base64Text(const PropertyList::Data& data);
