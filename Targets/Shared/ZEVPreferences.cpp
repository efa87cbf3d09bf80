#include "Targets/Shared/ZEVPreferences.h"

#include <array>
#include <stdexcept>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Process/HardwareModel.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/SharedInstance.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/WENVersions.h"
#include "Targets/Shared/ZEVColorText.h"
#include "Targets/Shared/ZEVDefaultSettings.h"
#include "Targets/Shared/ZEVMigration.h"

namespace {

constexpr std::string_view BundlePath = "/Library/Application Support/Velmora 5/Velmora.bundle";
constexpr std::string_view NetworkBundlePath = "/System/Library/PreferencePanes/Network.prefpane";

const PropertyList NoValue;

/// A value that no settings file can hold is left out.
void setInDomain(std::string_view key, const PropertyList& value) {
  try {
    CFPreferencesSetAppValue(key, value, ZEVPreferences_Time::Domain);
  } catch (const std::invalid_argument& error) {
    NSLog(std::string("error: ") + error.what());
  }
}

struct SharedStore {
  std::unique_ptr<ZEVPreferences_Time> store;
  bool hasEnded = false;
};

SharedStore& sharedInstance() {
  static SharedInstance<SharedStore> instance;
  return instance.get();
}

const PropertyList& valueForKey(std::string_view key) {
  auto* const store = ZEVPreferences_Time::sharedPreferences();
  return store != nullptr ? store->objectForKey(key) : NoValue;
}

}  // namespace

ZEVPreferences_Time* ZEVPreferences_Time::sharedPreferences() {
  SharedStore& shared = sharedInstance();
  if (!shared.store && !shared.hasEnded) shared.store = std::make_unique<ZEVPreferences_Time>();
  return shared.store.get();
}

void ZEVPreferences_Time::cleanup() { sharedInstance() = {.store = nullptr, .hasEnded = true}; }

void ZEVPreferences_Time::begin() { sharedInstance().hasEnded = false; }

ZEVPreferences_Time::ZEVPreferences_Time()
    : isMavericks_(WENVersions_Time::sharedVersions().isMavericks()),
      isYosemite_(WENVersions_Time::sharedVersions().isYosemite()) {
  if (isYosemite_) {
    auto& center = NSDistributedNotificationCenter::defaultCenter();
    themeObservation_ = center.addObserver("AppleInterfaceThemeChangedNotification",
                                           [this](const auto&) { menubarThemeChanged(); });
    contrastObservation_ = center.addObserver("AXInterfaceIncreaseContrastStatusDidChange",
                                              [this](const auto&) { contrastChanged(); });
    updateMenubarTheme();
    updateContrast();
  }
  missedNewsObservation_ = NSDistributedNotificationCenter::defaultCenter().addObserver(
      NSDistributedNotificationsMayBeMissedNotification,
      [this](const auto&) { menubarThemeChanged(); });
  bundle_ = NSBundle::bundleWithPath(BundlePath);
  loadDefaults();
  migrateIfNeeded();
}

void ZEVPreferences_Time::migrateIfNeeded() {
  constexpr std::string_view Mark = "Migrated_5.0";
  if (!oldSettingsExist() || !CFPreferencesCopyAppValue(Mark, Domain).isNull()) return;
  migrateToV5();
  if (supportsMigration_) CFPreferencesSetAppValue(Mark, true, Domain);
}

void ZEVPreferences_Time::migrateToV5() {
  for (auto& [key, value] : migratedSettings(bundle_)) {
    if (supportsMigration_) {
      setInDomain(key, value);
    } else if (!CFPreferencesAppValueIsForced(key, Domain)) {
      cache_.insert_or_assign(key, CachedValue{std::move(value), true});
    }
  }
  if (supportsMigration_) CFPreferencesAppSynchronize(Domain);
  didMigratePreferences_ = true;
}

void ZEVPreferences_Time::loadDefaults() { defaults_ = defaultSettings(isLaptop()); }

std::string ZEVPreferences_Time::modelIdentifier() const { return hardwareModel(); }

bool ZEVPreferences_Time::isLaptop() const {
  return lowercaseString(modelIdentifier()).starts_with("macbook");
}

