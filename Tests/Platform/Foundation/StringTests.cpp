#include "Platform/Foundation/Text/NSString.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cstdint>
#include <limits>
#include <stdexcept>

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

TEST(Numbers, IntegersAreReadFromTheFront) {
  constexpr int64_t Maximum = std::numeric_limits<int64_t>::max();
  constexpr int64_t Minimum = std::numeric_limits<int64_t>::min();
  for (const auto& [text, value] : {std::pair{"", int64_t{0}},
                                    {"-5", -5},
                                    {"+5", 5},
                                    {"- 5", 0},
                                    {"  12abc", 12},
                                    {"\t\n\u00A07", 7},
                                    {"٠٩", 9},
                                    {"१२", 12},
                                    {"9223372036854775807", Maximum},
                                    {"9223372036854775808", Maximum},
                                    {"-9223372036854775808", Minimum},
                                    {"-9223372036854775809", Minimum}}) {
    EXPECT_EQ(integerValue(text), value) << text;
  }
}

TEST(Numbers, RealsAreReadFromTheFront) {
  for (const auto& [text, value] :
       {std::pair{"", 0.0}, {"-5", -5.0},       {"+2.5", 2.5},      {"  12abc", 12.0},
        {".5", 0.5},        {"-.25e2x", -25.0}, {"nan", 0.0},       {"inf", 0.0},
        {"-inf", 0.0},      {"infinity", 0.0},  {"1e400", DBL_MAX}, {"-1e400", -DBL_MAX},
        {"1e-400", 0.0},    {"-1e-400", 0.0},   {"5e-324", 5e-324}, {"0.1", 0.1},
        {"1e", 1.0},        {"-", 0.0},         {"0x10", 0.0},      {"1,5", 1.0}}) {
    EXPECT_EQ(doubleValue(text), value) << text;
  }
  EXPECT_EQ(floatValue("1e39"), FLT_MAX);
  EXPECT_EQ(floatValue("-1e400"), -FLT_MAX);
  EXPECT_EQ(floatValue("0.1"), 0.1F);
}

}  // namespace
