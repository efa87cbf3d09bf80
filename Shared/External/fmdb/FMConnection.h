#pragma once

#include <sqlite3.h>

#include <atomic>
#include <memory>
#include <string>

#include "Platform/Foundation/NSError.h"

/// An open connection to one database file, for the sources of this folder. It is held by the
/// database and by each of its statements, so the file is closed when the last of them lets go and
/// no statement can outlive it.
class FMConnection {
 public:
  /// Null if the file does not open; `error` tells why.
  static std::shared_ptr<FMConnection> open(const std::string& fileName, int flags, const char* vfs,
                                            NSError& error);

  explicit FMConnection(sqlite3* handle) : handle_(handle) {}
  FMConnection(const FMConnection&) = delete;
  FMConnection& operator=(const FMConnection&) = delete;
  ~FMConnection();

  sqlite3* handle() const { return handle_; }

  /// How long a call waits for another connection's lock; with 0 or less it does not.
  void setMaxBusyRetryTimeInterval(double seconds);

  int errorCode() const { return sqlite3_errcode(handle_); }
  /// The words for the last call's error.
  std::string errorMessage() const;
  /// The words for a call that answered `code`, also if another thread has made one since.
  std::string errorMessageFor(int code) const;
  NSError error(int code) const;

 private:
  struct BusyWait {
    std::atomic<double> limit = 0;  ///< Seconds.
    double waited = 0;              ///< Seconds. Touched under the connection's own lock.
  };

  static int FMDBDatabaseBusyHandler(void* context, int count);

  sqlite3* const handle_;
  BusyWait busyWait_;
};

/// The domain of every error of this layer.
constexpr const char* FMErrorDomain = "FMDatabase";

/// Holds a connection's own lock, so that several calls are one to every other thread.
class FMConnectionLock {
 public:
  explicit FMConnectionLock(sqlite3* handle) : mutex_(sqlite3_db_mutex(handle)) {
    sqlite3_mutex_enter(mutex_);
  }
  FMConnectionLock(const FMConnectionLock&) = delete;
  FMConnectionLock& operator=(const FMConnectionLock&) = delete;
  ~FMConnectionLock() { sqlite3_mutex_leave(mutex_); }

 private:
  sqlite3_mutex* mutex_;
};