void ZEVPreferences_Time::menubarThemeChanged() {
  forgetEverything();
  updateMenubarTheme();
  NSNotificationCenter::defaultCenter().postNotification("VelmoraMenubarThemeChanged");
}

void ZEVPreferences_Time::contrastChanged() {
  forgetEverything();
  updateContrast();
  NSNotificationCenter::defaultCenter().postNotification("VelmoraMenubarThemeChanged");
}

void ZEVPreferences_Time::forgetEverything() {
  colorCache_.clear();
  cache_.clear();
}

void ZEVPreferences_Time::updateMenubarTheme() {
  const PropertyList style = CFPreferencesCopyAppValue("AppleInterfaceStyle", ".GlobalPreferences");
  isMenubarDark_ = style.string() != nullptr && *style.string() == "Dark";
}

void ZEVPreferences_Time::updateContrast() {
  const PropertyList contrast =
      CFPreferencesCopyAppValue("increaseContrast", "com.apple.universalaccess");
  increaseContrast_ = contrast.isNumber() && contrast.boolValue();
}

const PropertyList& ZEVPreferences_Time::objectForKey(std::string_view key) {
  if (key.empty()) return NoValue;
  const auto found = cache_.find(key);
  if (found != cache_.end()) {
    const auto* cached = std::get_if<CachedValue>(&found->second);
    return cached != nullptr ? cached->value : NoValue;
  }
  PropertyList value = prefenceValueForKey(key);
  if (value.isNull()) {
    const auto fallback = defaults_.find(key);
    if (fallback != defaults_.end()) value = fallback->second;
  }
  const auto kept = cache_.emplace(key, CachedValue{std::move(value)}).first;
  return std::get<CachedValue>(kept->second).value;
}

SettingSource ZEVPreferences_Time::sourceOfKey(std::string_view key) const {
  const auto found = cache_.find(key);
  const auto* cached = found != cache_.end() ? std::get_if<CachedValue>(&found->second) : nullptr;
  if (cached != nullptr && cached->isPrevious) return SettingSource::Previous;
  if (!prefenceValueForKey(key).isNull()) return SettingSource::Stored;
  return defaults_.contains(key) ? SettingSource::Default : SettingSource::None;
}

PropertyList ZEVPreferences_Time::objectForKey(std::string_view key, bool useCache) {
  return useCache ? objectForKey(key) : prefenceValueForKey(key);
}

PropertyList ZEVPreferences_Time::prefenceValueForKey(std::string_view key) const {
  return CFPreferencesCopyAppValue(key, Domain);
}

void ZEVPreferences_Time::setObject(std::string_view key, const PropertyList& value) {
  if (key.empty()) return;
  setInDomain(key, value);
  CFPreferencesAppSynchronize(Domain);
  resetValueForKey(key);
}

void ZEVPreferences_Time::resetValueForKey(std::string_view key) {
  if (const auto found = cache_.find(key); found != cache_.end()) cache_.erase(found);
  if (const auto found = colorCache_.find(key); found != colorCache_.end()) {
    colorCache_.erase(found);
  }
}

NSColor ZEVPreferences_Time::colorForKey(std::string_view key) {
  const auto found = colorCache_.find(key);
  if (found != colorCache_.end()) return found->second;
  const NSColor fallback = isMenubarDark_ ? NSColor::whiteColor() : NSColor::blackColor();
  const NSColor color = colorFromString(objectForKey(key)).value_or(fallback);
  colorCache_.emplace(key, color);
  return color;
}

std::filesystem::path ZEVPreferences_Time::pathForImage(std::string_view name) const {
  return bundle_.pathForImageResource(name);
}

std::shared_ptr<NSImage> ZEVPreferences_Time::cachedImage(const std::string& cacheKey) const {
  const auto found = cache_.find(cacheKey);
  if (found == cache_.end()) return nullptr;
  const auto* image = std::get_if<std::shared_ptr<NSImage>>(&found->second);
  return image != nullptr ? *image : nullptr;
}

