// Values on their way into a file and back. SQLite's own typeof() and hex() say what was stored;
// the expected bytes are written out by hand.

#include <cmath>
#include <limits>

#include "Tests/Shared/Database/DatabaseFixture.h"

namespace {

using Data = PropertyList::Data;
constexpr int64_t Smallest = std::numeric_limits<int64_t>::min();
constexpr int64_t Largest = std::numeric_limits<int64_t>::max();

struct Case {
  const char* name;
  PropertyList value;
  const char* type;  ///< What SQLite calls it.
  const char* hex;   ///< The bytes of a text or a blob, or the digits of a number, as hexadecimals.
  PropertyList readBack;
};

class Values : public DatabaseFixture, public testing::WithParamInterface<Case> {};

TEST_P(Values, ComeBackFromTheFile) {
  const Case& value = GetParam();
  const std::string path = pathTo("values.db");
  auto database = FMDatabase_Time::databaseWithPath(path);
  ASSERT_TRUE(database->open());
  ASSERT_TRUE(database->executeUpdate("create table v (v)"));
  ASSERT_TRUE(database->executeUpdate("insert into v values (?)", value.value));
  ASSERT_TRUE(database->close());

  database = FMDatabase_Time::databaseWithPath(path);
  ASSERT_TRUE(database->openWithFlags(FMOpenReadOnly));
  const auto row = database->executeQuery("select v, typeof(v), hex(v) from v");
  ASSERT_TRUE(row && row->next());
  EXPECT_EQ(row->stringForColumnIndex(1), value.type);
  EXPECT_EQ(row->stringForColumnIndex(2), value.hex);
  EXPECT_EQ(row->objectForColumnIndex(0), value.readBack);
  EXPECT_EQ(row->resultDictionary()->at("v"), value.readBack);
  EXPECT_EQ(row->columnIndexIsNull(0), value.readBack.isNull());
  if (const std::string* text = value.readBack.string()) {
    EXPECT_EQ(row->UTF8StringForColumnIndex(0), *text);
  }
  if (const Data* data = value.readBack.data()) {
    const auto bytes = row->dataNoCopyForColumnIndex(0);
    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(Data(bytes->begin(), bytes->end()), *data);
    EXPECT_EQ(row->dataForColumnName("V"), *data);
  }
}

Case same(const char* name, const PropertyList& value, const char* type, const char* hex) {
  return {name, value, type, hex, value};
}

INSTANTIATE_TEST_SUITE_P(
    EveryKind, Values,
    testing::Values(
        same("Null", {}, "null", ""),
        same("SmallestInteger", Smallest, "integer", "2D39323233333732303336383534373735383038"),
        same("LargestInteger", Largest, "integer", "39323233333732303336383534373735383037"),
        Case{"True", true, "integer", "31", 1}, Case{"False", false, "integer", "30", 0},
        same("Real", 0.5, "real", "302E35"),
        // 2^53 + 1 is the first whole number that a double cannot hold.
        same("WideInteger", int64_t{9007199254740993}, "integer",
             "39303037313939323534373430393933"),
        Case{"NotANumber", std::nan(""), "null", "", {}}, same("EmptyText", "", "text", ""),
        same("U1AndU7F", "\x01\x7f", "text", "017F"),
        same("U0Within", std::string("a\0b", 3), "text", "610062"),
        same("U0Alone", std::string("\0", 1), "text", "00"),
        same("Emoji", "\U0001F468\u200D\U0001F469", "text", "F09F91A8E2808DF09F91A9"),
        same("EmptyBlob", Data{}, "blob", ""), same("Zeros", Data{0, 1, 0, 0}, "blob", "00010000"),
        Case{"Date", PropertyList::Date{86400.25}, "real", "38363430302E3235", 86400.25}),
    [](const auto& value) { return value.param.name; });

class Readers : public DatabaseFixture {};

TEST_F(Readers, ConvertAndBear) {
  const auto database = FMDatabase_Time::databaseWithPath(std::nullopt);
  ASSERT_TRUE(database->open());
  const auto row = database->executeQuery(
      "select -1 as Minus, '12 apples' as text, null as none, 4294967296 as wide, 1.75 as real");
  ASSERT_TRUE(row && row->next());
  EXPECT_EQ(row->unsignedLongLongIntForColumnName("minus"), std::numeric_limits<uint64_t>::max());
  EXPECT_EQ(row->intForColumnName("TEXT"), 12);
  EXPECT_EQ(row->longForColumnName("wide"), 4294967296);
  EXPECT_EQ(row->longLongIntForColumnName("wide"), 4294967296);
  // Its lower 32 bits are all zero.
  EXPECT_TRUE(row->boolForColumnName("wide"));
  EXPECT_EQ(row->doubleForColumnName("real"), 1.75);
  EXPECT_EQ(row->stringForColumnName("real"), "1.75");
  EXPECT_EQ(row->dateForColumnName("real"), NSDate::dateWithTimeIntervalSince1970(1.75));
  EXPECT_EQ(row->objectForColumnName("minus"), PropertyList(-1));
  EXPECT_EQ(row->UTF8StringForColumnName("none"), std::nullopt);
  EXPECT_EQ(row->dataNoCopyForColumnName("none"), std::nullopt);
  EXPECT_TRUE(row->columnIsNull("none"));
  EXPECT_EQ(row->dateForColumnIndex(2), std::nullopt);
  for (const int index : {-1, 5, 1000}) {
    EXPECT_EQ(row->stringForColumnIndex(index), std::nullopt);
    EXPECT_EQ(row->dataForColumnIndex(index), std::nullopt);
    EXPECT_EQ(row->intForColumnIndex(index), 0);
    EXPECT_EQ(row->dateForColumnIndex(index), std::nullopt);
    EXPECT_TRUE(row->objectForColumnIndex(index).isNull());
    EXPECT_EQ(row->columnNameForIndex(index), std::nullopt);
  }
  // Reading beside the row is no error of the connection.
  EXPECT_FALSE(database->hadError());
  const std::string words = systemLogOf([&] { EXPECT_TRUE(row->columnIsNull("apples")); });
  EXPECT_EQ(words, "velmora: Warning: I could not find the column named 'apples'.\n");
}

TEST_F(Readers, TakeTheFirstColumnOfTheFirstRow) {
  const auto database = numbers("first.db", 3);
  const char* query = "select n from numbers where n >= ? order by n";
  EXPECT_EQ(database->intForQuery(query, 2), 2);
  EXPECT_EQ(database->longForQuery(query, PropertyList::Array{3}), 3);
  EXPECT_EQ(database->stringForQuery(query, PropertyList(1)), "1");
  EXPECT_EQ(database->dataForQuery(query, 1.0), (Data{'1'}));
  EXPECT_EQ(database->doubleForQuery(query, 3), 3.0);
  EXPECT_TRUE(database->boolForQuery(query, 1));
  EXPECT_EQ(database->dateForQuery(query, 1), NSDate::dateWithTimeIntervalSince1970(1));
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

}  // namespace
