#include "Platform/Foundation/Notifications/NSNotificationCenter.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Platform/Support/VirtualTime.h"
#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/TestBus.h"

namespace {

class Notifications : public testing::Test {
 protected:
  NSObservation noting(std::string_view name, const std::string& note) {
    return center->addObserver(name, [this, note](const NSNotification&) { notes += note; });
  }

  std::string notesAfterAPost() {
    center->postNotification("n");
    return notes;
  }

  std::optional<NSNotificationCenter> center{std::in_place};
  std::string notes;
};

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
  EXPECT_EQ(notesAfterAPost(), "first inner third ");
  EXPECT_EQ(notesAfterAPost(), "first inner third third added ");
}

TEST_F(Notifications, ArriveInTheOrderOfRegistrationAlsoBehindAFault) {
  const auto a = noting("n", "a");
  const auto other = noting("other", "x");
  const auto faulty =
      center->addObserver("n", [](const NSNotification&) { throw std::runtime_error("faulty"); });
  const auto b = noting("n", "b");
  const auto c = noting("n", "c");
  testing::internal::CaptureStderr();
  EXPECT_EQ(notesAfterAPost(), "abc");
  EXPECT_NE(testing::internal::GetCapturedStderr().find("error: faulty"), std::string::npos);
}

// What a handler held goes with its handle, and may hold handles itself.
TEST_F(Notifications, ADroppedHandlerGoesAtOnce) {
  auto held = std::make_shared<NSObservation>(noting("n", "never "));
  auto observation = center->addObserver("n", [held](const NSNotification&) {});
  const std::weak_ptr<NSObservation> watched = held;
  held.reset();
  EXPECT_FALSE(watched.expired());
  observation = NSObservation();
  EXPECT_TRUE(watched.expired());
  EXPECT_EQ(notesAfterAPost(), "");
}

TEST_F(Notifications, AHandleMayOutliveItsCentre) {
  const auto observation = noting("n", "x");
  center.reset();
}

TEST(DistributedNotifications, WorkInsideTheProcessWithoutABus) {
  VirtualTime time;
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
  time.loop.runPending();
  EXPECT_EQ(calls, 1);
}

/// As another process would.
void send(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"dbus-send", "--session", "--type=signal",
                                       "/com/wenmark/velmora5/Notifications",
                                       "com.wenmark.velmora5.Notifications.Posted"});
  EXPECT_EQ(runToEnd(arguments).status, 0);
}

bool served(const std::function<bool()>& condition) {
  return waitUntil([&] {
    NSRunLoop::mainRunLoop().runPending();
    return condition();
  });
}

TEST(DistributedNotifications, ComeFromOtherProcesses) {
  const TestBus bus("DBUS_SESSION_BUS_ADDRESS");
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
    send(arguments);
  }
  EXPECT_TRUE(served([&] { return !seen.empty(); }));
  EXPECT_EQ(seen, (std::vector<PropertyList::Dictionary>{{{"k", "é; v"}}}));
}

// A session's bus is restarted by an update, or crashes, while the clock goes on.
TEST(DistributedNotifications, OutlastTheBus) {
  TestBus bus("DBUS_SESSION_BUS_ADDRESS");
  auto& center = NSDistributedNotificationCenter::defaultCenter();
  std::string seen;
  const auto observation = center.addObserver(
      "org.example.n", [&](const NSNotification& news) { seen += news.textForKey("k"); });
  const auto expect = [&](const char* expected) {
    EXPECT_TRUE(served([&] { return seen == expected; })) << seen;
  };
  int missed = 0;
  const auto again = center.addObserver(NSDistributedNotificationsMayBeMissedNotification,
                                        [&](const NSNotification&) { ++missed; });
  for (const int round : {1, 2}) {
    SCOPED_TRACE(round);
    seen.clear();
    center.postNotification("org.example.n", {{"k", "there "}});
    expect("there ");
    bus.end();
    // The first comes before the end of the bus is known, the second after it.
    center.postNotification("org.example.n", {{"k", "gone "}});
    expect("there gone ");
    center.postNotification("org.example.n", {{"k", "away "}});
    expect("there gone away ");
    bus.start();
    EXPECT_TRUE(served([&] { return missed == round; }));
    send({"string:org.example.n", "dict:string:string:k,back"});
    expect("there gone away back");
  }
}

// What listens at the address may accept and say nothing, or be stopped later.
TEST(DistributedNotifications, WaitForNoBusThatDoesNotAnswer) {
  const auto socketFile = freshFolder() / "bus";
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  socketFile.string().copy(address.sun_path, sizeof address.sun_path - 1);
  const int listening = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(listening, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listening, 8), 0);
  const EnvironmentVariable variable("DBUS_SESSION_BUS_ADDRESS",
                                     "unix:path=" + socketFile.string());
  testing::internal::CaptureStderr();
  const auto start = std::chrono::steady_clock::now();
  auto& center = NSDistributedNotificationCenter::defaultCenter();
  int calls = 0;
  const auto observation =
      center.addObserver("org.example.n", [&](const NSNotification&) { ++calls; });
  center.postNotification("org.example.n");
  EXPECT_TRUE(served([&] { return calls == 1; }));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_NE(testing::internal::GetCapturedStderr().find("error: the session bus"),
            std::string::npos);
  close(listening);
}

}  // namespace
