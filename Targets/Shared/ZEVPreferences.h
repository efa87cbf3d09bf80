#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/Foundation/Files/NSBundle.h"
#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// Where the value of a setting comes from.
enum class SettingSource { None, Default, Stored, Previous };

/// The settings that the family of modules shares: a read cache in front of the preference domain,
/// with a table of defaults behind it. Everything but this file's own tests goes through the free
/// functions below. Main thread only.
///
/// A stored value beats a default. The first read of a key settles it until a write, a refresh of
/// that key or a change of theme; a key without any value is remembered too.
class ZEVPreferences_Time {
 public:
  /// The preference domain.
  static constexpr std::string_view Domain = "com.wenmark.velmora5.extras";

  /// Made at the first call; null after `cleanup`, until `begin`.
  static ZEVPreferences_Time* sharedPreferences();
  static void cleanup();
  /// What loading the code did where it was loaded anew with its extra.
  static void begin();

  ZEVPreferences_Time();
  ZEVPreferences_Time(const ZEVPreferences_Time&) = delete;
  ZEVPreferences_Time& operator=(const ZEVPreferences_Time&) = delete;

  /// Whether settings of the previous version were taken over at the start.
  bool didMigratePreferences() const { return didMigratePreferences_; }
  bool isMenubarDark() const { return isMenubarDark_; }
  bool increaseContrast() const { return increaseContrast_; }

  /// The machine's model, or an empty text.
  std::string modelIdentifier() const;
  bool isLaptop() const;

  /// The value of a key, null if there is none. The reference is good until the key is invalidated.
  const PropertyList& objectForKey(std::string_view key);
  /// The same; without the cache only the store answers.
  PropertyList objectForKey(std::string_view key, bool useCache);
  PropertyList prefenceValueForKey(std::string_view key) const;

  /// Where `objectForKey` has its answer from: "Previous" is the file of the previous version.
  SettingSource sourceOfKey(std::string_view key) const;

  /// Writes through to the domain at once; a null value removes the key. Without a key it does
  /// nothing.
  void setObject(std::string_view key, const PropertyList& value);
  void removeObjectForKey(std::string_view key) { setObject(key, {}); }

  /// Drops what is cached of a key, after another process reported its change.
  void resetValueForKey(std::string_view key);
  /// Drops all cached values and images, but no colours.
  void clearCache() { cache_.clear(); }

  /// The colour of a key; white on a dark menu bar and black on a light one if the key holds none.
  NSColor colorForKey(std::string_view key);

  std::filesystem::path pathForImage(std::string_view name) const;
  std::shared_ptr<NSImage> imageNamed(std::string_view name);
  std::shared_ptr<NSImage> networkIconNamed(std::string_view name);

  /// By how many points text of a size (or of the size that a key holds) is moved up.
  int64_t offsetForFont(std::string_view key);
  static int64_t verticalOffsetForFontSize(int64_t size);

  /// The table of defaults.
  const PropertyList::Dictionary& defaults() const { return defaults_; }

 private:
  struct CachedValue {
    PropertyList value;  ///< Null for a key without any value.
    bool isPrevious = false;
  };
  using CacheEntry = std::variant<CachedValue, std::shared_ptr<NSImage>>;

  void loadDefaults();
  void migrateIfNeeded();
  void migrateToV5();
  void menubarThemeChanged();
  void contrastChanged();
  void updateMenubarTheme();
  void updateContrast();
  void forgetEverything();
  std::shared_ptr<NSImage> cachedImage(const std::string& cacheKey) const;

  // A module of the family that owns migration writes it to the domain; this one only reads.
  bool supportsMigration_ = false;
  bool didMigratePreferences_ = false;
  bool isMavericks_;
  bool isYosemite_;
  bool isMenubarDark_ = false;
  bool increaseContrast_ = false;
  std::map<std::string, NSColor, std::less<>> colorCache_;
  PropertyList::Dictionary defaults_;
  std::map<std::string, CacheEntry, std::less<>> cache_;
  NSBundle bundle_;
  NSObservation themeObservation_;
  NSObservation contrastObservation_;
  NSObservation missedNewsObservation_;
};

/// Readers answer 0, false, null or black where there is no value, or no store any more. The
/// conversions are those of `PropertyList`.
bool ZEVBoolForKey(std::string_view key);
int64_t ZEVIntegerForKey(std::string_view key);
float ZEVFloatForKey(std::string_view key);
double ZEVDoubleForKey(std::string_view key);
PropertyList ZEVObjectForKey(std::string_view key);
PropertyList ZEVDictionaryForKey(std::string_view key);
NSColor ZEVColorForKey(std::string_view key);

/// Only what is stored: defaults do not answer.
PropertyList ZEVObjectForKeyWithoutCache(std::string_view key);
PropertyList ZEVStoredObjectForKey(std::string_view key);
PropertyList ZEVPreferenceForKey(std::string_view key);

void ZEVRefreshKey(std::string_view key);

void ZEVSetObjectForKey(std::string_view key, const PropertyList& value);
void ZEVSetBoolForKey(std::string_view key, bool value);
void ZEVSetIntegerForKey(std::string_view key, int64_t value);
void ZEVSetFloatForKey(std::string_view key, float value);
void ZEVSetDoubleForKey(std::string_view key, double value);
void ZEVRemoveObjectForKey(std::string_view key);

/// A style: where the styles are separate, what the key holds with "-Dark" or "-Light" behind it,
/// as the bar is; else what itself holds.
int64_t ZEVStyleForKey(std::string_view key);

/// 1 selects the dark dropdown, 0 the light one.
int64_t dropdownTheme();
