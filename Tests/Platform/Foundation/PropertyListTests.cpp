#include "Platform/Foundation/PropertyLists/PropertyList.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/Files.h"

namespace {

using Array = PropertyList::Array;
using Data = PropertyList::Data;
using Date = PropertyList::Date;
using Dictionary = PropertyList::Dictionary;

constexpr int64_t Maximum = std::numeric_limits<int64_t>::max();
constexpr int64_t Minimum = std::numeric_limits<int64_t>::min();

TEST(PropertyListValue, NumbersAndTextsConvert) {
  for (const auto& [xml, truth, integer, real] : casesIn<std::string, bool, int64_t, double>(
           "Platform/Foundation/PropertyListTests.txt", "conversions")) {
    SCOPED_TRACE(xml);
    const PropertyList value = propertyListWithData("<plist>" + xml + "</plist>").value();
    EXPECT_EQ(value.boolValue(), truth);
    EXPECT_EQ(value.integerValue(), integer);
    EXPECT_EQ(value.doubleValue(), real);
    EXPECT_EQ(value.floatValue(), static_cast<float>(std::clamp<double>(real, -FLT_MAX, FLT_MAX)));
  }
  EXPECT_EQ(PropertyList().doubleValue(), 0);
  EXPECT_EQ(PropertyList(std::nan("")).integerValue(), 0);
}

void expectRoundTrip(const PropertyList& value) {
  const std::string xml = dataWithPropertyList(value);
  const auto back = propertyListWithData(xml);
  ASSERT_TRUE(back.has_value()) << xml;
  EXPECT_EQ(*back, value) << xml << dataWithPropertyList(*back);
}

TEST(PropertyListXml, EveryKindReadsBackTheSame) {
  for (const double real : {0.0, 1.0 / 3, 5e-324, DBL_MAX, 1e22})
    expectRoundTrip(real);
  for (const int64_t integer : {int64_t{-1}, Maximum, Minimum})
    expectRoundTrip(integer);
  for (const char* text :
       {"", " ", "  a \n\tb ", "&<>\"'", "&amp;lt;", "Zürich \U0001F600", "a\r\nb"}) {
    expectRoundTrip(text);
    expectRoundTrip(Dictionary{{text, text}});
  }
  for (const size_t size : {0, 1, 2, 3})
    expectRoundTrip(Data(size, 0xFE));
  EXPECT_EQ(base64Text({'f', 'o', 'o', 'b'}), "Zm9vYg==") << "RFC 4648, chapter 10";
  for (const char* moment : {"1901-02-03 04:05:06", "1969-12-31 23:59:59", "4001-01-01 00:00:00"}) {
    expectRoundTrip(Date{utc(moment).timeIntervalSince1970()});
  }
  const Dictionary nested{{"a", Array{Array{}, Dictionary{}}}, {"b", true}, {"c", false}};
  expectRoundTrip(nested);
  // As Python's plistlib writes it, for people who open their settings with an editor.
  EXPECT_TRUE(dataWithPropertyList(nested).ends_with(
      "<plist version=\"1.0\">\n<dict>\n\t<key>a</key>\n\t<array>\n\t\t<array/>\n\t\t<dict/>\n"
      "\t</array>\n\t<key>b</key>\n\t<true/>\n\t<key>c</key>\n\t<false/>\n</dict>\n</plist>\n"));
}

// XML has no form for these characters, nor for years of more than four digits; one value that
// holds them must not spoil the whole file.
TEST(PropertyListXml, LeavesOutWhatXmlCannotHold) {
  const std::string odd("a\0\1b\x1F", 5);
  for (const double seconds : {1e300, -1e300, std::nan(""), HUGE_VAL}) {
    const auto back =
        propertyListWithData(dataWithPropertyList(Dictionary{{"k", odd}, {"date", Date{seconds}}}));
    ASSERT_TRUE(back.has_value()) << seconds;
    EXPECT_EQ(back->dictionary()->at("k"), PropertyList("ab"));
  }
}

TEST(PropertyListXml, OtherSpellingsAreRead) {
  const std::string body =
      "<plist version=\"1.0\"><dict><!-- note --><key>a</key><integer>-3</integer>\n"
      "<key>b</key><string>x &#65; y</string></dict></plist>";
  for (const char* opening : {"", "\n  ", "\xEF\xBB\xBF", "<?xml version=\"1.0\"?>"}) {
    const auto list = propertyListWithData(opening + body);
    ASSERT_TRUE(list.has_value()) << opening;
    EXPECT_EQ(*list, PropertyList(Dictionary{{"a", -3}, {"b", "x A y"}})) << opening;
  }
}

// A process that shows its windows in German has a comma for its decimal mark.
TEST(PropertyListXml, RealsDoNotFollowTheProcesssLocale) {
  const auto folder = freshFolder();
  const std::string make = "localedef -i de_DE -f UTF-8 " + (folder / "de_DE.UTF-8").string();
  if (std::system((make + " >/dev/null 2>&1").c_str()) != 0) GTEST_SKIP() << "no locale sources";
  const EnvironmentVariable path("LOCPATH", folder.string());
  ASSERT_NE(setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
  expectRoundTrip(0.5);
  setlocale(LC_ALL, "C");
}

TEST(PropertyListFiles, HoldWhatAnotherWriterWrote) {
  const auto binary = propertyListWithContentsOfFile(fixture("every-kind.plist"));
  ASSERT_TRUE(binary.has_value());
  EXPECT_EQ(binary, propertyListWithContentsOfFile(fixture("every-kind.xml")));
  const Dictionary& values = *binary->dictionary();
  EXPECT_EQ(values.size(), 11U);
  EXPECT_EQ(values.at("date"), Date{utc("2069-07-20 12:34:56").timeIntervalSince1970()});
  EXPECT_EQ(values.at("integers"),
            (Array{0, 255, 256, 65536, int64_t{1} << 32, -1, Minimum, Maximum}));
  EXPECT_EQ(values.at("data"), (Data{0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(values.at("unicode"), "Zürich \U0001F600 &<>");
  // References, of a keyed archive and to one text.
  EXPECT_EQ(propertyListWithContentsOfFile(fixture("references.plist")),
            PropertyList(Dictionary{{"$objects", Array{"$null", "x"}},
                                    {"$top", Dictionary{{"root", Dictionary{{"CF$UID", 1}}}}}}));
  EXPECT_EQ(propertyListWithContentsOfFile(fixture("repeated.plist")),
            PropertyList(Array(3000, std::string(50, 'x'))));
}

// Two of these would take the memory of 2^40 lists and of a thousand long texts.
TEST(PropertyListFiles, GiveNothingForWhatItCannotHold) {
  for (const char* none :
       {"wide-integer.plist", "doubling.plist", "oversized.plist", "missing", "."}) {
    EXPECT_FALSE(propertyListWithContentsOfFile(fixture(none)).has_value()) << none;
  }
}

std::string xmlOfManyKinds() {
  return dataWithPropertyList(Dictionary{
      {"a", Array{1, 2.5, "x &", Data{1, 2}, Date{0}}}, {"b", true}, {"c", Dictionary{}}});
}

TEST(DamagedPropertyList, GivesNothingWhereverItIsCut) {
  const std::string xml = xmlOfManyKinds();
  const size_t end = xml.find("</plist>") + std::string_view("</plist>").size();
  for (const std::string& whole : {xml.substr(0, end), readFile(fixture("every-kind.plist"))}) {
    for (size_t length = 0; length < whole.size(); ++length)
      EXPECT_FALSE(propertyListWithData(whole.substr(0, length)).has_value()) << length;
  }
}

// Whatever the bytes say: nothing or a value, but an end and no trap.
TEST(DamagedPropertyList, GarbageIsNoTrap) {
  std::mt19937 random(20240229);
  for (const std::string& whole : {readFile(fixture("every-kind.plist")),
                                   readFile(fixture("references.plist")), xmlOfManyKinds()}) {
    for (int round = 0; round < 2000; ++round) {
      std::string bytes = whole;
      for (int count = 1 + round % 5; count > 0; --count)
        bytes[random() % bytes.size()] = static_cast<char>(random());
      propertyListWithData(bytes);
    }
  }
  for (const char* text : {"", "x", "bplist00", "<plist></plist>", "<a></plist>",
                           "<plist><string></plist>", "<plist><integer/></plist>"}) {
    EXPECT_FALSE(propertyListWithData(text).has_value()) << text;
  }
  propertyListWithData(std::string("<plist version=\"1.0\"><string>a\0b</string></plist>", 49));
}

TEST(DamagedPropertyList, DeepNestingIsNoTrap) {
  for (const int depth : {64, 65, 1'000'000}) {
    std::string lists;
    for (int level = 0; level < depth; ++level)
      lists += "<array>";
    for (int level = 0; level < depth; ++level)
      lists += "</array>";
    EXPECT_EQ(propertyListWithData("<plist>" + lists + "</plist>").has_value(), depth == 64);
  }
}

// What no settings file can hold takes the entry along in which it stands, and nothing else.
TEST(DamagedPropertyList, LosesOnlyTheEntryOfABadValue) {
  for (const std::string bad :
       {"<integer>9223372036854775808</integer>", "<integer>1x</integer>", "<real>nan</real>",
        "<real>1e999</real>", "<date>0000-01-01T00:00:00Z</date>", "<true>1</true>", "<unknown/>",
        "<array><true/><integer/></array>"}) {
    std::vector<std::string> dropped;
    const auto list = propertyListWithData(
        "<plist><dict><key>b</key>" + bad + "<key>c</key><true/></dict></plist>", &dropped);
    EXPECT_EQ(list, PropertyList(Dictionary{{"c", true}})) << bad;
    EXPECT_EQ(dropped, std::vector<std::string>{"b"}) << bad;
  }
}

}  // namespace
