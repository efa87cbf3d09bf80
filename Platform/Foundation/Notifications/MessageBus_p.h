#pragma once

// For the platform's own sources only: the session's and the system's message bus.

#include <gio/gio.h>

#include <chrono>
#include <memory>
#include <string>

#include "Platform/Foundation/Notifications/BusConnectionAttempt_p.h"
#include "Platform/Foundation/Notifications/DelegateList.h"

/// Who listens on a bus.
class MessageBusDelegate {
 public:
  virtual ~MessageBusDelegate() = default;

  /// A connection is there, for the first time or after another one has ended: subscriptions are to
  /// be made on it. `connection` is the bus's.
  virtual void busConnected(GDBusConnection* connection) = 0;
};

/// A connection to a bus that outlasts the bus. Main thread only; callbacks come from GLib's main
/// context.
///
/// | what happens                            | what is done                                       |
/// |-----------------------------------------|----------------------------------------------------|
/// | there is no bus at the start            | nothing more: the session has none                 |
/// | the bus refuses, or ends                | it is tried again after a growing pause            |
/// | the bus accepts and does not answer     | the same, once its time is over; nobody waits      |
/// | longer than a moment at the start       |                                                    |
class MessageBus {
 public:
  /// Begins to connect at the first call. Who needs the connection first waits for it a moment.
  static MessageBus& sessionBus();
  /// Connected soon after the first call: it brings news only, and nobody waits for those.
  static MessageBus& systemBus();

  MessageBus(const MessageBus&) = delete;
  MessageBus& operator=(const MessageBus&) = delete;
  ~MessageBus();

  /// Adds a delegate and calls it at once if there is a connection.
  Registration addDelegate(MessageBusDelegate& delegate);

  /// Null while there is none.
  GDBusConnection* connection();

 private:
  static constexpr std::chrono::milliseconds FirstPause{500};

  MessageBus(GBusType type, const char* name) : type_(type), name_(name) {}

  static std::unique_ptr<MessageBus> make(GBusType type, const char* name);
  std::string address() const;
  void connect();
  void connectAfterAPause();
  void waitAtTheStart();
  void attemptEnded(BusConnectionAttempt& attempt);
  void connectionClosed();
  static void tellClosed(GDBusConnection*, gboolean, GError*, gpointer self);
  void report(const std::string& text);

  const GBusType type_;
  const std::string name_;
  DelegateList<MessageBusDelegate> delegates_;
  BusConnection connection_;
  std::shared_ptr<BusConnectionAttempt> attempt_;
  /// Tells an attempt whether this bus is still there when it ends.
  const std::shared_ptr<void> life_ = std::make_shared<char>();
  bool waitsAtTheStart_ = false;
  guint handshakeTimeout_ = 0;
  guint pauseTimeout_ = 0;
  /// Before the next attempt; doubled by each that fails.
  std::chrono::milliseconds pause_ = FirstPause;
  bool isTroubleReported_ = false;
};
