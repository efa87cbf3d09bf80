#include "Shared/External/fmdb/FMConnection.h"

#include <mutex>

#include "Shared/External/Logging/DDLogLine.h"

std::shared_ptr<FMConnection> FMConnection::open(const std::string& fileName, int flags,
                                                 const char* vfs, NSError& error) {
  // The statistics are nobody's, and their one lock has connections wait for each other's threads.
  static std::once_flag configured;
  std::call_once(configured, [] { sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0); });
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(fileName.c_str(), &handle, flags, vfs);
  if (code == SQLITE_OK) return std::make_shared<FMConnection>(handle);
  // A handle comes back from a failed open too, with the words, and wants to be closed.
  error = {FMErrorDomain, code, handle != nullptr ? sqlite3_errmsg(handle) : sqlite3_errstr(code)};
  sqlite3_close(handle);
  return nullptr;
}

FMConnection::~FMConnection() {
  int code = sqlite3_close(handle_);
  if (code == SQLITE_BUSY || code == SQLITE_LOCKED) {
    // Ours are gone by now: these were prepared on the bare handle.
    while (sqlite3_stmt* statement = sqlite3_next_stmt(handle_, nullptr)) {
      DDLogLine("Closing leaked statement");
      sqlite3_finalize(statement);
    }
    code = sqlite3_close(handle_);
  }
  if (code != SQLITE_OK) DDLogLine("error closing!: " + std::to_string(code));
}

void FMConnection::setMaxBusyRetryTimeInterval(double seconds) {
  busyWait_.limit = seconds;
  if (seconds > 0) {
    sqlite3_busy_handler(handle_, FMDBDatabaseBusyHandler, &busyWait_);
  } else {
    sqlite3_busy_handler(handle_, nullptr, nullptr);
  }
}

int FMConnection::FMDBDatabaseBusyHandler(void* context, int count) {
  auto& wait = *static_cast<BusyWait*>(context);
  if (count == 0) {
    wait.waited = 0;
    return 1;
  }
  if (wait.waited >= wait.limit) return 0;
  constexpr int ShortestWait = 50;
  constexpr unsigned Spread = 50;
  unsigned random = 0;
  sqlite3_randomness(sizeof random, &random);
  // What was slept is counted rather than a clock read: a wall clock that is set, or that stands
  // still in a simulation, cannot stretch the wait.
  wait.waited += sqlite3_sleep(ShortestWait + static_cast<int>(random % Spread)) / 1000.0;
  return 1;
}

std::string FMConnection::errorMessage() const {
  const FMConnectionLock lock(handle_);
  return sqlite3_errmsg(handle_);
}

std::string FMConnection::errorMessageFor(int code) const {
  const FMConnectionLock lock(handle_);
  return sqlite3_errcode(handle_) == code ? sqlite3_errmsg(handle_) : sqlite3_errstr(code);
}

NSError FMConnection::error(int code) const { return {FMErrorDomain, code, errorMessageFor(code)}; }
