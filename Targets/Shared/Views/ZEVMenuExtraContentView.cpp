#include "Targets/Shared/Views/ZEVMenuExtraContentView.h"

#include <stdexcept>

#include "Targets/Shared/ZEVPreferences.h"

namespace {

NSColor selectedTextColor() {
  const auto* preferences = ZEVPreferences_Time::sharedPreferences();
  const bool wantsBlack = preferences->isMenubarDark() && preferences->increaseContrast();
  return wantsBlack ? NSColor::blackColor() : NSColor::whiteColor();
}

}  // namespace

void ZEVMenuExtraContentView_Time::addTextConfig(std::string_view key, TextConfig config) {
  config_.insert_or_assign(std::string(key), std::move(config));
}

NSFont ZEVMenuExtraContentView_Time::fontWithSize(int64_t size) const {
  constexpr int64_t Smallest = 8;
  constexpr int64_t Largest = 16;
  constexpr double Standard = 13;
  const bool fits = size >= Smallest && size <= Largest;
  return NSFont::systemFontOfSize(fits ? static_cast<double>(size) : Standard);
}

const NSTextAttributes& ZEVMenuExtraContentView_Time::percentageAttributes(std::string_view key) {
  std::string cacheKey = isMenuDown_ ? "text-attributes-selected-" : "text-attributes-";
  cacheKey.append(key);
  const auto found = attributes_.find(cacheKey);
  if (found != attributes_.end()) return found->second;
  const auto config = config_.find(key);
  if (config == config_.end()) {
    throw std::invalid_argument("no text style \"" + std::string(key) + "\"");
  }
  return attributes_.emplace(std::move(cacheKey), builtAttributes(config->second)).first->second;
}

NSTextAttributes ZEVMenuExtraContentView_Time::builtAttributes(const TextConfig& config) const {
  const bool isDark = ZEVPreferences_Time::sharedPreferences()->isMenubarDark();
  NSTextAttributes attributes;
  attributes.font = correctedFont(fontWithSize(ZEVIntegerForKey(config.font)));
  attributes.foregroundColor =
      isMenuDown_ ? selectedTextColor() : ZEVColorForKey(config.color + (isDark ? "-Dark" : ""));
  attributes.alignment = NSTextAlignment::Center;
  if (!config.shadow.empty() && !isMenuDown_ && !isDark) {
    const NSColor shadowColor = ZEVColorForKey(config.shadow);
    if (shadowColor.alphaComponent() != 0) attributes.shadow = NSShadow{{0, -1}, shadowColor};
  }
  return attributes;
}
