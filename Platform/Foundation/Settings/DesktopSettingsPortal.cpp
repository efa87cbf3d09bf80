// The desktop's appearance, through the settings portal on the session bus.
//
// | what happens                                         | seen here                          |
// |------------------------------------------------------|------------------------------------|
// | the user switches dark and light, or contrast        | yes, at once                       |
// | the portal starts, or comes back, after the clock    | yes: it is asked again             |
// | the portal does not answer in time at the start      | light at first; its late answer    |
// |                                                      | counts as a change                 |
// | the session bus ends and comes back                  | yes: the portal is asked again     |
// | a desktop without a portal, or without a session bus | no; the domain's own file answers  |
// | a portal that knows no contrast                      | counts as normal contrast          |

#include <gio/gio.h>

#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/Notifications/DesktopWatch_p.h"
#include "Platform/Foundation/Notifications/MessageBus_p.h"
#include "Platform/Foundation/Notifications/SignalSubscription_p.h"
#include "Platform/Foundation/Settings/DesktopSettings_p.h"
#include "Platform/Foundation/SharedInstance.h"

namespace {

constexpr const char* BusName = "org.freedesktop.portal.Desktop";
constexpr const char* ObjectPath = "/org/freedesktop/portal/desktop";
constexpr const char* InterfaceName = "org.freedesktop.portal.Settings";
constexpr const char* Namespace = "org.freedesktop.appearance";
/// A clock must not wait for a portal that is only starting; its answer comes later.
constexpr int FirstAnswerMilliseconds = 150;

using Variant = LibraryHandle<GVariant, g_variant_unref>;
using MainContext = LibraryHandle<GMainContext, g_main_context_unref>;

/// The number within however many variants the portal's version wraps it in.
std::optional<uint32_t> numberIn(GVariant* variant) {
  if (g_variant_is_of_type(variant, G_VARIANT_TYPE_VARIANT)) {
    const Variant inner(g_variant_get_variant(variant));
    return numberIn(inner.get());
  }
  if (g_variant_is_of_type(variant, G_VARIANT_TYPE_UINT32)) return g_variant_get_uint32(variant);
  return std::nullopt;
}

/// One setting of the portal and how the code knows it.
struct Setting {
  const char* portalKey;
  std::string_view key;
  std::string_view domain;
  const char* notification;
  uint32_t value = 0;
  bool isAnswered = false;
};

GVariant* readArguments(const Setting& setting) {
  return g_variant_new("(ss)", Namespace, setting.portalKey);
}

/// What the portal says; null if it says nothing.
Variant answerOf(GObject* bus, GAsyncResult* result) {
  const Variant answer(
      g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(bus), result, nullptr));
  return Variant(answer ? g_variant_get_child_value(answer.get(), 0) : nullptr);
}

/// Settings that are asked for together, for an answer that is waited for later on, and not by the
/// program's own loop.
class FirstQuestions {
 public:
  FirstQuestions(GDBusConnection* bus, std::span<Setting> settings) {
    g_main_context_push_thread_default(context_.get());
    for (Setting& setting : settings) {
      g_dbus_connection_call(bus, BusName, ObjectPath, InterfaceName, "Read",
                             readArguments(setting), G_VARIANT_TYPE("(v)"),
                             G_DBUS_CALL_FLAGS_NO_AUTO_START, FirstAnswerMilliseconds, nullptr,
                             answered, std::make_unique<Question>(this, &setting).release());
      ++unanswered_;
    }
    g_main_context_pop_thread_default(context_.get());
  }
  FirstQuestions(const FirstQuestions&) = delete;
  FirstQuestions& operator=(const FirstQuestions&) = delete;
  /// All questions have an answer by then, if only that time is over.
  ~FirstQuestions() {
    while (unanswered_ > 0)
      g_main_context_iteration(context_.get(), TRUE);
  }

 private:
  using Question = std::pair<FirstQuestions*, Setting*>;

  static void answered(GObject* bus, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Question> question(static_cast<Question*>(data));
    const auto [questions, setting] = *question;
    --questions->unanswered_;
    const Variant value = answerOf(bus, result);
    if (!value) return;
    setting->value = numberIn(value.get()).value_or(0);
    setting->isAnswered = true;
  }

  const MainContext context_{g_main_context_new()};
  int unanswered_ = 0;
};

class SettingsPortal : private MessageBusDelegate {
 public:
  static SettingsPortal& sharedPortal() {
    static SharedInstance<SettingsPortal> portal;
    return portal.get();
  }

