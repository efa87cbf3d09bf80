// Where files are: the table of paths, bundles, languages and their tables of texts.

#include <gtest/gtest.h>

#include <filesystem>

#include "Platform/Foundation/Files/NSBundle.h"
#include "Platform/Foundation/Files/NSPathUtilities.h"
#include "Platform/Foundation/Text/StringsFile.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/Files.h"

namespace fs = std::filesystem;

namespace {

constexpr auto Table = "Platform/Foundation/BundleTests.txt";

TEST(Paths, FollowTheBaseDirectories) {
  const EnvironmentVariable home("HOME", "/homes/ada");
  for (const auto& [variable, path, byDefault, bySetting] :
       casesIn<std::string, std::string, std::string, std::string>(Table, "paths")) {
    // The base directory specification: an empty or relative value counts as unset.
    for (const auto& [value, expected] :
         {std::pair<std::optional<std::string>, std::string>{"/elsewhere", bySetting},
          {std::nullopt, byDefault},
          {"", byDefault},
          {"relative/folder", byDefault}}) {
      const EnvironmentVariable setting(variable, value);
      EXPECT_EQ(resolvedPath(path), expected) << value.value_or("(unset)");
    }
  }
}

TEST(Paths, SupportFilesLieInTheInstallation) {
  const char* given = "/Library/Application Support/Velmora 5/x/y";
  // The library of the build lies in its lib folder.
  EXPECT_EQ(resolvedPath(given), fs::path(VELMORA_BINARY_DIR) / "share/velmora5/x/y");
  const EnvironmentVariable setting("VELMORA_SUPPORT_DIR", "/support");
  EXPECT_EQ(resolvedPath(given), "/support/x/y");
}

class Bundle : public testing::Test {
 protected:
  Bundle() {
    for (const char* name :
         {"Sun.svg", "Moon.png", "Both.svg", "Both.png", "a.b.svg", "../outside.svg",
          "de.lproj/a.strings", "en.lproj/a.strings", "pt_BR.lproj/a.strings"}) {
      writeFile(folder / name, "x");
    }
    fs::create_directory(folder / "Folder.svg");
  }

  const fs::path folder = freshFolder() / "Test.bundle";
  const NSBundle bundle = NSBundle::bundleWithPath(folder.string());
};

TEST_F(Bundle, FindsPicturesByName) {
  for (const auto& [name, file] : {std::pair{"Sun.tiff", "Sun.svg"},
                                   {"Moon", "Moon.png"},
                                   {"Both", "Both.svg"},
                                   {"a.b", "a.b.svg"}}) {
    EXPECT_EQ(bundle.pathForImageResource(name), folder / file) << name;
  }
  for (const char* name : {"", "..", ".svg", "Folder", "sun", "../outside.svg", "/etc/passwd"}) {
    EXPECT_EQ(bundle.pathForImageResource(name), "") << name;
  }
  EXPECT_EQ(NSBundle().pathForImageResource("Sun"), "");
}

TEST_F(Bundle, ListsItsLanguagesAndTheirFiles) {
  EXPECT_EQ(bundle.localizations(), (std::vector<std::string>{"de", "en", "pt_BR"}));
  EXPECT_EQ(bundle.pathForResource("a.strings", "de"), folder / "de.lproj/a.strings");
  EXPECT_EQ(bundle.pathForResource("../de.lproj/a.strings", "en"), "");
  EXPECT_EQ(bundle.pathForResource("a.strings", "../Test.bundle/de"), "");
  EXPECT_TRUE(NSBundle::bundleWithPath((folder / "missing").string()).localizations().empty());
}

TEST(Localizations, AreOrderedByPreference) {
  using Names = std::vector<std::string>;
  const Names available = {"de", "en", "pt", "pt_BR", "pt_PT"};
  for (const auto& [wanted, expected] : casesIn<Names, Names>(Table, "languages")) {
    EXPECT_EQ(NSBundle::preferredLocalizationsFromArray(available, wanted), expected);
  }
  EXPECT_EQ(NSBundle::preferredLocalizationsFromArray({"fr", "it"}, {"ja"}), (Names{"fr"}));
  EXPECT_TRUE(NSBundle::preferredLocalizationsFromArray({}, {"ja"}).empty());
}

constexpr std::string_view Strings =
    "\xEF\xBB\xBF/* a comment; \"x\" = \"y\"; */\n"
    "\"plain\" = \"text\"; // to the end \"q\n"
    "\"escapes\"=\"a\\\"b\\\\c\\n\\t\\r\\'\\U00e9\\u20AC\";\n"
    "\"a=b;\" = \"/* no comment */ // neither\";\n"
    "\"twice\" = \"1\"; \"twice\" = \"2\";\n\"empty\" = \"\";";

TEST(StringsTable, ReadsTextsCommentsAndEscapes) {
  const auto table = stringsTableFromText(Strings);
  ASSERT_TRUE(table.has_value());
  EXPECT_EQ(*table, (StringsTable{{"plain", "text"},
                                  {"escapes", "a\"b\\c\n\t\r'\u00E9\u20AC"},
                                  {"a=b;", "/* no comment */ // neither"},
                                  {"twice", "2"},
                                  {"empty", ""}}));
  EXPECT_EQ(stringsTableFromText(""), StringsTable());
  EXPECT_EQ(stringsTableFromText(" // only"), StringsTable());
}

TEST(StringsTable, GivesNothingForAnythingElse) {
  for (const auto& [text] : casesIn<std::string>(Table, "no strings"))
    EXPECT_FALSE(stringsTableFromText(text).has_value()) << text;
}

// Cut anywhere or with any byte changed: nothing, or a table, but no trap.
TEST(StringsTable, DamageIsNoTrap) {
  for (size_t position = 0; position < Strings.size(); ++position) {
    stringsTableFromText(Strings.substr(0, position));
    for (const char byte : {'\0', '"', '\\', '/', '*', '\xFF'}) {
      std::string damaged(Strings);
      damaged[position] = byte;
      stringsTableFromText(damaged);
    }
  }
}

}  // namespace
