#include "Shared/Database/HistoryDatabaseItem.h"

#include <utility>

#include "Platform/Foundation/NSAssert.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/ObjectDescription.h"
#include "Shared/External/Logging/DDLogLine.h"

namespace {

/// Its address is the key under which a queue knows its item.
constexpr char ItemKey = 0;

std::string textOfEntry(const PropertyList::Dictionary& write, std::string_view key) {
  const auto entry = write.find(key);
  const std::string* text = entry != write.end() ? entry->second.string() : nullptr;
  return text != nullptr ? *text : "";
}

bool runWrite(FMDatabase_Time& database, const PropertyList::Dictionary& write) {
  const std::string statement =
      stringByReplacingOccurrences(textOfEntry(write, "format"), "%@", textOfEntry(write, "table"));
  const auto entry = write.find("args");
  const PropertyList::Array* arguments = entry != write.end() ? entry->second.array() : nullptr;
  return database.executeUpdate(statement,
                                arguments != nullptr ? *arguments : PropertyList::Array{});
}

}  // namespace

HistoryDatabaseItem_Time::HistoryDatabaseItem_Time(std::string path)
    : path_(std::move(path)),
      database_(FMDatabase_Time::databaseWithPath(path_)),
      queue_(
          dispatch_queue_create("dbqueue-" + objectDescription("HistoryDatabaseItem_Time", this))) {
  dispatch_queue_set_specific(queue_, &ItemKey, this);
  dispatch_sync(queue_, [this] {
    database_->setLogsErrors(false);
    database_->setShouldCacheStatements(true);
    if (!database_->open()) DDLogLine("Could not open db.");
  });
}

HistoryDatabaseItem_Time::~HistoryDatabaseItem_Time() = default;

void HistoryDatabaseItem_Time::runAndWait(const std::function<void()>& work) {
  if (dispatch_get_specific(&ItemKey) == this) {
    NSAssertionFailed(
        "inDatabase: was called reentrantly on the same queue, which would lead to a deadlock");
  }
  dispatch_sync(queue_, work);
}

void HistoryDatabaseItem_Time::close() {
  runAndWait([this] { database_->close(); });
}

void HistoryDatabaseItem_Time::addItem(PropertyList::Dictionary write) {
  dispatch_async(queue_, [self = shared_from_this(), write = std::move(write)]() mutable {
    self->queries_.emplace_back(std::move(write));
  });
}

void HistoryDatabaseItem_Time::commit() {
  dispatch_async(queue_, [self = shared_from_this()] { self->runQueries(); });
}

void HistoryDatabaseItem_Time::commitSync() {
  runAndWait([this] { runQueries(); });
}

void HistoryDatabaseItem_Time::runQueries() {
  busy_ = true;
  PropertyList::Array queries = std::exchange(queries_, {});
  if (!database_->beginTransaction() && database_->lastErrorCode() == FMResultBusy) {
    queries_ = std::move(queries);
    busy_ = false;
    return;
  }
  for (const PropertyList& query : queries) {
    runWrite(*database_, *query.dictionary());
  }
  busy_ = false;
  if (!database_->commit() && database_->inTransaction()) {
    DDLogLine("Could not write to db: " + database_->lastErrorMessage());
    database_->rollback();
  }
}

void HistoryDatabaseItem_Time::queryDatabase(
    const std::function<void(FMDatabase_Time& database)>& callback) {
  runAndWait([&] {
    callback(*database_);
    if (database_->hasOpenResultSets()) {
      DDLogLine(
          "Warning: there is at least one open result set around after performing "
          "[FMDatabaseQueue inDatabase:]");
    }
  });
}

void HistoryDatabaseItem_Time::queryDatabaseAsync(
    std::function<void(FMDatabase_Time& database)> callback) {
  dispatch_async(queue_, [self = shared_from_this(), callback = std::move(callback)] {
    callback(*self->database_);
  });
}