  SettingsPortal() {
    registration_ = MessageBus::sessionBus().addDelegate(*this);
    isStarting_ = false;
  }
  ~SettingsPortal() override {
    g_cancellable_cancel(cancellable_);
    g_object_unref(cancellable_);
  }
  SettingsPortal(const SettingsPortal&) = delete;
  SettingsPortal& operator=(const SettingsPortal&) = delete;

  PropertyList value(std::string_view key, std::string_view domain) {
    takeFirstAnswers();
    constexpr uint32_t PrefersDark = 1;
    constexpr uint32_t HigherContrast = 1;
    const auto& [style, contrast] = settings_;
    if (key == style.key && domain == style.domain && style.value == PrefersDark) return "Dark";
    if (key == contrast.key && domain == contrast.domain && contrast.value == HigherContrast) {
      return true;
    }
    return {};
  }

 private:
  void busConnected(GDBusConnection* bus) override {
    bus_ = bus;
    changes_ = std::make_unique<SignalSubscription>(bus, BusName, InterfaceName, "SettingChanged",
                                                    ObjectPath, Namespace, changed, this);
    owners_ = std::make_unique<SignalSubscription>(
        bus, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
        "/org/freedesktop/DBus", BusName, ownerChanged, this);
    if (isStarting_) {
      firstQuestions_.emplace(bus, settings_);
    } else {
      readAll();
    }
  }

  void readAll() {
    for (Setting& setting : settings_)
      readLater(setting);
  }

  void takeFirstAnswers() {
    if (!firstQuestions_) return;
    firstQuestions_.reset();
    for (Setting& setting : settings_) {
      if (!setting.isAnswered) readLater(setting);
    }
  }

  void readLater(Setting& setting) {
    struct Question {
      SettingsPortal* portal;
      Setting* setting;
    };
    const auto answered = [](GObject* bus, GAsyncResult* result, gpointer data) {
      const std::unique_ptr<Question> question(static_cast<Question*>(data));
      if (const Variant value = answerOf(bus, result)) {
        question->portal->take(*question->setting, value.get());
      }
    };
    g_dbus_connection_call(bus_, BusName, ObjectPath, InterfaceName, "Read", readArguments(setting),
                           G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NONE, -1, cancellable_,
                           answered,
                           std::make_unique<Question>(Question{this, &setting}).release());
  }

  void take(Setting& setting, GVariant* value) {
    const uint32_t number = numberIn(value).value_or(0);
    if (number == setting.value) return;
    setting.value = number;
    deliverDesktopNotification(setting.notification);
  }

  static void changed(GDBusConnection*, const char*, const char*, const char*, const char*,
                      GVariant* parameters, gpointer self) {
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssv)"))) return;
    const char* key = nullptr;
    GVariant* value = nullptr;
    g_variant_get(parameters, "(&s&sv)", nullptr, &key, &value);
    const Variant owned(value);
    auto* portal = static_cast<SettingsPortal*>(self);
    portal->takeFirstAnswers();
    for (Setting& setting : portal->settings_) {
      if (std::string_view(setting.portalKey) == key) portal->take(setting, value);
    }
  }

  static void ownerChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                           GVariant* parameters, gpointer self) {
    const char* newOwner = nullptr;
    g_variant_get(parameters, "(&s&s&s)", nullptr, nullptr, &newOwner);
    if (*newOwner == '\0') return;
    auto* portal = static_cast<SettingsPortal*>(self);
    portal->takeFirstAnswers();
    portal->readAll();
  }

  GCancellable* const cancellable_ = g_cancellable_new();  ///< An answer may come after the end.
  /// Kept by the subscriptions.
  GDBusConnection* bus_ = nullptr;
  bool isStarting_ = true;
  Setting settings_[2] = {
      {"color-scheme", "AppleInterfaceStyle", ".GlobalPreferences",
       "AppleInterfaceThemeChangedNotification"},
      {"contrast", "increaseContrast", "com.apple.universalaccess",
       "AXInterfaceIncreaseContrastStatusDidChange"},
  };
  std::optional<FirstQuestions> firstQuestions_;  ///< Until their answers are needed.
  std::unique_ptr<SignalSubscription> changes_;
  std::unique_ptr<SignalSubscription> owners_;
  Registration registration_;
};

}  // namespace

PropertyList desktopSetting(std::string_view key, std::string_view domain) {
  const bool isAsked = (key == "AppleInterfaceStyle" && domain == ".GlobalPreferences") ||
                       (key == "increaseContrast" && domain == "com.apple.universalaccess");
  return isAsked ? SettingsPortal::sharedPortal().value(key, domain) : PropertyList();
}

void watchDesktopSettings() { SettingsPortal::sharedPortal(); }
