#pragma once

#include <string>
#include <string_view>

/// Where a line of a language begins.
enum class NSLocaleLanguageDirection { LeftToRight, RightToLeft };

/// A language and region with their customs, by an identifier such as "de_DE".
///
/// A locale is always one that the locale data has texts for: an identifier of any other becomes
/// the nearest that there is ("oc_FR" becomes "fr_FR"), else English with the customs of the
/// region.
class NSLocale {
 public:
  /// The locale of dates and numbers that the environment names (`LC_ALL`, `LC_TIME`, `LANG`), or
  /// the one installed by `setCurrentLocale`.
  static NSLocale currentLocale();
  static NSLocale localeWithLocaleIdentifier(std::string_view identifier);

  /// Makes another locale the current one in this process; an empty identifier undoes that.
  static void setCurrentLocale(std::string_view identifier);

  /// The identifier that the environment gives for one category ("LC_TIME", "LC_MESSAGES").
  static std::string environmentIdentifier(const char* category);

  const std::string& identifier() const { return identifier_; }

  /// Whether lengths and weights are metric here. The United Kingdom counts as metric.
  bool usesMetricSystem() const;

  /// Of the language's usual script, or of the one that the identifier names.
  NSLocaleLanguageDirection characterDirection() const;

  /// 1 is Sunday.
  int firstWeekday() const;

  friend bool operator==(const NSLocale&, const NSLocale&) = default;

 private:
  explicit NSLocale(std::string identifier) : identifier_(std::move(identifier)) {}

  std::string identifier_;
};

/// Turns the environment's spelling ("de_DE.UTF-8@euro", "C") into a locale identifier. The
/// portable locale becomes "en_US_POSIX".
std::string localeIdentifierFromEnvironment(std::string_view value);

/// Whether a text has the form of a locale identifier and names a language that the locale data
/// knows.
bool isKnownLocaleIdentifier(std::string_view identifier);
