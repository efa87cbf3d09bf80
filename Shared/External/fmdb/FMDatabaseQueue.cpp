#include "Shared/External/fmdb/FMDatabaseQueue.h"

#include <atomic>
#include <utility>

#include "Platform/Dispatch/DispatchFunctions.h"
#include "Platform/Foundation/Process/NSAssert.h"
#include "Platform/Foundation/Text/ObjectDescription.h"
#include "Shared/External/Logging/DDLogLine.h"

namespace {

/// Its address is the key under which a queue knows its owner.
constexpr char OwnerKey = 0;

}  // namespace

std::unique_ptr<FMDatabaseQueue_Time> FMDatabaseQueue_Time::databaseQueueWithPath(
    std::optional<std::string> path, int flags, std::optional<std::string> vfs) {
  struct Queue : FMDatabaseQueue_Time {
    Queue(std::optional<std::string> queuePath, int queueFlags, std::optional<std::string> queueVfs)
        : FMDatabaseQueue_Time(std::move(queuePath), queueFlags, std::move(queueVfs)) {}
  };
  auto queue = std::make_unique<Queue>(std::move(path), flags, std::move(vfs));
  if (queue->db_->openWithFlags(queue->openFlags_, queue->vfs_)) return queue;
  DDLogLine("Could not create database queue for path " + queue->path_.value_or(""));
  return nullptr;
}

FMDatabaseQueue_Time::FMDatabaseQueue_Time(std::optional<std::string> path, int flags,
                                           std::optional<std::string> vfs)
    : path_(std::move(path)),
      openFlags_(flags),
      vfs_(std::move(vfs)),
      db_(FMDatabase_Time::databaseWithPath(path_)),
      queue_(dispatch_queue_create("fmdb." + objectDescription("FMDatabaseQueue_Time", this))) {
  dispatch_queue_set_specific(queue_, &OwnerKey, this);
}

FMDatabaseQueue_Time::~FMDatabaseQueue_Time() = default;

void FMDatabaseQueue_Time::assertNotOnQueue() const {
  if (dispatch_get_specific(&OwnerKey) == this) {
    NSAssertionFailed(
        "inDatabase: was called reentrantly on the same queue, which would lead to a deadlock");
  }
}

FMDatabase_Time* FMDatabaseQueue_Time::database() {
  if (db_->openWithFlags(openFlags_, vfs_)) return db_.get();
  DDLogLine("FMDatabaseQueue could not reopen database for path " + path_.value_or(""));
  return nullptr;
}

void FMDatabaseQueue_Time::close() {
  assertNotOnQueue();
  dispatch_sync(queue_, [this] { db_->close(); });
}

bool FMDatabaseQueue_Time::inDatabase(const std::function<void(FMDatabase_Time& db)>& block) {
  assertNotOnQueue();
  bool ran = false;
  dispatch_sync(queue_, [&] {
    FMDatabase_Time* db = database();
    if (db == nullptr) return;
    block(*db);
    ran = true;
    if (db->hasOpenResultSets()) {
      DDLogLine(
          "Warning: there is at least one open result set around after performing "
          "[FMDatabaseQueue inDatabase:]");
    }
  });
  return ran;
}

bool FMDatabaseQueue_Time::inTransaction(
    const std::function<void(FMDatabase_Time& db, bool& rollback)>& block) {
  bool succeeded = false;
  inDatabase([&](FMDatabase_Time& db) {
    succeeded = db.inTransaction(FMTransactionKind::Exclusive,
                                 [&](bool& rollback) { block(db, rollback); });
  });
  return succeeded;
}

bool FMDatabaseQueue_Time::inDeferredTransaction(
    const std::function<void(FMDatabase_Time& db, bool& rollback)>& block) {
  bool succeeded = false;
  inDatabase([&](FMDatabase_Time& db) {
    succeeded =
        db.inTransaction(FMTransactionKind::Deferred, [&](bool& rollback) { block(db, rollback); });
  });
  return succeeded;
}

std::optional<NSError> FMDatabaseQueue_Time::inSavePoint(
    const std::function<void(FMDatabase_Time& db, bool& rollback)>& block) {
  static std::atomic<long> counter = 0;
  std::optional<NSError> error;
  const std::string name = "savePoint" + std::to_string(counter++);
  const bool ran = inDatabase([&](FMDatabase_Time& db) {
    error = db.inSavePointWithName(name, [&](bool& rollback) { block(db, rollback); });
  });
  return ran ? error : db_->lastError();
}
