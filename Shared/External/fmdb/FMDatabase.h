#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/PropertyLists/PropertyList.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Shared/External/fmdb/FMArguments.h"
#include "Shared/External/fmdb/FMDateFormat.h"
#include "Shared/External/fmdb/FMResultSet.h"

class FMConnection;
class FMStatement_Time;
struct sqlite3;
struct sqlite3_stmt;

/// Flags for `openWithFlags`.
constexpr int FMOpenReadOnly = 1;
constexpr int FMOpenReadWrite = 2;
constexpr int FMOpenCreate = 4;

/// Answers of SQLite that a caller may want to tell apart.
constexpr int FMResultConstraint = 19;

/// Whether an error lies in the statement or its values, so that it would come again. Any other may
/// pass: a lock, a full disk.
bool FMIsErrorOfStatement(int64_t code);

enum class FMTransactionKind { Exclusive, Deferred };

/// A connection to one SQLite database. Failures are return values and log lines; the last one can
/// be asked for.
///
/// Any thread may call. Two execute calls do not run at once: the later one fails at once, with a
/// log line that the connection is in use, unless `setWaitsForTurn` has it wait. Cursors are
/// stepped independently of that. Closing may happen at any moment: it closes the open cursors, and
/// the file as soon as a call in progress on another thread has ended.
class FMDatabase_Time : public FMResultSetParent,
                        public std::enable_shared_from_this<FMDatabase_Time> {
 public:
  /// A closed connection to the file at `path`, which is resolved by `resolvedPath`. Null stands
  /// for a database in memory, an empty path for a temporary file.
  static std::shared_ptr<FMDatabase_Time> databaseWithPath(std::optional<std::string> path);

  FMDatabase_Time(const FMDatabase_Time&) = delete;
  FMDatabase_Time& operator=(const FMDatabase_Time&) = delete;
  /// Closes.
  ~FMDatabase_Time() override;

  /// This layer's version.
  static std::string_view version() { return "2.6.2"; }

  const std::optional<std::string>& databasePath() const override { return databasePath_; }
  std::string description() const;

  /// Opens for reading and writing and creates a missing file. True also if it was open.
  bool open();
  bool openWithFlags(int flags) { return openWithFlags(flags, std::nullopt); }
  /// `vfs` names one of SQLite's file systems; null means the usual one.
  bool openWithFlags(int flags, const std::optional<std::string>& vfs);
  /// Always true. An open transaction is undone.
  bool close();
  /// Whether the connection is open and the file is a database.
  bool goodConnection();
  /// SQLite's own handle, null while closed. Not owned.
  sqlite3* db() const;

  bool logsErrors() const { return logsErrors_; }
  void setLogsErrors(bool logs) { logsErrors_ = logs; }
  /// Whether misuse and faulty queries end the program.
  bool crashOnErrors() const { return crashOnErrors_; }
  void setCrashOnErrors(bool crashes) { crashOnErrors_ = crashes; }
  /// Whether each query is printed to standard output.
  bool traceExecution() const { return traceExecution_; }
  void setTraceExecution(bool traces) { traceExecution_ = traces; }
  bool checkedOut() const { return checkedOut_; }
  void setCheckedOut(bool checkedOut) { checkedOut_ = checkedOut; }

  /// Whether an execute call waits for the end of another thread's, rather than fail.
  bool waitsForTurn() const { return waitsForTurn_; }
  void setWaitsForTurn(bool waits) { waitsForTurn_ = waits; }

  /// How long a call waits for a lock that another connection holds, in seconds; 0 or less: not.
  double maxBusyRetryTimeInterval() const { return maxBusyRetryTimeInterval_; }
  void setMaxBusyRetryTimeInterval(double seconds);

  /// Whether prepared statements are kept by their text for the next call.
  bool shouldCacheStatements() const;
  void setShouldCacheStatements(bool caches);
  /// A statement under a cursor lives on until the cursor is closed.
  void clearCachedStatements();

  bool hasOpenResultSets() const;
  void closeOpenResultSets();

  /// A cursor before the first row, or null. The values take the places of the query's parameters:
  /// one by one, as an array, or by name as a dictionary ("name" for ":name"). There must be one
  /// for each parameter. `FMArguments.h` tells what a value can be.
  std::shared_ptr<FMResultSet_Time> executeQuery(std::string_view sql) {
    return executeQueryWithArguments(sql, {});
  }
  std::shared_ptr<FMResultSet_Time> executeQuery(std::string_view sql,
                                                 const PropertyList::Array& arguments) {
    return executeQueryWithArguments(sql, {&arguments, nullptr});
  }
  std::shared_ptr<FMResultSet_Time> executeQuery(std::string_view sql,
                                                 const PropertyList::Dictionary& parameters) {
    return executeQueryWithArguments(sql, {nullptr, &parameters});
  }
  template <FMBindable First, FMBindable... Rest>
  std::shared_ptr<FMResultSet_Time> executeQuery(std::string_view sql, const First& first,
                                                 const Rest&... rest) {
    return executeQuery(sql, FMArgumentArray(first, rest...));
  }
  /// The values are bound where the format names them, as in "name = %@ and size > %d": never
  /// within quotation marks.
  template <FMBindable... Values>
  std::shared_ptr<FMResultSet_Time> executeQueryWithFormat(std::string_view format,
                                                           const Values&... values) {
    return executeQuery(FMQueryFromFormat(format), FMArgumentArray(values...));
  }

  /// Runs a statement that returns no rows. False if it fails, and if a row comes back.
  bool executeUpdate(std::string_view sql) { return executeUpdateWithArguments(sql, nullptr, {}); }
  bool executeUpdate(std::string_view sql, const PropertyList::Array& arguments) {
    return executeUpdateWithArguments(sql, nullptr, {&arguments, nullptr});
  }
  bool executeUpdate(std::string_view sql, const PropertyList::Dictionary& parameters) {
    return executeUpdateWithArguments(sql, nullptr, {nullptr, &parameters});
  }
  template <FMBindable First, FMBindable... Rest>
  bool executeUpdate(std::string_view sql, const First& first, const Rest&... rest) {
    return executeUpdate(sql, FMArgumentArray(first, rest...));
  }
  template <FMBindable... Values>
  bool executeUpdateWithFormat(std::string_view format, const Values&... values) {
    return executeUpdate(FMQueryFromFormat(format), FMArgumentArray(values...));
  }
  /// The same, with the error of a failure.
  bool executeUpdate(std::string_view sql, std::optional<NSError>* error,
                     const PropertyList::Array& arguments) {
    return executeUpdateWithArguments(sql, error, {&arguments, nullptr});
  }
  bool executeUpdate(std::string_view sql, std::optional<NSError>* error,
                     const PropertyList::Dictionary& parameters) {
    return executeUpdateWithArguments(sql, error, {nullptr, &parameters});
  }

  /// Called for each row, with texts and nulls. Another answer than 0 ends the run as a failure.
  using FMExecuteStatementsBlock = std::function<int(const PropertyList::Dictionary& row)>;
  /// Runs several statements, separated by semicolons, up to the first that fails. The connection
  /// does not count as in use meanwhile.
  bool executeStatements(const std::string& sql) { return executeStatements(sql, nullptr); }
  bool executeStatements(const std::string& sql, const FMExecuteStatementsBlock& resultBlock);

  /// By SQLite's own word: some failures, such as a full disk, undo a transaction by themselves.
  bool inTransaction() const;
  /// Takes the lock for writing at once; `beginDeferredTransaction` when it is first needed.
  bool beginTransaction(std::optional<NSError>* error = nullptr);
  bool beginDeferredTransaction();
  bool commit(std::optional<NSError>* error = nullptr);
  bool rollback();
  /// Runs `block` within a transaction: commits, or undoes what it did if it asks for that, throws
  /// or cannot be committed. False if the transaction could not be begun, in which case nothing is
  /// run, or not be ended as asked.
  bool inTransaction(FMTransactionKind kind, const std::function<void(bool& rollback)>& block);

  bool startSavePointWithName(std::string_view name, std::optional<NSError>* error);
  bool releaseSavePointWithName(std::string_view name, std::optional<NSError>* error);
  bool rollbackToSavePointWithName(std::string_view name, std::optional<NSError>* error);
  /// Runs `block` within a save point of its own and undoes what it did if it asks for that or
  /// throws. The error, if the save point could not be made or ended.
  std::optional<NSError> inSavePoint(const std::function<void(bool& rollback)>& block);
  std::optional<NSError> inSavePointWithName(const std::string& name,
                                             const std::function<void(bool& rollback)>& block);

  std::string lastErrorMessage() const;
  int lastErrorCode() const;
  bool hadError() const;
  NSError lastError() const;
  int64_t lastInsertRowId() const;
  int changes() const;

  /// The first column of the first row: null, 0 or false without one.
  template <typename... Values>
  std::optional<std::string> stringForQuery(std::string_view sql, const Values&... values) {
    const auto row = firstRow(sql, values...);
    return row ? row->stringForColumnIndex(0) : std::nullopt;
  }
  template <typename... Values>
  int intForQuery(std::string_view sql, const Values&... values) {
    const auto row = firstRow(sql, values...);
    return row ? row->intForColumnIndex(0) : 0;
  }
  template <typename... Values>
  long longForQuery(std::string_view sql, const Values&... values) {
    const auto row = firstRow(sql, values...);
    return row ? row->longForColumnIndex(0) : 0;
  }
  template <typename... Values>
  bool boolForQuery(std::string_view sql, const Values&... values) {
    const auto row = firstRow(sql, values...);
    return row && row->boolForColumnIndex(0);
  }
  template <typename... Values>
  double doubleForQuery(std::string_view sql, const Values&... values) {
    const auto row = firstRow(sql, values...);
    return row ? row->doubleForColumnIndex(0) : 0;
  }
  template <typename... Values>
  std::optional<PropertyList::Data> dataForQuery(std::string_view sql, const Values&... values) {
    const auto row = firstRow(sql, values...);
    return row ? row->dataForColumnIndex(0) : std::nullopt;
  }
  template <typename... Values>
  std::optional<NSDate> dateForQuery(std::string_view sql, const Values&... values) {
    const auto row = firstRow(sql, values...);
    return row ? row->dateForColumnIndex(0) : std::nullopt;
  }

  bool tableExists(std::string_view name);
  /// A row for each column of the table: none if there is no such table.
  std::shared_ptr<FMResultSet_Time> getTableSchema(std::string_view name);
  bool columnExists(std::string_view column, std::string_view table);
  int32_t userVersion();
  void setUserVersion(int32_t version);
  /// Whether the text can be prepared; nothing is run.
  bool validateSQL(std::string_view sql, std::optional<NSError>* error);
  /// Reads the whole file for faults. A busy database counts as valid.
  bool isDatabaseValid();

  /// A format for `setDateFormat`; null for a pattern that it cannot have.
  static std::optional<FMDateFormat> storeableDateFormat(std::string_view pattern) {
    return FMDateFormat::formatWithPattern(pattern);
  }
  /// Stores dates as text and reads them so; null brings seconds since 1970 back.
  void setDateFormat(std::optional<FMDateFormat> format);
  std::optional<FMDateFormat> dateFormat() const override;

 private:
  /// Text keys that are looked up without a copy.
  struct TextHash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  using Statements = std::vector<std::shared_ptr<FMStatement_Time>>;
  using StatementCache = std::unordered_map<std::string, Statements, TextHash, std::equal_to<>>;

  /// Whether a statement's text may come again, so that the statement is worth keeping.
  enum class TextUse { Repeated, Once };

  explicit FMDatabase_Time(std::optional<std::string> path);

  std::shared_ptr<FMConnection> connection() const;
  std::shared_ptr<FMConnection> connectionForCall(NSError& error) const;
  NSError warnInUse() const;

  std::shared_ptr<FMResultSet_Time> executeQueryWithArguments(std::string_view sql,
                                                              const FMArguments& arguments);
  bool executeUpdateWithArguments(std::string_view sql, std::optional<NSError>* error,
                                  const FMArguments& arguments, TextUse use = TextUse::Repeated);
  bool runUpdate(std::string_view sql, const FMArguments& arguments, TextUse use, NSError& error);
  std::shared_ptr<FMStatement_Time> statementForQuery(
      const std::shared_ptr<FMConnection>& connection, std::string_view sql, NSError& error);
  std::shared_ptr<FMStatement_Time> cachedStatementForQuery(std::string_view sql);
  void cacheStatement(const std::shared_ptr<FMStatement_Time>& statement, std::string_view sql);
  bool stepUpdate(FMStatement_Time& statement, std::string_view sql, NSError& error) const;
  void logFailure(const std::string& words, std::string_view sql) const;

  /// The number of parameters that got a value.
  int bindArguments(const FMArguments& arguments, sqlite3_stmt* statement) const;
  bool bindObject(const PropertyList& object, int column, sqlite3_stmt* statement) const;

  template <typename... Values>
  std::shared_ptr<FMResultSet_Time> firstRow(std::string_view sql, const Values&... values) {
    auto rows = executeQuery(sql, values...);
    return rows && rows->next() ? rows : nullptr;
  }

  void resultSetDidClose(const FMResultSet_Time& resultSet) override;

  const std::optional<std::string> databasePath_;
  std::atomic<bool> logsErrors_ = true;
  std::atomic<bool> crashOnErrors_ = false;
  std::atomic<bool> traceExecution_ = false;
  std::atomic<bool> checkedOut_ = false;
  std::atomic<bool> waitsForTurn_ = false;
  std::atomic<bool> isExecutingStatement_ = false;
  std::atomic<double> maxBusyRetryTimeInterval_ = 2;

  /// Guards what follows. Never held while a statement runs or a cursor is closed.
  mutable std::mutex mutex_;
  std::shared_ptr<FMConnection> connection_;  ///< Null while closed.
  NSError openError_;                         ///< Why the last open failed.
  std::optional<StatementCache> cachedStatements_;
  std::unordered_map<const FMResultSet_Time*, std::weak_ptr<FMResultSet_Time>> openResultSets_;
  std::optional<FMDateFormat> dateFormat_;
};
