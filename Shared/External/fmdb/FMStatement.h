#pragma once

#include <sqlite3.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "Platform/Foundation/LibraryHandle.h"

class FMConnection;

/// A prepared statement, finalised with this object. The text of a query may be a blank or a
/// comment: there is no statement handle then.
class FMStatement_Time {
 public:
  /// Takes the handle over.
  FMStatement_Time(std::shared_ptr<FMConnection> connection, sqlite3_stmt* statement);
  FMStatement_Time(const FMStatement_Time&) = delete;
  FMStatement_Time& operator=(const FMStatement_Time&) = delete;

  sqlite3_stmt* statement() const { return statement_.get(); }
  const FMConnection& connection() const { return *connection_; }

  /// The text under which the statement is cached.
  const std::string& query() const { return query_; }
  void setQuery(std::string_view query) { query_ = query; }

  int64_t useCount() const { return useCount_; }
  void addUse() { ++useCount_; }

  bool inUse() const { return inUse_.load(std::memory_order_acquire); }
  void setInUse(bool inUse) { inUse_.store(inUse, std::memory_order_release); }

  /// Makes the statement ready to run from the start; answers the last run's error code.
  int reset();

 private:
  std::shared_ptr<FMConnection> connection_;
  LibraryHandle<sqlite3_stmt, sqlite3_finalize> statement_;
  std::string query_;
  std::atomic<int64_t> useCount_ = 0;
  std::atomic<bool> inUse_ = false;
};
