#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/Shared/ZEVColorText.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/TestEnvironment.h"

namespace fs = std::filesystem;

namespace {

using Array = PropertyList::Array;

class Migration : public testing::Test {
 protected:
  Migration() {
    const auto script = fs::path(VELMORA_SOURCE_DIR) / "Tests/Targets/make-old-settings";
    const FinishedProcess made = runToEnd({script.string(), fixtures_.string()});
    EXPECT_EQ(made.status, 0) << made.errors;
    fs::create_directories(settings_);
    fs::create_directories(support_ / "Velmora.bundle");
    fs::copy_file(fixtures_ / "citymap.plist", support_ / "Velmora.bundle" / "citymap.plist");
    setenv("VELMORA_SUPPORT_DIR", support_.c_str(), 1);
  }

  void install(const char* fixture) const {
    fs::copy_file(fixtures_ / fixture, settings_ / "com.wenmark.velmora.extras.plist",
                  fs::copy_options::overwrite_existing);
  }

  fs::path fixtures_ = testFolder() / "old";
  fs::path support_ = testFolder() / "share";
  fs::path settings_ = testFolder() / "config" / "velmora5";
  fs::path domain_ = settings_ / "com.wenmark.velmora5.extras.plist";
};

TEST_F(Migration, CarriesEveryKindOverOfBothForms) {
  CFPreferencesSetAppValue("Time_TextSize", 9, ZEVPreferences_Time::Domain);
  CFPreferencesAppSynchronize(ZEVPreferences_Time::Domain);
  const std::string before = readFile(domain_);
  const auto carried = propertyListWithContentsOfFile(VELMORA_SOURCE_DIR
                                                      "/Tests/Targets/Shared/Cases/migrated.plist");
  ASSERT_TRUE(carried.has_value() && carried->dictionary()->size() == 9);
  for (const char* form : {"old.plist", "old-xml.plist"}) {
    SCOPED_TRACE(form);
    install(form);
    ZEVPreferences_Time store;
    EXPECT_TRUE(store.didMigratePreferences());
    for (const auto& [key, value] : *carried->dictionary())
      EXPECT_EQ(store.objectForKey(key), value) << key;
    for (const char* dropped : {"updateCheckerEnabled", "migratedExtras4.0"})
      EXPECT_TRUE(store.objectForKey(dropped).isNull()) << dropped;
    // What is no colour is dropped, and the default answers.
    EXPECT_EQ(store.objectForKey("CPU_MenubarGraphOverall"),
              store.defaults().at("CPU_MenubarGraphOverall"));
    EXPECT_EQ(store.colorForKey("Time_TextColor"), NSColor::colorWithDeviceRed(0.5, 0.25, 1, 1));
    EXPECT_EQ(readFile(domain_), before) << "the domain stays untouched";

    // The old value hides the stored one until the key is invalidated.
    store.resetValueForKey("Time_TextSize");
    EXPECT_EQ(store.objectForKey("Time_TextSize").integerValue(), 9);
  }
}

TEST_F(Migration, HappensAgainUntilTheMarkIsSet) {
  EXPECT_FALSE(ZEVPreferences_Time().didMigratePreferences()) << "there is nothing yet";
  install("old.plist");
  EXPECT_TRUE(ZEVPreferences_Time().didMigratePreferences());
  EXPECT_FALSE(fs::exists(domain_));
  CFPreferencesSetAppValue("Migrated_5.0", true, ZEVPreferences_Time::Domain);
  ZEVPreferences_Time marked;
  EXPECT_FALSE(marked.didMigratePreferences());
  EXPECT_EQ(marked.objectForKey("Time_TextSize").integerValue(), 13);
}

// A file that cannot be read counts as taken over, with nothing in it.
TEST_F(Migration, OfADamagedFileStartsClean) {
  install("truncated.plist");
  ZEVPreferences_Time store;
  EXPECT_TRUE(store.didMigratePreferences());
  EXPECT_EQ(store.objectForKey("Time_TextSize").integerValue(), 13);
  EXPECT_EQ(store.objectForKey("Time_Cities").array()->size(), 4U);
  // Without the map no city is known: the empty list hides the four default cities.
  install("old.plist");
  fs::remove(support_ / "Velmora.bundle" / "citymap.plist");
  EXPECT_EQ(ZEVPreferences_Time().objectForKey("Time_Cities"), PropertyList(Array{}));
}

}  // namespace
