#include "Shared/Collectors/CityStatCollector.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "Shared/External/fmdb/FMDatabase.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Support/ChildProcess.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

// In another order than that of their identifiers.
constexpr const char* Cities = R"(values
    (70, 'São Paulo', 'Sao Paulo', 'São Paulo', 'Brazil'),
    (10, 'Saint Paul', 'Saint Paul', 'Minnesota', 'United States'),
    (60, 'St. Paul', 'St. Paul', 'Alberta', 'Canada'),
    (20, 'St Paul', 'St Paul', 'Cornwall', 'United Kingdom'),
    (50, 'Georgia', 'Georgia', 'Vermont', 'Georgia'),
    (30, 'SaintPaul', 'SaintPaul', '', 'Nowhere'),
    (40, 'St  Paul', 'St  Paul', '', null))";

/// A query for so many rows that are the same.
std::string copies(int count, const std::string& row) {
  return "select " + row +
         " from (with recursive up(n) as (select 1 union all select n + 1 from "
         "up limit " +
         std::to_string(count) + ") select n from up)";
}

/// Hears of everything on the collector's queue, which may still be calling when a test has ended.
struct Listener : CityStatCollectorDelegate {
  void cityCollectorFinishedLoading() override {
    ++loads;
    dispatch_semaphore_signal(loaded);
    if (holdsQueue.exchange(false)) dispatch_semaphore_wait(mayGoOn);
  }
  void cityCollectorGotSearchResults(const std::vector<CityRecord>& cities,
                                     const std::string& search) override {
    dispatch_async(dispatch_get_main_queue(), [this, search, count = cities.size()] {
      searches.push_back(search + " " + std::to_string(count));
    });
  }

  std::atomic<int> loads = 0;
  const dispatch_semaphore_t loaded = dispatch_semaphore_create(0);
  const dispatch_semaphore_t mayGoOn = dispatch_semaphore_create(0);
  /// Keeps the queue from going on behind the next loading until it may.
  std::atomic<bool> holdsQueue = false;
  std::vector<std::string> searches;
};

class CityCollector : public testing::Test {
 protected:
  // A search that does not end must end its test, and no more than that.
  CityCollector() { alarm(20); }
  ~CityCollector() override { alarm(0); }

  /// A loading queues up behind whatever else the queue still has for the main loop, and ends by
  /// handing over to it whom it has told.
  void TearDown() override {
    load();
    EXPECT_TRUE(waitUntil([&] {
      time.loop.runPending();
      return listener.use_count() == 1;
    }));
  }

  /// A database of the rows that a query gives.
  void loadCities(const std::string& rows = Cities) {
    std::filesystem::remove(folder / "cities.db");
    const auto database = FMDatabase_Time::databaseWithPath((folder / "cities.db").string());
    ASSERT_TRUE(database->open());
    ASSERT_TRUE(database->executeStatements(
        "create table cities (identifier integer, city text, city_plain text, state text, country "
        "text, timezone text default 'Europe/Paris', latitude real default 48.5, longitude real "
        "default -2); insert into cities (identifier, city, city_plain, state, country) " +
        rows));
    load();
  }

  void load() {
    collector->addDelegate(listener);
    collector->loadDatabase();
    dispatch_semaphore_wait(listener->loaded);
  }

  /// Searches for one text after the other while the collector's queue is busy with a loading.
  void searchBehindALoading(const std::vector<std::string>& texts) {
    listener->holdsQueue = true;
    loadCities();
    for (const std::string& text : texts)
      collector->searchWithString(text);
    dispatch_semaphore_signal(listener->mayGoOn);
  }

  /// The answers to searches once there are so many, and whatever comes behind them.
  std::vector<std::string> answers(size_t count) {
    EXPECT_TRUE(waitUntil([&] {
      time.loop.runPending();
      return listener->searches.size() >= count;
    }));
    load();
    time.loop.runPending();
    return listener->searches;
  }

  /// The names found, in order.
  std::string found(std::string_view text) {
    std::string names;
    for (const CityRecord& city : collector->citiesWithMatch(text)) {
      names += (names.empty() ? "" : ", ") + city.city;
    }
    return names;
  }

  SimulatedTime time;
  const std::filesystem::path folder = freshFolder();
  const EnvironmentVariable support{"VELMORA_SUPPORT_DIR", folder.string()};
  const std::shared_ptr<CityStatCollector_Time> collector =
      std::make_shared<CityStatCollector_Time>();
  const std::shared_ptr<Listener> listener = std::make_shared<Listener>();
};

TEST_F(CityCollector, FindsByPrefixInTheOrderOfTheFile) {
  loadCities();
  for (const auto& [text, names] :
       casesIn<std::string, std::string>("Shared/Collectors/Cases/city-searches.txt"))
    EXPECT_EQ(found(text), names) << text;
  EXPECT_EQ(collector->citiesWithStateMatch("min").size(), 1);
}

