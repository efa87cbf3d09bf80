#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Translated texts by table and key. Each table is read once, in one language: that of the setting
/// "language", else the best that the system's languages allow. Main thread only.
class ZEVTranslations_Time {
 public:
  static ZEVTranslations_Time& sharedTranslations();
  /// Forgets what was read, for an extra that is loaded anew.
  static void cleanup();

  /// The translation of a key; nothing if the table lacks it. An empty table name means
  /// "Localizable".
  std::optional<std::string> localizedString(std::string_view key, std::string_view table);

  /// The languages that there are translations in, and whether one of them answers to a name.
  static std::vector<std::string> languages();
  static bool hasLanguage(std::string_view language);

 private:
  using Table = std::map<std::string, std::string, std::less<>>;

  Table loadTable(const std::string& fileName) const;

  std::map<std::string, Table, std::less<>> translations_;
};

/// Gives literals back and marks them as keys: where WENLocalizedString gets a name, the literals
/// behind it stand in one of these, by which scripts/check-translations finds them.
constexpr std::string_view localizedKey(std::string_view key) { return key; }
template <typename... Keys>
constexpr std::array<std::string_view, sizeof...(Keys)> localizedKeys(Keys... keys) {
  return {keys...};
}

/// The text to show: the translation, else the default text, else the key itself. An empty
/// translation counts as none.
std::string WENLocalizedString(std::string_view key, std::string_view defaultText,
                               std::string_view table);
