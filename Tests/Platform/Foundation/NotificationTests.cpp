#include "Platform/Foundation/NSNotificationCenter.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "Platform/Foundation/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/VirtualRunLoop.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Support/ChildProcess.h"

namespace {

class Notifications : public testing::Test {
 protected:
  NSObservation noting(std::string_view name, const std::string& note) {
    return center->addObserver(name, [this, note](const NSNotification&) { notes += note; });
  }

  std::optional<NSNotificationCenter> center{std::in_place};
  std::string notes;
};

TEST_F(Notifications, ArriveDuringThePostInTheOrderOfRegistration) {
  const auto a = noting("n", "a");
  const auto other = noting("other", "x");
  const auto b = noting("n", "b");
  const auto c = noting("n", "c");
  center->postNotification("n");
  EXPECT_EQ(notes, "abc");
}

TEST_F(Notifications, ObserversMayComeAndGoDuringAPost) {
  std::optional<NSObservation> added;
  std::optional<NSObservation> second;
  std::optional<NSObservation> first = center->addObserver("n", [&](const NSNotification&) {
    notes += "first ";
    added = noting("n", "added ");
    center->postNotification("inner");
    second.reset();
    first.reset();
  });
  second = noting("n", "never ");
  const auto inner = noting("inner", "inner ");
  const auto third = noting("n", "third ");
  center->postNotification("n");
  EXPECT_EQ(notes, "first inner third ");
  center->postNotification("n");
  EXPECT_EQ(notes, "first inner third third added ");
}

TEST_F(Notifications, AHandleMayOutliveItsCentre) {
  auto observation = noting("n", "x");
  center.reset();
  observation = NSObservation();
  center.emplace();
  center->postNotification("n");
  EXPECT_EQ(notes, "");
}

TEST(DistributedNotifications, WorkInsideTheProcessWithoutABus) {
  ManualClock clock(0);
  VirtualRunLoop loop(clock);
  NSRunLoop::setMainRunLoop(&loop);
  auto& center = NSDistributedNotificationCenter::defaultCenter();
  int calls = 0;
  const auto observation = center.addObserver("org.example.n", [&](const NSNotification& news) {
    ++calls;
    EXPECT_EQ(news.name, "org.example.n");
    EXPECT_EQ(news.userInfo, (PropertyList::Dictionary{{"text", "x"}})) << "texts alone";
    EXPECT_EQ(news.textForKey("missing"), "");
  });
  center.postNotification("org.example.n", {{"text", "x"}, {"number", 1}});
  EXPECT_EQ(calls, 0);  // On the run loop, as it comes from a bus.
  loop.runPending();
  EXPECT_EQ(calls, 1);
  NSRunLoop::setMainRunLoop(nullptr);
}

TEST(DistributedNotifications, ComeFromOtherProcesses) {
  const ChildProcess bus({"dbus-daemon", "--session", "--nofork", "--print-address"});
  ASSERT_TRUE(waitUntil([&] { return bus.output().ends_with('\n'); })) << bus.errors();
  const std::string address = bus.output();
  const EnvironmentVariable variable("DBUS_SESSION_BUS_ADDRESS",
                                     address.substr(0, address.find('\n')));
  std::vector<PropertyList::Dictionary> seen;
  const auto observation = NSDistributedNotificationCenter::defaultCenter().addObserver(
      "org.example.n", [&](const NSNotification& news) { seen.push_back(news.userInfo); });
  // Other names, and signals of other forms from whoever has the bus, are not ours.
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{},
        {"int32:7", "dict:string:string:a,b"},
        {"string:org.example.n", "dict:string:int32:a,7"},
        {"string:org.example.n", "dict:string:string:a,b", "int32:7"},
        {"string:org.example.other", "dict:string:string:a,b"},
        {"string:org.example.n", "dict:string:string:k,é; v"}}) {
    std::vector<std::string> command = {"dbus-send", "--session", "--type=signal",
                                        "/com/wenmark/velmora5/Notifications",
                                        "com.wenmark.velmora5.Notifications.Posted"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    EXPECT_EQ(runToEnd(command).status, 0);
  }
  EXPECT_TRUE(waitUntil([&] {
    NSRunLoop::mainRunLoop().runPending();
    return !seen.empty();
  }));
  EXPECT_EQ(seen, (std::vector<PropertyList::Dictionary>{{{"k", "é; v"}}}));
}

}  // namespace