std::shared_ptr<NSImage> ZEVPreferences_Time::imageNamed(std::string_view name) {
  const std::string cacheKey = "image_" + std::string(name);
  auto image = cachedImage(cacheKey);
  if (!image) image = NSImage::imageWithContentsOfFile(pathForImage(name));
  if (!image) return nullptr;
  image->setName(nameWithoutImageExtension(name));
  cache_.insert_or_assign(cacheKey, image);
  return image;
}

std::shared_ptr<NSImage> ZEVPreferences_Time::networkIconNamed(std::string_view name) {
  const std::string cacheKey = "networkicon_" + std::string(name);
  if (auto image = cachedImage(cacheKey)) return image;
  const NSBundle bundle = NSBundle::bundleWithPath(NetworkBundlePath);
  auto image = NSImage::imageWithContentsOfFile(bundle.pathForImageResource(name));
  if (image) cache_.insert_or_assign(cacheKey, image);
  return image;
}

int64_t ZEVPreferences_Time::offsetForFont(std::string_view key) {
  return verticalOffsetForFontSize(objectForKey(key).integerValue());
}

int64_t ZEVPreferences_Time::verticalOffsetForFontSize(int64_t size) {
  constexpr int64_t Smallest = 8;
  constexpr std::array<int64_t, 9> Offsets = {3, 2, 1, 1, 0, 0, 0, -1, -2};
  const int64_t index = size - Smallest;
  if (size < Smallest || index >= static_cast<int64_t>(Offsets.size())) return 0;
  return Offsets[static_cast<size_t>(index)];
}

bool ZEVBoolForKey(std::string_view key) { return valueForKey(key).boolValue(); }

int64_t ZEVIntegerForKey(std::string_view key) { return valueForKey(key).integerValue(); }

float ZEVFloatForKey(std::string_view key) { return valueForKey(key).floatValue(); }

double ZEVDoubleForKey(std::string_view key) { return valueForKey(key).doubleValue(); }

PropertyList ZEVObjectForKey(std::string_view key) { return valueForKey(key); }

PropertyList ZEVDictionaryForKey(std::string_view key) { return ZEVObjectForKey(key); }

NSColor ZEVColorForKey(std::string_view key) {
  auto* const store = ZEVPreferences_Time::sharedPreferences();
  return store != nullptr ? store->colorForKey(key) : NSColor::blackColor();
}

PropertyList ZEVObjectForKeyWithoutCache(std::string_view key) {
  auto* const store = ZEVPreferences_Time::sharedPreferences();
  return store != nullptr ? store->objectForKey(key, false) : NoValue;
}

PropertyList ZEVStoredObjectForKey(std::string_view key) {
  const auto* const store = ZEVPreferences_Time::sharedPreferences();
  return store != nullptr ? store->prefenceValueForKey(key) : NoValue;
}

PropertyList ZEVPreferenceForKey(std::string_view key) { return ZEVStoredObjectForKey(key); }

void ZEVRefreshKey(std::string_view key) {
  if (auto* const store = ZEVPreferences_Time::sharedPreferences()) store->resetValueForKey(key);
}

void ZEVSetObjectForKey(std::string_view key, const PropertyList& value) {
  if (auto* const store = ZEVPreferences_Time::sharedPreferences()) store->setObject(key, value);
}

void ZEVSetBoolForKey(std::string_view key, bool value) { ZEVSetObjectForKey(key, value); }

void ZEVSetIntegerForKey(std::string_view key, int64_t value) { ZEVSetObjectForKey(key, value); }

void ZEVSetFloatForKey(std::string_view key, float value) {
  ZEVSetObjectForKey(key, static_cast<double>(value));
}

void ZEVSetDoubleForKey(std::string_view key, double value) { ZEVSetObjectForKey(key, value); }

void ZEVRemoveObjectForKey(std::string_view key) { ZEVSetObjectForKey(key, {}); }

int64_t ZEVStyleForKey(std::string_view key) {
  if (!ZEVBoolForKey("Theme-SeperateStyles")) return ZEVIntegerForKey(key);
  const auto* const store = ZEVPreferences_Time::sharedPreferences();
  const bool isDark = store != nullptr && store->isMenubarDark();
  return ZEVIntegerForKey(std::string(key) + (isDark ? "-Dark" : "-Light"));
}

int64_t dropdownTheme() { return ZEVStyleForKey("DropdownTheme"); }
