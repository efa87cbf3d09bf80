#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/Files/NSFileHandle.h"
#include "Shared/External/Logging/DDAbstractLogger.h"
#include "Shared/External/Logging/DDLogFileManagerDefault.h"

/// Writes lines into a file and goes on to a new one when the file is large or old, or was deleted
/// or renamed from outside. The file is opened at the first message; one that the last run left is
/// gone on with. What cannot be written is lost, said in the system log, and tried anew with the
/// next message.
///
/// Lines that wait on the logging queue together are written together: a line is in the file when
/// the queue has nothing left, or before.
class DDFileLogger_Time : public DDAbstractLogger_Time {
 public:
  /// Without a manager, one with its default folder.
  explicit DDFileLogger_Time(std::shared_ptr<DDLogFileManagerDefault_Time> logFileManager = {});
  ~DDFileLogger_Time() override;

  const std::shared_ptr<DDLogFileManagerDefault_Time>& logFileManager() const {
    return logFileManager_;
  }

  /// The size at which a file is done with, in bytes, and the age, in seconds; 0 for never. These
  /// are called as `setLogFormatter` is. A new value holds for the present file, too.
  uint64_t maximumFileSize() const;
  void setMaximumFileSize(uint64_t bytes);
  double rollingFrequency() const;
  void setRollingFrequency(double seconds);

  /// Is done with the present file, on the logger's queue; the next message starts a new one.
  /// `completion` is called on the main queue.
  void rollLogFile();
  void rollLogFileWithCompletionBlock(std::function<void()> completion);

  void logMessage(const DDLogMessage_Time& message) override;
  void flush() override;
  void willRemoveLogger() override;

 private:
  // All below on the logger's queue only.
  DDLogFileInfo_Time* currentLogFileInfo();
  NSFileHandle* currentLogFileHandle();
  void openCurrentLogFile();
  bool isFit(DDLogFileInfo_Time& info) const;
  bool isTooOld(DDLogFileInfo_Time& info) const;
  NSDate rollingDate(DDLogFileInfo_Time& info) const;
  void add(std::string_view line);
  void writePendingLines();
  void write(std::string_view lines);
  /// Catches what `work` throws and writes the first of it to the system log.
  void reportingFailures(const std::function<void()>& work);
  void scheduleTimerToRollLogFileDueToAge();
  void maybeRollLogFileDueToAge();
  void maybeRollLogFileDueToSize();
  void rollLogFileNow();

  const std::shared_ptr<DDLogFileManagerDefault_Time> logFileManager_;
  std::optional<DDLogFileInfo_Time> currentLogFileInfo_;
  std::unique_ptr<NSFileHandle> currentLogFileHandle_;
  DispatchFileWatch currentLogFileVnode_;
  DispatchTimer rollingTimer_;
  uint64_t maximumFileSize_ = 1'048'576;
  double rollingFrequency_ = 86'400;
  /// Whole lines, not yet written.
  std::string pendingLines_;
  /// Where the present file ends, as far as it is known.
  uint64_t position_ = 0;
  /// The file may end in a cut line: of a process that was killed, or of a write that failed.
  bool mayEndInCutLine_ = false;
  int failures_ = 0;
};
