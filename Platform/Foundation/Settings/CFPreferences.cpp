#include "Platform/Foundation/Settings/CFPreferences.h"

#include <memory>
#include <stdexcept>
#include <string>

#include "Platform/Foundation/Files/NSPathUtilities.h"
#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Platform/Foundation/Settings/DesktopSettings_p.h"
#include "Platform/Foundation/Settings/PreferenceFile.h"
#include "Platform/Foundation/SharedInstance.h"

namespace {

struct Domain {
  explicit Domain(std::string_view applicationId)
      : file(resolvedPath("~/Library/Preferences/" + std::string(applicationId) + ".plist")) {}

  PreferenceFile file;
  PreferenceFile::Changes unwritten;
  PreferenceFile::Changes overrides;
  bool ignoresFile = false;
};

using Domains = std::map<std::string, std::unique_ptr<Domain>, std::less<>>;

Domains& allDomains() {
  static SharedInstance<Domains> domains;
  return domains.get();
}

Domain& domainNamed(std::string_view applicationId) {
  auto& domains = allDomains();
  auto found = domains.find(applicationId);
  if (found == domains.end()) {
    found = domains.emplace(applicationId, std::make_unique<Domain>(applicationId)).first;
  }
  return *found->second;
}

/// Both kinds of map hold their values under the key's text.
template <typename Map>
const PropertyList* lookUp(const Map& values, std::string_view key) {
  const auto found = values.find(key);
  return found != values.end() ? &found->second : nullptr;
}

}  // namespace

PropertyList CFPreferencesCopyAppValue(std::string_view key, std::string_view applicationId) {
  Domain& domain = domainNamed(applicationId);
  if (const auto* value = lookUp(domain.overrides, key)) return *value;
  if (const auto* value = lookUp(domain.unwritten, key)) return *value;
  if (PropertyList value = desktopSetting(key, applicationId); !value.isNull()) return value;
  if (domain.ignoresFile) return {};
  const auto* value = lookUp(domain.file.contents(), key);
  return value != nullptr ? *value : PropertyList();
}

void CFPreferencesSetAppValue(std::string_view key, const PropertyList& value,
                              std::string_view applicationId) {
  // One value that no file can hold would keep all others from being written.
  if (!value.isNull()) {
    const PropertyList entry = PropertyList::Dictionary{{std::string(key), value}};
    if (propertyListWithData(dataWithPropertyList(entry)) != entry) {
      throw std::invalid_argument("a settings file cannot hold the value of " + std::string(key) +
                                  ": lists nest at most " +
                                  std::to_string(MaximumPropertyListDepth - 1) +
                                  " deep, and texts have no control characters");
    }
  }
  domainNamed(applicationId).unwritten.insert_or_assign(std::string(key), value);
}

bool CFPreferencesAppSynchronize(std::string_view applicationId) {
  Domain& domain = domainNamed(applicationId);
  if (domain.unwritten.empty()) return true;
  if (!domain.file.apply(domain.unwritten)) return false;
  domain.unwritten.clear();
  return true;
}

PropertyList::Dictionary CFPreferencesCopyAllValues(std::string_view applicationId) {
  Domain& domain = domainNamed(applicationId);
  PropertyList::Dictionary values;
  if (!domain.ignoresFile) values = domain.file.contents();
  for (const auto* changes : {&domain.unwritten, &domain.overrides}) {
    for (const auto& [key, value] : *changes) {
      if (value.isNull()) {
        values.erase(key);
      } else {
        values.insert_or_assign(key, value);
      }
    }
  }
  return values;
}

void setPreferenceOverride(std::string_view key, const PropertyList& value,
                           std::string_view applicationId) {
  domainNamed(applicationId).overrides.insert_or_assign(std::string(key), value);
}

void ignoreStoredPreferences(std::string_view applicationId) {
  domainNamed(applicationId).ignoresFile = true;
}

bool CFPreferencesAppValueIsForced(std::string_view key, std::string_view applicationId) {
  const Domain& domain = domainNamed(applicationId);
  return domain.ignoresFile || domain.overrides.contains(key);
}

void resetPreferences() { allDomains().clear(); }
