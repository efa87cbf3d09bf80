// Fails when the clock's vocabulary gains an element without a case in each walker, or the code a
// settings key of the Time module or a notification that no test is listed for.

#include <gtest/gtest.h>

#include <algorithm>

#include "Targets/VelmoraTime/Classes/ClockElements.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/SourceTexts.h"

namespace {

/// Text in the code, and the test that covers it, as "Suite, Name", or "- " and why there is none.
auto listedNames() { return casesIn<std::string, std::string>("Targets/names.txt"); }

/// The elements with a case in each walker.
std::set<std::string> elementsWithCases() {
  std::set<std::string> elements;
  for (const auto& [element, inDateString, inBar, inCity] :
       casesIn<std::string, std::string, std::string, std::string>(
           "Targets/VelmoraTime/Cases/elements.txt"))
    elements.insert(element);
  return elements;
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
  std::set<std::string> listed;
  for (const auto& [name, test] : listedNames())
    listed.insert(name);
  const auto elements = elementsWithCases();
  EXPECT_GT(names.size(), 50) << "the sources were not found";
  for (const std::string& name : names) {
    EXPECT_NE(listed.contains(name), elements.contains(name))
        << "\"" << name << "\" must be listed, as tested or with a reason, or have a case";
  }
  for (const std::string& name : listed)
    EXPECT_TRUE(names.contains(name)) << name << " has gone";
}

/// A test's source with the files of cases that it names.
std::string withCases(std::string source) {
  std::set<std::string> files;
  collect(source, std::regex(R"re((\w+/Cases/[a-z-]+\.[a-z]+)")re"), files);
  for (const std::string& file : files)
    source += readFile(VELMORA_SOURCE_DIR "/Tests/Targets/" + file);
  return source;
}

TEST(Tripwire, EveryListedTestExistsAndNamesItsSubject) {
  std::vector<std::string> tests;
  for (const auto& [path, source] : sourcesIn("Tests/Targets"))
    tests.push_back(withCases(source));
  for (const auto& [name, test] : listedNames()) {
    if (test.starts_with("- ")) continue;
    const bool isThere =
        std::ranges::any_of(tests, [&name = name, &test = test](const std::string& source) {
          return source.find("(" + test + ")") != std::string::npos &&
                 (source.find("\"" + name + "\"") != std::string::npos ||
                  source.find(">" + name + "<") != std::string::npos ||
                  source.find("\n" + name + " ") != std::string::npos);
        });
    EXPECT_TRUE(isThere) << test << " for " << name;
  }
}

}  // namespace
