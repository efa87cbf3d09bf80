// Fails when the clock's vocabulary gains an element without a case in each walker, or the code a
// settings key of the Time module or a notification that no test is listed for.

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <string>

#include "Targets/VelmoraTime/Classes/ClockElements.h"
#include "Tests/Targets/CaseTable.h"

namespace {

namespace fs = std::filesystem;

/// Text in the code → the test that covers it, as "Suite, Name", or "- " and why there is none.
std::multimap<std::string, std::string> listedNames() {
  std::multimap<std::string, std::string> names;
  for (const auto& [name, test] : casesIn<std::string, std::string>("names.txt"))
    names.emplace(name, test);
  return names;
}

/// The elements with a case in each walker.
std::set<std::string> elementsWithCases() {
  std::set<std::string> elements;
  for (const auto& [element, inDateString, inBar, inCity] :
       casesIn<std::string, std::string, std::string, std::string>(
           "VelmoraTime/Cases/elements.txt"))
    elements.insert(element);
  return elements;
}

/// The sources below a folder of the repository, by path.
std::map<std::string, std::string> sourcesIn(const char* folder) {
  std::map<std::string, std::string> sources;
  for (const auto& entry :
       fs::recursive_directory_iterator(fs::path(VELMORA_SOURCE_DIR) / folder)) {
    const auto extension = entry.path().extension();
    if (extension == ".cpp" || extension == ".h") {
      sources.emplace(entry.path().string(), readFile(entry.path()));
    }
  }
  return sources;
}

void collect(const std::string& source, const std::regex& pattern, std::set<std::string>& found) {
  for (std::sregex_iterator match(source.begin(), source.end(), pattern), end; match != end;
       ++match) {
    found.insert((*match)[1]);
  }
}

/// What the code knows by name.
std::set<std::string> namesInTheCode() {
  const std::regex named(
      R"re("(__[A-Z_]+|FUZZY|Time_\w+|[A-Z]\w+(Notification|Changed|Change|UnloadedExtra))")re");
  const std::regex key(R"re((?:ForKey|offsetForFont|RefreshKey)\(\s*"([^"]+)")re");
  const std::regex element(R"re("(([a-zA-Z])\2*|'[:.]')")re");
  std::set<std::string> names;
  for (const auto& [path, source] : sourcesIn("Targets")) {
    collect(source, named, names);
    if (path.find("Migration") == std::string::npos) collect(source, key, names);
    if (source.find("ClockElements") != std::string::npos) collect(source, element, names);
  }
  // In the user information of notifications.
  names.erase("key");
  names.erase("resetKey");
  return names;
}

TEST(Tripwire, EveryElementHasACaseInEachWalker) {
  const auto elements = elementsWithCases();
  for (const ClockElement& entry : clockVocabulary())
    EXPECT_TRUE(elements.contains(std::string(entry.name))) << entry.name;
}

TEST(Tripwire, EveryNameInTheCodeIsTestedOrParked) {
  const auto names = namesInTheCode();
  const auto listed = listedNames();
  const auto elements = elementsWithCases();
  EXPECT_GT(names.size(), 50) << "the sources were not found";
  for (const std::string& name : names) {
    EXPECT_NE(listed.contains(name), elements.contains(name))
        << "\"" << name << "\" must be listed, as tested or with a reason, or have a case";
  }
  for (const auto& [name, test] : listed)
    EXPECT_TRUE(names.contains(name)) << name << " has gone";
}

TEST(Tripwire, EveryListedTestExistsAndNamesItsSubject) {
  const auto tests = sourcesIn("Tests/Targets");
  for (const auto& [name, test] : listedNames()) {
    if (test.starts_with("- ")) continue;
    bool isThere = false;
    for (const auto& [path, source] : tests) {
      isThere = isThere || (source.find("(" + test + ")") != std::string::npos &&
                            source.find("\"" + name + "\"") != std::string::npos);
    }
    EXPECT_TRUE(isThere) << test << " for " << name;
  }
}

}  // namespace
