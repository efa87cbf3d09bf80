#include "Platform/Foundation/Text/NSString.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cstdlib>
#include <stdexcept>

#include "Tests/Platform/Support/CaseTable.h"

namespace {

using namespace std::string_view_literals;

// U+1F600 takes four bytes, U+20AC three, U+00E9 two; U+0301 joins the letter before it.
TEST(Text, IsCountedAndCutByCodePoints) {
  EXPECT_EQ(stringLength(""), 0U);
  EXPECT_EQ(stringLength("a\u00E9\u20AC\U0001F600"), 4U);
  EXPECT_EQ(stringLength("e\u0301"), 2U);
  EXPECT_EQ(stringLength("a\0b"sv), 3U);
  EXPECT_EQ(substringToIndex("\u20AC\U0001F600x", 2), "\u20AC\U0001F600");
  EXPECT_EQ(substringToIndex("\u20AC\U0001F600x", 99), "\u20AC\U0001F600x");
  EXPECT_EQ(stringByDroppingFirstAndLast("\U0001F600ab\u20AC"), "ab");
  EXPECT_EQ(stringByDroppingFirstAndLast("\u20AC\u20AC"), "");
  EXPECT_THROW(stringByDroppingFirstAndLast("\U0001F600"), std::out_of_range);
  EXPECT_THROW(stringByDroppingFirstAndLast(""), std::out_of_range);
}

TEST(Text, BrokenUtf8IsNoTrap) {
  for (const auto text : {"\xFF"sv, "\x80\x80"sv, "a\xE2\x82"sv, "\xF0\x9F\x98"sv, "\xC0\x80"sv}) {
    EXPECT_LE(substringToIndex(text, 1).size(), text.size());
    EXPECT_EQ(integerValue(text), 0);
    EXPECT_EQ(lowercaseString(text).find('\xFF'), std::string::npos);
  }
}

// Without a language's rules: the Turkish i stays, the sharp s grows as Unicode has it.
TEST(Text, CaseIsThatOfNoLanguage) {
  EXPECT_EQ(lowercaseString("ÄÖÜ ΑΣ I"), "äöü ας i");
  EXPECT_EQ(uppercaseString("straße i"), "STRASSE I");
}

TEST(Text, IsSplitAndReplaced) {
  using Pieces = std::vector<std::string>;
  EXPECT_EQ(componentsSeparatedByString("a, b, ", ", "), (Pieces{"a", "b", ""}));
  EXPECT_EQ(componentsSeparatedByString("abc", ""), (Pieces{"abc"}));
  EXPECT_EQ(componentsSeparatedByString("aaa", "aa"), (Pieces{"", "a"}));
  EXPECT_EQ(stringByReplacingOccurrences("aaa", "aa", "b"), "ba");
  EXPECT_EQ(stringByReplacingOccurrences("a.b", ".", ".."), "a..b");
  EXPECT_EQ(stringByReplacingOccurrences("abc", "", "x"), "abc");
}

constexpr auto Table = "Platform/Foundation/StringTests.txt";

TEST(Numbers, IntegersAreReadFromTheFront) {
  for (const auto& [text, value] : casesIn<std::string, int64_t>(Table, "integers"))
    EXPECT_EQ(integerValue(text), value) << text;
  EXPECT_EQ(integerValue("\t\n\u00A07"), 7);
}

TEST(Numbers, RealsAreReadFromTheFront) {
  for (const auto& [text, value] : casesIn<std::string, double>(Table, "reals"))
    EXPECT_EQ(doubleValue(text), value) << text;
  EXPECT_EQ(floatValue("1e39"), FLT_MAX);
  EXPECT_EQ(floatValue("-1e400"), -FLT_MAX);
  EXPECT_EQ(floatValue("0.1"), 0.1F);
}

}  // namespace
