// Values on their way into a file and back. SQLite itself says what was stored; the expected bytes
// are written out by hand.

#include <algorithm>
#include <cmath>
#include <limits>

#include "Shared/External/fmdb/FMDateFormat.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Shared/Database/DatabaseFixture.h"

namespace {

using Data = PropertyList::Data;
constexpr auto DateFormats = "Shared/Database/Cases/date-formats.txt";
constexpr int64_t Smallest = std::numeric_limits<int64_t>::min();
constexpr int64_t Largest = std::numeric_limits<int64_t>::max();

struct Case {
  PropertyList value;
  const char* stored;  ///< As SQLite writes it.
  PropertyList readBack;
};

Case same(const PropertyList& value, const char* stored) { return {value, stored, value}; }
class Values : public DatabaseFixture {};

TEST_F(Values, AreStoredAndComeBack) {
  const auto database = openedDatabase("values.db");
  ASSERT_TRUE(database->executeUpdate("create table v (v)"));
  const Case cases[] = {
      same({}, "null"),
      same(Smallest, "-9223372036854775808"),
      same(Largest, "9223372036854775807"),
      {true, "1", 1},
      {false, "0", 0},
      same(0.5, "0.5"),
      // 2^53 + 1 is the first whole number that a double cannot hold.
      same(int64_t{9007199254740993}, "9007199254740993"),
      {std::nan(""), "null", {}},
      same("", "''"),
      same(std::string("a\0b", 3), "cast(x'610062' as text)"),
      same(std::string("\0", 1), "cast(x'00' as text)"),
      same("\U0001F468\u200D\U0001F469", "cast(x'F09F91A8E2808DF09F91A9' as text)"),
      same(Data{}, "x''"),
      same(Data{0, 1, 0, 0}, "x'00010000'"),
      {PropertyList::Date{86400.25}, "86400.25", 86400.25},
  };
  for (const Case& value : cases) {
    SCOPED_TRACE(value.stored);
    ASSERT_TRUE(database->executeUpdate("delete from v"));
    ASSERT_TRUE(database->executeUpdate("insert into v values (?)", value.value));
    const std::string stored = value.stored;
    const auto row = database->executeQuery("select v, v is " + stored +
                                            " and typeof(v) = typeof(" + stored + ") from v");
    ASSERT_TRUE(row && row->next());
    EXPECT_TRUE(row->boolForColumnIndex(1));
    EXPECT_EQ(row->objectForColumnIndex(0), value.readBack);
    EXPECT_EQ(row->resultDictionary()->at("v"), value.readBack);
    EXPECT_EQ(row->columnIndexIsNull(0), value.readBack.isNull());
    if (const std::string* text = value.readBack.string()) {
      EXPECT_EQ(row->UTF8StringForColumnIndex(0), *text);
    }
    if (const Data* data = value.readBack.data()) {
      EXPECT_EQ(row->dataForColumnName("V"), *data);
      EXPECT_TRUE(std::ranges::equal(row->dataNoCopyForColumnIndex(0).value(), *data));
    }
  }
}

class Readers : public DatabaseFixture {};

// The readers by name go the way of those by index.
TEST_F(Readers, ConvertAndBear) {
  const auto database = FMDatabase_Time::databaseWithPath(std::nullopt);
  ASSERT_TRUE(database->open()) << "in memory";
  const auto row = database->executeQuery(
      "select -1 as Minus, '12 apples' as text, null as none, 4294967296 as wide, 1.75 as real, "
      "7 as Same, 8 as same");
  ASSERT_TRUE(row && row->next());
  EXPECT_EQ(row->unsignedLongLongIntForColumnName("minus"), std::numeric_limits<uint64_t>::max());
  EXPECT_EQ(row->intForColumnName("TEXT"), 12);
  EXPECT_EQ(row->intForColumnName("Same"), 8);
  EXPECT_EQ(row->resultDictionary()->at("Same"), PropertyList(7));
  EXPECT_EQ(row->longForColumnName("wide"), 4294967296);
  EXPECT_EQ(row->longLongIntForColumnName("wide"), 4294967296);
  EXPECT_TRUE(row->boolForColumnName("wide")) << "its lower 32 bits are all zero";
  EXPECT_EQ(row->doubleForColumnName("real"), 1.75);
  EXPECT_EQ(row->stringForColumnName("real"), "1.75");
  EXPECT_EQ(row->dateForColumnName("real"), NSDate::dateWithTimeIntervalSince1970(1.75));
  EXPECT_EQ(row->UTF8StringForColumnName("none"), std::nullopt);
  EXPECT_EQ(row->dataNoCopyForColumnName("none"), std::nullopt);
  EXPECT_EQ(row->dateForColumnName("none"), std::nullopt);
  EXPECT_EQ(row->columnNameForIndex(0), "Minus");
  for (const int index : {-1, 7}) {
    EXPECT_EQ(row->stringForColumnIndex(index), std::nullopt) << index;
    EXPECT_EQ(row->dateForColumnIndex(index), std::nullopt) << index;
    EXPECT_EQ(row->columnNameForIndex(index), std::nullopt) << index;
  }
  EXPECT_FALSE(database->hadError()) << "reading beside the row is none of the connection";
  const std::string words = systemLogOf([&] { EXPECT_TRUE(row->columnIsNull("apples")); });
  EXPECT_EQ(words, "velmora: Warning: I could not find the column named 'apples'.\n");
}

TEST_F(Readers, TakeTheFirstColumnOfTheFirstRow) {
  const auto database = numbers("first.db", 3);
  const char* query = "select n from numbers where n >= ? order by n";
  EXPECT_EQ(database->intForQuery(query, 2), 2);
  EXPECT_EQ(database->longForQuery(query, PropertyList::Array{3}), 3);
  EXPECT_EQ(database->dataForQuery(query, 1.0), (Data{'1'}));
  EXPECT_EQ(database->doubleForQuery(query, 3), 3.0);
  EXPECT_TRUE(database->boolForQuery(query, 1));
  EXPECT_EQ(database->intForQuery(query, 4), 0);
  EXPECT_EQ(database->stringForQuery(query, 4), std::nullopt);
  EXPECT_FALSE(database->hasOpenResultSets());
}

TEST_F(Readers, DatesGoThroughTheFormatOnce) {
  const auto database = numbers("dates.db", 0);
  const auto date = NSDate::dateWithTimeIntervalSince1970(1709210096);
  database->setDateFormat(FMDatabase_Time::storeableDateFormat("yyyy-MM-dd HH:mm:ss"));
  EXPECT_TRUE(database->executeUpdate("insert into numbers values (1, ?)", date));
  EXPECT_EQ(database->stringForQuery("select word from numbers"), "2024-02-29 12:34:56");
  EXPECT_EQ(database->dateForQuery("select word from numbers"), date);
  EXPECT_EQ(database->dateForQuery("select 'soon'"), std::nullopt);
}

TEST(DateFormat, WritesAndReadsBack) {
  for (const auto& [pattern, seconds, expected] :
       casesIn<std::string, double, std::string>(DateFormats, "texts")) {
    const auto format = FMDateFormat::formatWithPattern(pattern);
    ASSERT_TRUE(format.has_value()) << pattern;
    const auto date = NSDate::dateWithTimeIntervalSince1970(seconds);
    const std::string text = format->stringFromDate(date);
    EXPECT_EQ(text, expected);
    EXPECT_EQ(format->dateFromString(text), date) << text;
  }
}

TEST(DateFormat, RefusesWhatIsNoDate) {
  const auto format = FMDateFormat::formatWithPattern("yyyy-MM-dd HH:mm");
  for (const auto& [text] : casesIn<std::string>(DateFormats, "no dates"))
    EXPECT_EQ(format->dateFromString(text), std::nullopt) << text;
  EXPECT_EQ(format->dateFromString(""), std::nullopt);
  for (const auto& [pattern] : casesIn<std::string>(DateFormats, "no patterns"))
    EXPECT_FALSE(FMDateFormat::formatWithPattern(pattern).has_value()) << pattern;
}

}  // namespace
