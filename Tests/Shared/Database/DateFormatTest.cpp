// Dates as text, against what `date -u -d @SECONDS` says.

#include <gtest/gtest.h>

#include "Shared/External/fmdb/FMDateFormat.h"

namespace {

TEST(DateFormat, WritesAndReadsBack) {
  struct Case {
    const char* pattern;
    double seconds;
    const char* text;
  };
  for (const Case& value : {Case{"yyyy-MM-dd HH:mm:ss", 0, "1970-01-01 00:00:00"},
                            {"yyyy-MM-dd'T'HH:mm:ss'Z'", 951782400, "2000-02-29T00:00:00Z"},
                            {"d.M.y H 'o''clock'", 1795251600, "21.11.2026 9 o'clock"},
                            {"yyyyMMddHHmmss", -1, "19691231235959"},
                            {"yyyy-MM-dd HH:mm:ss.SSS", -0.25, "1969-12-31 23:59:59.750"}}) {
    const auto format = FMDateFormat::formatWithPattern(value.pattern);
    ASSERT_TRUE(format.has_value()) << value.pattern;
    const auto date = NSDate::dateWithTimeIntervalSince1970(value.seconds);
    const std::string text = format->stringFromDate(date);
    EXPECT_EQ(text, value.text);
    EXPECT_EQ(format->dateFromString(text), date) << text;
  }
}

TEST(DateFormat, RefusesWhatIsNoDate) {
  const auto format = FMDateFormat::formatWithPattern("yyyy-MM-dd HH:mm");
  for (const char* text : {"", "2023-02-29 00:00", "2023-01-01", "2023-1-01 00:00",
                           "2023-01-01 24:00", "2023-01-01 00:00 ", "2023-01-01 00:60",
                           "2023-01-01 -1:00", "99999999999999-01-01 00:00"}) {
    EXPECT_EQ(format->dateFromString(text), std::nullopt) << text;
  }
  for (const char* pattern : {"EEEE", "d MMM", "hh:mm a", "yy-MM-dd"}) {
    EXPECT_FALSE(FMDateFormat::formatWithPattern(pattern).has_value()) << pattern;
  }
}

}  // namespace
