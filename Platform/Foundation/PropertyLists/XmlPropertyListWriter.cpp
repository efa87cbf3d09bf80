#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <ctime>

#include "Platform/Foundation/PropertyLists/XmlPropertyList_p.h"
#include "Platform/Foundation/Text/NSString.h"

namespace {

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
    escape(xmlCharacters(content));
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
        case '\r':
          text_ += "&#13;";  // As it stands, a reader makes a line feed of it.
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
    const double nearest =
        std::isnan(seconds) ? 0 : std::clamp(seconds, EarliestXmlDate, LatestXmlDate);
    const auto whole = static_cast<time_t>(std::floor(nearest));
    tm fields{};
    gmtime_r(&whole, &fields);
    std::array<char, 40> text{};
    const size_t length = strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &fields);
    return {text.data(), length};
  }

  std::string text_;
};

}  // namespace

std::string xmlCharacters(std::string_view text) {
  const auto isPlain = [](char character) { return character >= ' ' && character <= '~'; };
  if (std::all_of(text.begin(), text.end(), isPlain)) return std::string(text);
  constexpr std::string_view NoCharacters[] = {"\xEF\xBF\xBE", "\xEF\xBF\xBF"};
  std::string kept = validUtf8(text);
  std::erase_if(kept, [](char character) {
    return static_cast<unsigned char>(character) < ' ' && character != '\t' && character != '\n' &&
           character != '\r';
  });
  for (const std::string_view none : NoCharacters)
    kept = stringByReplacingOccurrences(kept, none, "");
  return kept;
}

std::string xmlDataWithPropertyList(const PropertyList& value) { return XmlWriter().write(value); }
