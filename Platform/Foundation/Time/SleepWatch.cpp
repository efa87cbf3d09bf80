// Notices that the machine has woken up, and tells it as a change of the clock.
//
// | what happens                                        | seen here                       |
// |-----------------------------------------------------|---------------------------------|
// | resume from suspend or hibernation through logind   | yes: PrepareForSleep(false)     |
// | suspend without logind (a script, another manager)  | no; the clock watch sees it     |
// | the system bus ends and comes back                  | yes, from then on               |
// | a virtual machine is paused and goes on             | no; the guest's clock jumps if  |
// |                                                     | its host sets it                |

#include "Platform/Foundation/Notifications/DesktopWatch_p.h"
#include "Platform/Foundation/Notifications/MessageBus_p.h"
#include "Platform/Foundation/Notifications/SignalSubscription_p.h"

namespace {

class SleepWatch : public DesktopWatch, private MessageBusDelegate {
 public:
  SleepWatch() { registration_ = MessageBus::systemBus().addDelegate(*this); }

 private:
  void busConnected(GDBusConnection* bus) override {
    subscription_ = std::make_unique<SignalSubscription>(
        bus, "org.freedesktop.login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
        "/org/freedesktop/login1", nullptr, received, nullptr);
  }

  static void received(GDBusConnection*, const char*, const char*, const char*, const char*,
                       GVariant* parameters, gpointer) {
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)"))) return;
    gboolean isGoingToSleep = TRUE;
    g_variant_get(parameters, "(b)", &isGoingToSleep);
    if (isGoingToSleep == FALSE) deliverDesktopNotification("NSSystemClockDidChangeNotification");
  }

  std::unique_ptr<SignalSubscription> subscription_;
  Registration registration_;
};

}  // namespace

std::unique_ptr<DesktopWatch> makeSleepWatch() { return std::make_unique<SleepWatch>(); }
