#include "Shared/Database/HistoryDatabaseItem.h"

#include <cstdlib>
#include <iterator>
#include <utility>

#include "Platform/Dispatch/DispatchFunctions.h"
#include "Platform/Dispatch/DispatchGroup.h"
#include "Platform/Foundation/Process/NSAssert.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Text/ObjectDescription.h"
#include "Shared/External/Logging/DDLogLine.h"

namespace {

/// Its address is the key under which a queue knows its item.
constexpr char ItemKey = 0;

/// So many writes of failed commits are kept: a database that never takes them must not fill the
/// memory.
constexpr size_t MaximumKept = 100'000;

/// The commits that nobody waits for but the end of the process.
const dispatch_group_t& commitsOnTheirWay() {
  static const auto* const group = [] {
    // The queues are there by now, so their threads stop after this. Work on one of them that ends
    // the process would wait for itself.
    std::atexit([] {
      if (dispatch_get_specific(&ItemKey) == nullptr) dispatch_group_wait(commitsOnTheirWay());
    });
    return std::make_unique<dispatch_group_t>(dispatch_group_create()).release();
  }();
  return *group;
}

std::string textOfEntry(const PropertyList::Dictionary& write, std::string_view key) {
  const auto entry = write.find(key);
  const std::string* text = entry != write.end() ? entry->second.string() : nullptr;
  return text != nullptr ? *text : "";
}

bool runWrite(FMDatabase_Time& database, const PropertyList::Dictionary& write,
              std::optional<NSError>& error) {
  const std::string statement =
      stringByReplacingOccurrences(textOfEntry(write, "format"), "%@", textOfEntry(write, "table"));
  const auto entry = write.find("args");
  const PropertyList::Array* arguments = entry != write.end() ? entry->second.array() : nullptr;
  return database.executeUpdate(statement, &error,
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
    database_->setWaitsForTurn(true);
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
  runAndWait([this] {
    if (!taken_.empty()) runQueries();
    database_->close();
  });
}

void HistoryDatabaseItem_Time::addItem(PropertyList::Dictionary write) {
  dispatch_async(queue_, [self = shared_from_this(), write = std::move(write)]() mutable {
    self->queries_.emplace_back(std::move(write));
  });
}

void HistoryDatabaseItem_Time::commit() {
  dispatch_group_async(commitsOnTheirWay(), queue_, [self = shared_from_this()] {
    self->takeQueries();
    self->runQueries();
  });
}

void HistoryDatabaseItem_Time::commitSync() {
  runAndWait([this] {
    takeQueries();
    runQueries();
  });
}

void HistoryDatabaseItem_Time::takeQueries() {
  busy_ = true;
  taken_.insert(taken_.end(), std::make_move_iterator(queries_.begin()),
                std::make_move_iterator(queries_.end()));
  queries_.clear();
}

void HistoryDatabaseItem_Time::runQueries() {
  std::optional<NSError> error;
  const bool written = runTransaction(error);
  busy_ = false;
  if (!written) {
    DDLogLine("Could not write to db: " + error->localizedDescription);
    if (database_->inTransaction()) database_->rollback();
  }
  // A rule that is checked at the end of a transaction would refuse the same writes again.
  if (written || error->code == FMResultConstraint) taken_.clear();
  if (taken_.size() > MaximumKept) {
    DDLogLine("The oldest writes to db are given up.");
    taken_.erase(taken_.begin(), taken_.end() - MaximumKept);
  }
}

bool HistoryDatabaseItem_Time::runTransaction(std::optional<NSError>& error) {
  if (!database_->beginTransaction(&error)) return false;
  for (const PropertyList& write : taken_) {
    if (runWrite(*database_, *write.dictionary(), error)) continue;
    // A transaction that the failure has undone would let the other writes through one by one.
    if (!database_->inTransaction() || !FMIsErrorOfStatement(error->code)) return false;
  }
  return database_->commit(&error);
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