TEST_F(CityCollector, AnIdentifierMayBeANumberOrAText) {
  loadCities();
  const auto byText = collector->cityWithIdentifier("20");
  ASSERT_TRUE(byText);
  EXPECT_EQ(byText, collector->cityWithIdentifier(20));
  EXPECT_EQ(*byText, (CityRecord{20, "St Paul", "St Paul", "Cornwall", "United Kingdom",
                                 "Europe/Paris", 48.5, -2}));
  EXPECT_EQ(collector->cityWithIdentifier(40)->country, std::nullopt);
  EXPECT_EQ(collector->cityWithIdentifier(70)->cityPlain, "Sao Paulo");
  for (const PropertyList& none : {PropertyList(99), PropertyList("x"), PropertyList("2'"),
                                   PropertyList(), PropertyList("")}) {
    EXPECT_FALSE(collector->cityWithIdentifier(none));
  }
}

TEST_F(CityCollector, ACountryIsAskedForWhereNamesGiveFewerThanAThousand) {
  for (const int named : {999, 1000}) {
    loadCities(copies(named, "1, 'Xa', 'Xa', '', 'Y'") + " union all " +
               copies(1100, "2, 'Z', 'Z', '', 'Xland'"));
    EXPECT_EQ(collector->citiesWithMatch("x").size(), named == 999 ? 999 + 1000 : 1000);
    EXPECT_EQ(collector->citiesWithMatch("xl").size(), 1000);
  }
}

TEST_F(CityCollector, OnlyTheNewestSearchWaits) {
  searchBehindALoading({"sai", "st", "geo"});
  EXPECT_EQ(answers(2), (std::vector<std::string>{"sai 2", "geo 2"}));
}

TEST_F(CityCollector, AnEmptySearchClearsWhatWaitsAndStopsNothing) {
  searchBehindALoading({"", "sai", "st", "", "geo", ""});
  EXPECT_EQ(answers(1), std::vector<std::string>{"sai 2"});
  collector->searchWithString("st.");
  EXPECT_EQ(answers(2), (std::vector<std::string>{"sai 2", "st. 5"}));
}

TEST_F(CityCollector, AMissingOrDamagedDatabaseHasNoCities) {
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  EXPECT_FALSE(collector->cityWithIdentifier("20")) << "before the database is loaded";
  load();
  EXPECT_FALSE(collector->cityWithIdentifier("20"));
  EXPECT_TRUE(collector->citiesWithMatch("s").empty());
  EXPECT_FALSE(std::filesystem::exists(folder / "cities.db"));
  writeFile(folder / "cities.db",
            "this is no database, and it is longer than a header: " + std::string(2000, 'x'));
  load();
  EXPECT_TRUE(collector->citiesWithMatch("st s").empty());
  EXPECT_EQ(testing::internal::GetCapturedStderr() + testing::internal::GetCapturedStdout(), "");
}

TEST_F(CityCollector, DelegatesAreToldOnceAndNoLongerWhenRemovedOrGone) {
  const auto kept = std::make_shared<Listener>();
  const auto removed = std::make_shared<Listener>();
  auto gone = std::make_shared<Listener>();
  collector->addDelegate(kept);
  collector->addDelegate(kept);
  collector->addDelegate(removed);
  collector->addDelegate(gone);
  gone.reset();
  load();
  collector->removeDelegate(*removed);
  load();
  EXPECT_EQ(kept->loads, 2);
  EXPECT_EQ(removed->loads, 1);
}

TEST_F(CityCollector, LookupsAndSearchesOfSeveralThreadsTakeNothingFromEachOther) {
  loadCities(copies(3000, "10, 'Saint Paul', '', '', ''"));
  const auto lookUp = [&] {
    for (int round = 0; round < 200; ++round)
      EXPECT_TRUE(collector->cityWithIdentifier(10).has_value());
  };
  const auto search = [&] {
    for (int round = 0; round < 5; ++round)
      EXPECT_EQ(collector->citiesWithMatch("saint p").size(), 1000U);
  };
  std::thread threads[] = {std::thread(lookUp), std::thread(search), std::thread(search)};
  lookUp();
  for (std::thread& thread : threads)
    thread.join();
}

TEST_F(CityCollector, WhomNobodyElseKeepsEndsOnTheMainThread) {
  struct Mortal : Listener {
    explicit Mortal(std::thread::id& place) : end(place) {}
    ~Mortal() override { end = std::this_thread::get_id(); }
    std::thread::id& end;
  };
  std::thread::id end;
  auto mortal = std::make_shared<Mortal>(end);
  collector->addDelegate(mortal);
  listener->holdsQueue = true;
  load();
  mortal.reset();
  dispatch_semaphore_signal(listener->mayGoOn);
  EXPECT_TRUE(waitUntil([&] {
    time.loop.runPending();
    return end != std::thread::id();
  }));
  EXPECT_EQ(end, std::this_thread::get_id());
}

}  // namespace
