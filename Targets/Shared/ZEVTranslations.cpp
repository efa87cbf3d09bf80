#include "Targets/Shared/ZEVTranslations.h"

#include <algorithm>

#include "Platform/Foundation/Files/NSBundle.h"
#include "Platform/Foundation/Settings/NSUserDefaults.h"
#include "Platform/Foundation/SharedInstance.h"
#include "Platform/Foundation/Text/StringsFile.h"
#include "Targets/Shared/ZEVPreferences.h"

namespace {

std::vector<std::string> userLanguages() {
  std::vector<std::string> languages;
  const auto& settings = NSUserDefaults::standardUserDefaults().dictionaryRepresentation();
  const auto found = settings.find("NSLanguages");
  if (found == settings.end() || found->second.array() == nullptr) return languages;
  for (const PropertyList& language : *found->second.array()) {
    if (language.string() != nullptr) languages.push_back(*language.string());
  }
  return languages;
}

NSBundle moduleBundle() {
  return NSBundle::bundleForCode(
      reinterpret_cast<const void*>(&ZEVTranslations_Time::sharedTranslations), "VelmoraTime");
}

constexpr std::string_view Portuguese = "pt_PT";

bool isOtherNameOfPortuguese(std::string_view language) {
  return language == "pt" || language == "pt_BR" || language == "pt-PT";
}

}  // namespace

ZEVTranslations_Time& ZEVTranslations_Time::sharedTranslations() {
  static SharedInstance<ZEVTranslations_Time> translations;
  return translations.get();
}

void ZEVTranslations_Time::cleanup() { sharedTranslations().translations_.clear(); }

std::optional<std::string> ZEVTranslations_Time::localizedString(std::string_view key,
                                                                 std::string_view table) {
  const std::string fileName = std::string(table.empty() ? "Localizable" : table) + ".strings";
  auto loaded = translations_.find(fileName);
  if (loaded == translations_.end()) {
    Table fresh = loadTable(fileName);
    // An empty table is looked for again at the next text.
    if (fresh.empty()) return std::nullopt;
    loaded = translations_.emplace(fileName, std::move(fresh)).first;
  }
  const auto found = loaded->second.find(key);
  if (found == loaded->second.end()) return std::nullopt;
  return found->second;
}

std::vector<std::string> ZEVTranslations_Time::languages() {
  return moduleBundle().localizations();
}

bool ZEVTranslations_Time::hasLanguage(std::string_view language) {
  const auto names = languages();
  const auto has = [&](std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
  };
  return has(language) || (isOtherNameOfPortuguese(language) && has(Portuguese));
}

ZEVTranslations_Time::Table ZEVTranslations_Time::loadTable(const std::string& fileName) const {
  const NSBundle bundle = moduleBundle();
  std::vector<std::string> languages =
      NSBundle::preferredLocalizationsFromArray(bundle.localizations(), userLanguages());
  const PropertyList chosen = ZEVObjectForKey("language");
  if (chosen.string() != nullptr) languages = {*chosen.string()};
  if (languages.empty()) return {};

  const std::string& language = languages.front();
  auto file = bundle.pathForResource(fileName, language);
  if (file.empty() && isOtherNameOfPortuguese(language)) {
    file = bundle.pathForResource(fileName, Portuguese);
  }
  if (file.empty()) return {};
  return stringsTableFromFile(file).value_or(Table());
}

std::string WENLocalizedString(std::string_view key, std::string_view defaultText,
                               std::string_view table) {
  const auto translation = ZEVTranslations_Time::sharedTranslations().localizedString(key, table);
  if (translation && !translation->empty()) return *translation;
  return std::string(defaultText.empty() ? key : defaultText);
}
