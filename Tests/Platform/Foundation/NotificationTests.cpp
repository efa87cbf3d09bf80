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
  center->postNotification("nobody");
  center->postNotification("");
  EXPECT_EQ(notes, "abc");
}

TEST_F(Notifications, CarryTheirTexts) {
  std::string name;
  const auto observation = center->addObserver("n", [&](const NSNotification& notification) {
    name = notification.name;
    EXPECT_EQ(notification.textForKey("text"), "x");
    EXPECT_EQ(notification.textForKey("number"), "");
    EXPECT_EQ(notification.textForKey("missing"), "");
  });
  center->postNotification("n", {{"text", "x"}, {"number", 1}});
  EXPECT_EQ(name, "n");
}

TEST_F(Notifications, ADroppedHandleEndsItEvenDuringAPost) {
  std::optional<NSObservation> second;
  std::optional<NSObservation> first = center->addObserver("n", [&](const NSNotification&) {
    notes += "first";
    second.reset();
    first.reset();
  });
  second = noting("n", "never");
  const auto third = noting("n", "third");
  center->postNotification("n");
  EXPECT_EQ(notes, "firstthird");
  center->postNotification("n");
  EXPECT_EQ(notes, "firstthirdthird");
}

TEST_F(Notifications, AnObserverAddedDuringAPostWaitsForTheNext) {
  std::optional<NSObservation> added;
  const auto observation = center->addObserver("n", [&](const NSNotification&) {
    if (!added) added = noting("n", "added");
  });
  center->postNotification("n");
  EXPECT_EQ(notes, "");
  center->postNotification("n");
  EXPECT_EQ(notes, "added");
}

TEST_F(Notifications, AHandlerMayPost) {
  const auto outer = center->addObserver("outer", [&](const NSNotification&) {
    notes += "(";
    center->postNotification("inner");
    notes += ")";
  });
  const auto inner = noting("inner", "inner");
  const auto last = noting("outer", "last");
  center->postNotification("outer");
  EXPECT_EQ(notes, "(inner)last");
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
  {
    const auto observation = center.addObserver("org.example.n", [&](const NSNotification& news) {
      ++calls;
      EXPECT_EQ(news.userInfo, (PropertyList::Dictionary{{"text", "x"}}));
    });
    center.postNotification("org.example.n", {{"text", "x"}, {"number", 1}});
    EXPECT_EQ(calls, 0);  // On the run loop, as it comes from a bus.
    loop.runPending();
    EXPECT_EQ(calls, 1);
  }
  center.postNotification("org.example.n");
  loop.runPending();
  EXPECT_EQ(calls, 1);
  NSRunLoop::setMainRunLoop(nullptr);
}

/// A session bus of this test's own.
class PrivateBus {
 public:
  PrivateBus() : daemon_({"dbus-daemon", "--session", "--nofork", "--print-address"}) {}

  std::string address() {
    waitUntil([&] { return daemon_.output().ends_with('\n'); });
    const std::string line = daemon_.output();
    return line.substr(0, line.find('\n'));
  }

 private:
  ChildProcess daemon_;
};

TEST(DistributedNotifications, GoFromProcessToProcess) {
  PrivateBus bus;
  const std::string address = bus.address();
  ASSERT_NE(address, "");
  const EnvironmentVariable variable("DBUS_SESSION_BUS_ADDRESS", address);
  ChildProcess listener({PLATFORM_TEST_HELPER, "listen", "org.example.n"});
  ASSERT_TRUE(waitUntil([&] { return listener.output() == "ready\n"; })) << listener.errors();
  // Other names, and signals of other forms from whoever has the bus, are not ours.
  const std::vector<std::string> signal = {"dbus-send", "--session", "--type=signal",
                                           "/com/wenmark/velmora5/Notifications",
                                           "com.wenmark.velmora5.Notifications.Posted"};
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{},
        {"string:org.example.n"},
        {"int32:7", "dict:string:string:a,b"},
        {"string:org.example.n", "dict:string:int32:a,7"},
        {"string:org.example.n", "array:string:a,b"},
        {"string:org.example.n", "dict:string:string:a,b", "int32:7"}}) {
    std::vector<std::string> command = signal;
    command.insert(command.end(), arguments.begin(), arguments.end());
    EXPECT_EQ(runToEnd(command).status, 0);
  }
  EXPECT_EQ(runToEnd({PLATFORM_TEST_HELPER, "post", "org.example.other", "k", "v"}).status, 0);
  EXPECT_EQ(runToEnd({PLATFORM_TEST_HELPER, "post", "org.example.n", "k", "é; v"}).status, 0);
  EXPECT_TRUE(waitUntil([&] { return listener.output() == "ready\nk=é; v;\n"; }))
      << listener.output();
}

}  // namespace
