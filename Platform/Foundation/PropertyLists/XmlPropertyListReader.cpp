#include <glib.h>

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Platform/Foundation/PropertyLists/XmlPropertyList_p.h"

namespace {

constexpr std::string_view Blanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
  const size_t begin = text.find_first_not_of(Blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(Blanks) - begin + 1);
}

template <typename Number>
std::optional<Number> wholeText(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// What an element holds; null for what it cannot hold.

PropertyList integerFromText(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  const auto number = wholeText<int64_t>(text);
  return number ? PropertyList(*number) : PropertyList();
}

PropertyList realFromText(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  const auto number = wholeText<double>(text);
  return number && !std::isnan(*number) ? PropertyList(*number) : PropertyList();
}

PropertyList dateFromText(std::string_view text) {
  int year = 0;
  unsigned month = 0;
  unsigned day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  char zone = 0;
  char rest = 0;
  const int count = std::sscanf(std::string(text).c_str(), "%d-%2u-%2uT%2d:%2d:%2d%c%c", &year,
                                &month, &day, &hour, &minute, &second, &zone, &rest);
  if (count != 7 || zone != 'Z' || year < 1 || year > 9999) return {};
  const auto date = std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day);
  if (!date.ok()) return {};
  const int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  const auto seconds = static_cast<double>(days * 86'400 + hour * 3600 + minute * 60 + second);
  if (seconds < EarliestXmlDate || seconds > LatestXmlDate) return {};
  return PropertyList::Date{seconds};
}

PropertyList dataFromText(std::string_view text) {
  gsize length = 0;
  const LibraryHandle<guchar, g_free> bytes(g_base64_decode(std::string(text).c_str(), &length));
  return PropertyList::Data(bytes.get(), bytes.get() + length);
}

/// Builds values while GLib's parser walks the elements.
class Builder {
 public:
  explicit Builder(std::vector<std::string>& droppedKeys) : droppedKeys_(droppedKeys) {}

  std::optional<PropertyList> parse(std::string_view text) {
    constexpr GMarkupParser Functions = {started, ended, heard, nullptr, nullptr};
    const LibraryHandle<GMarkupParseContext, g_markup_parse_context_free> context(
        g_markup_parse_context_new(&Functions, G_MARKUP_TREAT_CDATA_AS_TEXT, this, nullptr));
    const bool isWhole =
        g_markup_parse_context_parse(context.get(), text.data(), static_cast<gssize>(text.size()),
                                     nullptr) != FALSE &&
        g_markup_parse_context_end_parse(context.get(), nullptr) != FALSE;
    return isWhole && root_ && !root_->isNull() ? std::move(root_) : std::nullopt;
  }

 private:
  struct Container {
    bool isDictionary;
    PropertyList::Array values;
    PropertyList::Dictionary entries;
    std::optional<std::string> key;
    bool hasGap = false;  ///< A list lacks a value: without it the others would be misplaced.
  };

  static void fail(GError** error) {
    g_set_error_literal(error, G_MARKUP_ERROR, G_MARKUP_ERROR_INVALID_CONTENT, "no property list");
  }

  static void started(GMarkupParseContext*, const char* name, const char**, const char**,
                      gpointer self, GError** error) {
    if (!static_cast<Builder*>(self)->start(name)) fail(error);
  }

  static void ended(GMarkupParseContext*, const char* name, gpointer self, GError** error) {
    if (!static_cast<Builder*>(self)->end(name)) fail(error);
  }

  static void heard(GMarkupParseContext*, const char* text, gsize length, gpointer self,
                    GError** error) {
    if (!static_cast<Builder*>(self)->hear({text, length})) fail(error);
  }

  bool start(std::string_view name) {
    // Only the containers have elements inside.
    if (isInLeaf_) return false;
    text_.clear();
    if (name == "plist") {
      if (isInList_ || root_) return false;
      return isInList_ = true;
    }
    if (!isInList_) return false;
    if (name == "dict" || name == "array") {
      if (containers_.size() >= MaximumPropertyListDepth) return false;
      containers_.push_back({name == "dict", {}, {}, {}, false});
      return true;
    }
    return isInLeaf_ = true;
  }

  bool hear(std::string_view text) {
    if (!isInLeaf_) return trimmed(text).empty();
    text_.append(text);
    return true;
  }

  bool end(std::string_view name) {
    if (name == "plist") {
      isInList_ = false;
      return root_.has_value();
    }
    if (name == "dict" || name == "array") {
      Container container = std::move(containers_.back());
      containers_.pop_back();
      if (container.key) return false;
      if (container.hasGap) return add({});
      return container.isDictionary ? add(std::move(container.entries))
                                    : add(std::move(container.values));
    }
    isInLeaf_ = false;
    if (name == "key") return takeKey();
    return add(leafValue(name));
  }

  PropertyList leafValue(std::string_view name) const {
    const std::string_view content = trimmed(text_);
    if (name == "string") return xmlCharacters(text_);
    if (name == "integer") return integerFromText(content);
    if (name == "real") return realFromText(content);
    if (name == "date") return dateFromText(content);
    if (name == "data") return dataFromText(content);
    if (name == "true" && content.empty()) return true;
    if (name == "false" && content.empty()) return false;
    return {};
  }

  bool takeKey() {
    if (containers_.empty() || !containers_.back().isDictionary || containers_.back().key) {
      return false;
    }
    containers_.back().key = xmlCharacters(text_);
    return true;
  }

  /// Takes a value to its place; null is one to be dropped.
  bool add(PropertyList value) {
    if (containers_.empty()) {
      if (root_) return false;
      root_ = std::move(value);
      return true;
    }
    Container& container = containers_.back();
    if (!container.isDictionary) {
      container.hasGap |= value.isNull();
      container.values.push_back(std::move(value));
      return true;
    }
    if (!container.key) return false;
    if (value.isNull()) {
      droppedKeys_.push_back(std::move(*container.key));
    } else {
      container.entries.insert_or_assign(std::move(*container.key), std::move(value));
    }
    container.key.reset();
    return true;
  }

  std::vector<std::string>& droppedKeys_;
  std::optional<PropertyList> root_;
  std::vector<Container> containers_;
  std::string text_;
  bool isInList_ = false;
  bool isInLeaf_ = false;
};

}  // namespace

std::optional<PropertyList> xmlPropertyListWithData(std::string_view text,
                                                    std::vector<std::string>& droppedKeys) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  return Builder(droppedKeys).parse(text);
}
