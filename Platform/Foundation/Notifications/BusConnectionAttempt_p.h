#pragma once

// For the platform's own sources only.

#include <gio/gio.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "Platform/Foundation/LibraryHandle.h"

using BusConnection = LibraryHandle<GDBusConnection, g_object_unref>;

/// One try to connect to a message bus. The handshake runs on a thread of its own: what listens at
/// the address may accept and then say nothing, for ever.
class BusConnectionAttempt : public std::enable_shared_from_this<BusConnectionAttempt> {
 public:
  /// Begins. When the handshake has ended, one way or the other, `ended` is called with this
  /// attempt from GLib's main context.
  static std::shared_ptr<BusConnectionAttempt> start(
      const std::string& address, std::function<void(BusConnectionAttempt&)> ended);

  BusConnectionAttempt(const BusConnectionAttempt&) = delete;
  BusConnectionAttempt& operator=(const BusConnectionAttempt&) = delete;

  /// Waits for the end of the handshake, but no longer than `limit`. Returns whether it has ended.
  bool waitFor(std::chrono::milliseconds limit);

  /// Ends a handshake that takes too long; it then has failed.
  void giveUp() { g_cancellable_cancel(cancellable_.get()); }

  /// Of an attempt that has ended: the connection, or null.
  BusConnection takeConnection();
  /// Why there is none.
  const std::string& reason() const { return reason_; }

 private:
  explicit BusConnectionAttempt(std::function<void(BusConnectionAttempt&)> ended)
      : ended_(std::move(ended)) {}
  void connect(const std::string& address);
  void tellEnded();

  const LibraryHandle<GCancellable, g_object_unref> cancellable_{g_cancellable_new()};
  const std::function<void(BusConnectionAttempt&)> ended_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool hasEnded_ = false;
  std::shared_ptr<BusConnectionAttempt> itself_;  ///< From the end until that has been told.
  BusConnection connection_;
  std::string reason_;
};
