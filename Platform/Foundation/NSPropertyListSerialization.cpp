#include "Platform/Foundation/NSPropertyListSerialization.h"

#include <plist/plist.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <memory>

namespace {

/// libplist counts the seconds of a date from 2001-01-01 00:00 UTC.
constexpr double ReferenceDate = 978307200;
constexpr int MaximumDepth = 64;

struct NodeDeleter {
  void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

std::string takeText(char* text) {
  const std::unique_ptr<char, decltype(&std::free)> owned(text, &std::free);
  return text != nullptr ? std::string(text) : std::string();
}

std::optional<PropertyList> valueOf(plist_t node, int depth);

std::optional<PropertyList> arrayOf(plist_t node, int depth) {
  PropertyList::Array values;
  const uint32_t count = plist_array_get_size(node);
  values.reserve(count);
  for (uint32_t index = 0; index < count; ++index) {
    auto value = valueOf(plist_array_get_item(node, index), depth + 1);
    if (!value) return std::nullopt;
    values.push_back(std::move(*value));
  }
  return PropertyList(std::move(values));
}

std::optional<PropertyList> dictionaryOf(plist_t node, int depth) {
  PropertyList::Dictionary values;
  plist_dict_iter rawIterator = nullptr;
  plist_dict_new_iter(node, &rawIterator);
  const std::unique_ptr<void, decltype(&std::free)> iterator(rawIterator, &std::free);
  while (true) {
    char* key = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(node, iterator.get(), &key, &item);
    if (item == nullptr) break;
    auto value = valueOf(item, depth + 1);
    std::string name = takeText(key);
    if (!value) return std::nullopt;
    values.insert_or_assign(std::move(name), std::move(*value));
  }
  return PropertyList(std::move(values));
}

std::optional<PropertyList> valueOf(plist_t node, int depth) {
  if (node == nullptr || depth > MaximumDepth) return std::nullopt;
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return PropertyList(value != 0);
    }
    case PLIST_UINT: {
      uint64_t value = 0;
      plist_get_uint_val(node, &value);
      return PropertyList(static_cast<int64_t>(value));
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      return PropertyList(value);
    }
    case PLIST_STRING: {
      char* value = nullptr;
      plist_get_string_val(node, &value);
      return PropertyList(takeText(value));
    }
    case PLIST_DATA: {
      char* bytes = nullptr;
      uint64_t length = 0;
      plist_get_data_val(node, &bytes, &length);
      const std::unique_ptr<char, decltype(&std::free)> owned(bytes, &std::free);
      return PropertyList(PropertyList::Data(bytes, bytes + length));
    }
    case PLIST_DATE: {
      int32_t seconds = 0;
      int32_t microseconds = 0;
      plist_get_date_val(node, &seconds, &microseconds);
      return PropertyList(PropertyList::Date{ReferenceDate + seconds + microseconds * 1e-6});
    }
    case PLIST_ARRAY:
      return arrayOf(node, depth);
    case PLIST_DICT:
      return dictionaryOf(node, depth);
    case PLIST_UID: {
      // A keyed archive's reference to one of its objects, in the form of its XML.
      uint64_t value = 0;
      plist_get_uid_val(node, &value);
      return PropertyList(
          PropertyList::Dictionary{{"CF$UID", PropertyList(static_cast<int64_t>(value))}});
    }
    default:
      return std::nullopt;
  }
}

/// The XML writer is ours: the library's cuts reals to seven decimals.
class XmlWriter {
 public:
  std::string write(const PropertyList& value) {
    text_ =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\">\n";
    append(value, 0);
    text_ += "</plist>\n";
    return std::move(text_);
  }

 private:
  void element(int depth, std::string_view name, std::string_view content) {
    indent(depth);
    text_.append("<").append(name).append(">");
    escape(content);
    text_.append("</").append(name).append(">\n");
  }

  void line(int depth, std::string_view content) {
    indent(depth);
    text_.append(content).push_back('\n');
  }

  void indent(int depth) { text_.append(static_cast<size_t>(depth), '\t'); }

  void escape(std::string_view content) {
    for (const char character : content) {
      switch (character) {
        case '&':
          text_ += "&amp;";
          break;
        case '<':
          text_ += "&lt;";
          break;
        case '>':
          text_ += "&gt;";
          break;
        default:
          text_ += character;
      }
    }
  }

  void append(const PropertyList& value, int depth) {
    if (const auto* boolean = value.boolean()) {
      line(depth, *boolean ? "<true/>" : "<false/>");
    } else if (const auto* integer = value.integer()) {
      element(depth, "integer", std::to_string(*integer));
    } else if (const auto* real = value.real()) {
      element(depth, "real", realText(*real));
    } else if (const auto* string = value.string()) {
      element(depth, "string", *string);
    } else if (const auto* data = value.data()) {
      element(depth, "data", base64Text(*data));
    } else if (const auto* date = value.date()) {
      element(depth, "date", dateText(date->seconds));
    } else if (const auto* array = value.array()) {
      if (array->empty()) return line(depth, "<array/>");
      line(depth, "<array>");
      for (const auto& item : *array)
        append(item, depth + 1);
      line(depth, "</array>");
    } else if (const auto* dictionary = value.dictionary()) {
      if (dictionary->empty()) return line(depth, "<dict/>");
      line(depth, "<dict>");
      for (const auto& [key, item] : *dictionary) {
        if (item.isNull()) continue;
        element(depth + 1, "key", key);
        append(item, depth + 1);
      }
      line(depth, "</dict>");
    }
  }

  static std::string realText(double value) {
    std::array<char, 32> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return {digits.data(), end};
  }

  static std::string dateText(double seconds) {
    const auto whole = static_cast<time_t>(std::floor(seconds));
    tm fields{};
    gmtime_r(&whole, &fields);
    std::array<char, 40> text{};
    const size_t length = strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &fields);
    return {text.data(), length};
  }

  std::string text_;
};

}  // namespace

std::optional<PropertyList> propertyListWithData(std::string_view bytes) {
  if (bytes.size() < 8) return std::nullopt;
  plist_t root = nullptr;
  // The library takes whatever does not begin as a binary list for XML, and reads text up to its
  // end however little of it is a list; so the opening is checked here.
  const bool binary = bytes.starts_with("bplist00");
  if (!binary) {
    const size_t begin = bytes.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    if (begin == std::string_view::npos || bytes[begin] != '<') return std::nullopt;
    if (bytes.find("</plist>") == std::string_view::npos) return std::nullopt;
  }
  plist_from_memory(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
  const Node owned(root);
  if (root == nullptr) return std::nullopt;
  return valueOf(root, 0);
}

std::string dataWithPropertyList(const PropertyList& value) { return XmlWriter().write(value); }
