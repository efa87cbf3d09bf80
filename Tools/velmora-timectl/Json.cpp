#include "Tools/velmora-timectl/Json.h"

#include <array>
#include <charconv>
#include <cmath>

#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Tools/velmora-timectl/Errors.h"

namespace {

std::string numberText(double value) {
  if (!std::isfinite(value)) return "null";
  std::array<char, 32> digits{};
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  std::string text(digits.data(), end);
  // "1e+07" reads back as well without its plus sign and leading zero.
  const size_t exponent = text.find('e');
  if (exponent == std::string::npos) return text;
  size_t digit = exponent + 1;
  if (text[digit] == '+') text.erase(digit, 1);
  if (text[digit] == '-') ++digit;
  if (text[digit] == '0') text.erase(digit, 1);
  return text;
}

std::string stringText(const std::string& value) {
  return Json(value).dump(-1, ' ', false, Json::error_handler_t::replace);
}

PropertyList propertyListOf(const nlohmann::json& value, std::string_view what, size_t depth = 0) {
  // Settings are a few levels deep; this walk and the property list's own are recursive.
  if (depth > MaximumPropertyListDepth)
    throw UsageError(std::string(what) + ": lists are nested too deeply");
  if (depth > 0 && value.is_null()) {
    throw UsageError(std::string(what) + ": a list or an object cannot hold null");
  }
  switch (value.type()) {
    case nlohmann::json::value_t::boolean:
      return value.get<bool>();
    case nlohmann::json::value_t::number_integer:
      return value.get<int64_t>();
    case nlohmann::json::value_t::number_unsigned:
      if (value.get<uint64_t>() > static_cast<uint64_t>(INT64_MAX)) {
        throw UsageError(std::string(what) + ": " + value.dump() + " is too large for a setting");
      }
      return value.get<int64_t>();
    case nlohmann::json::value_t::number_float:
      return value.get<double>();
    case nlohmann::json::value_t::string:
      return value.get<std::string>();
    case nlohmann::json::value_t::array: {
      PropertyList::Array items;
      for (const auto& item : value)
        items.push_back(propertyListOf(item, what, depth + 1));
      return items;
    }
    case nlohmann::json::value_t::object: {
      PropertyList::Dictionary items;
      for (const auto& [key, item] : value.items()) {
        items.insert_or_assign(key, propertyListOf(item, what, depth + 1));
      }
      return items;
    }
    default:
      return {};
  }
}

}  // namespace

std::string jsonText(const Json& value) {
  std::string text;
  const auto append = [&](std::string_view part) {
    if (text.size() > 1) text += ',';
    text += part;
  };
  if (value.is_array()) {
    text = "[";
    for (const Json& item : value)
      append(jsonText(item));
    return text + "]";
  }
  if (value.is_object()) {
    text = "{";
    for (const auto& [key, item] : value.items())
      append(stringText(key) + ":" + jsonText(item));
    return text + "}";
  }
  if (value.is_string()) return stringText(value.get<std::string>());
  if (value.is_number_float()) return numberText(value.get<double>());
  return value.dump();
}

PropertyList propertyListFromJson(std::string_view text, std::string_view what) {
  try {
    return propertyListOf(nlohmann::json::parse(text), what);
  } catch (const nlohmann::json::exception&) {
    throw UsageError(std::string(what) + ": '" + std::string(text) +
                     "' is not JSON; a text needs its double quotes, as in '\"HH\"'");
  }
}

Json jsonFromPropertyList(const PropertyList& value) {
  if (const auto* boolean = value.boolean()) return *boolean;
  if (const auto* integer = value.integer()) return *integer;
  if (const auto* real = value.real()) return *real;
  if (const auto* string = value.string()) return *string;
  if (const auto* date = value.date()) return date->seconds;
  if (const auto* data = value.data()) return base64Text(*data);
  if (const auto* array = value.array()) {
    Json items = Json::array();
    for (const PropertyList& item : *array)
      items.push_back(jsonFromPropertyList(item));
    return items;
  }
  if (const auto* dictionary = value.dictionary()) {
    Json items = Json::object();
    for (const auto& [key, item] : *dictionary)
      items[key] = jsonFromPropertyList(item);
    return items;
  }
  return nullptr;
}
