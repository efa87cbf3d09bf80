#include "Platform/AppKit/Drawing/NSKeyedUnarchiver.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Platform/Foundation/Text/NSString.h"

namespace {

using Dictionary = PropertyList::Dictionary;

const PropertyList* valueIn(const Dictionary& dictionary, std::string_view key) {
  const auto found = dictionary.find(key);
  return found != dictionary.end() ? &found->second : nullptr;
}

/// An archive's list of objects.
class Objects {
 public:
  explicit Objects(const PropertyList::Array& objects) : objects_(objects) {}

  /// What a reference points to; the value itself if it is none, null for a reference to nowhere.
  const PropertyList* resolve(const PropertyList* value) const {
    if (value == nullptr || value->dictionary() == nullptr) return value;
    const PropertyList* number = valueIn(*value->dictionary(), "CF$UID");
    if (number == nullptr) return value;
    const auto index = static_cast<uint64_t>(number->integerValue());
    return index < objects_.size() ? &objects_[index] : nullptr;
  }

  const PropertyList* resolve(const Dictionary& object, std::string_view key) const {
    return resolve(valueIn(object, key));
  }

  std::string className(const Dictionary& object) const {
    const PropertyList* description = resolve(object, "$class");
    if (description == nullptr || description->dictionary() == nullptr) return "";
    const PropertyList* name = resolve(*description->dictionary(), "$classname");
    return name != nullptr && name->string() != nullptr ? *name->string() : "";
  }

 private:
  const PropertyList::Array& objects_;
};

/// The numbers of a component list, which is text kept as data, with or without a closing zero.
std::vector<double> components(const PropertyList* value) {
  if (value == nullptr) return {};
  std::string text;
  if (value->data() != nullptr) text.assign(value->data()->begin(), value->data()->end());
  if (value->string() != nullptr) text = *value->string();
  text.erase(std::find(text.begin(), text.end(), '\0'), text.end());
  std::vector<double> numbers;
  for (const auto& piece : componentsSeparatedByString(text, " ")) {
    if (!piece.empty()) numbers.push_back(std::clamp(doubleValue(piece), 0.0, 1.0));
  }
  return numbers;
}

std::optional<NSColor> colorOf(const Dictionary& object, const Objects& objects) {
  if (const auto rgb = components(objects.resolve(object, "NSRGB")); rgb.size() >= 3) {
    return NSColor::colorWithDeviceRed(rgb[0], rgb[1], rgb[2], rgb.size() > 3 ? rgb[3] : 1);
  }
  if (const auto white = components(objects.resolve(object, "NSWhite")); !white.empty()) {
    return NSColor::colorWithDeviceWhite(white[0], white.size() > 1 ? white[1] : 1);
  }
  if (const auto cmyk = components(objects.resolve(object, "NSCMYK")); cmyk.size() >= 4) {
    const auto light = [&](size_t ink) { return (1 - cmyk[ink]) * (1 - cmyk[3]); };
    return NSColor::colorWithDeviceRed(light(0), light(1), light(2), cmyk.size() > 4 ? cmyk[4] : 1);
  }
  return std::nullopt;
}

}  // namespace

std::optional<NSColor> unarchiveObjectWithData(const PropertyList::Data& data) {
  const std::string_view bytes(reinterpret_cast<const char*>(data.data()), data.size());
  const auto archive = propertyListWithData(bytes);
  if (!archive || archive->dictionary() == nullptr) return std::nullopt;
  const PropertyList* list = valueIn(*archive->dictionary(), "$objects");
  const PropertyList* top = valueIn(*archive->dictionary(), "$top");
  if (list == nullptr || list->array() == nullptr || top == nullptr ||
      top->dictionary() == nullptr) {
    return std::nullopt;
  }
  const Objects objects(*list->array());
  const PropertyList* root = objects.resolve(*top->dictionary(), "root");
  if (root == nullptr || root->dictionary() == nullptr) return std::nullopt;
  if (objects.className(*root->dictionary()) != "NSColor") return std::nullopt;
  return colorOf(*root->dictionary(), objects);
}
