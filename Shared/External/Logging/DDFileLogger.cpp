#include "Shared/External/Logging/DDFileLogger.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <string>
#include <utility>

#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Shared/External/Logging/DDLog.h"
#include "Shared/External/Logging/DDLogFileFormatterDefault.h"
#include "Shared/External/Logging/DDLogMessage.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* LoggerName = "cocoa.lumberjack.fileLogger";

constexpr int FailuresReported = 10;

/// A file may be taken away between its making and its opening; more often means no luck at all.
constexpr int OpeningAttempts = 3;

/// So many bytes of lines are written at once at the most, but for the last line's excess.
constexpr size_t MaximumPending = 16'384;

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

void synchronize(NSFileHandle& file) {
  try {
    file.synchronizeFile();
  } catch (const std::exception&) {
    // Every line of the file was written or its failure told.
  }
}

}  // namespace

DDFileLogger_Time::DDFileLogger_Time(std::shared_ptr<DDLogFileManagerDefault_Time> logFileManager)
    : DDAbstractLogger_Time(LoggerName),
      logFileManager_(logFileManager ? std::move(logFileManager)
                                     : std::make_shared<DDLogFileManagerDefault_Time>()) {
  // Nothing is logged yet, so no queue has to be asked.
  setInitialFormatter(std::make_shared<DDLogFileFormatterDefault_Time>());
}

DDFileLogger_Time::~DDFileLogger_Time() {
  // Their handlers use this object.
  rollingTimer_.reset();
  currentLogFileVnode_.reset();
  writePendingLines();
  if (currentLogFileHandle_) synchronize(*currentLogFileHandle_);
}

uint64_t DDFileLogger_Time::maximumFileSize() const {
  uint64_t bytes = 0;
  read([&] { bytes = maximumFileSize_; });
  return bytes;
}

void DDFileLogger_Time::setMaximumFileSize(uint64_t bytes) {
  change([this, bytes] {
    maximumFileSize_ = bytes;
    maybeRollLogFileDueToSize();
  });
}

double DDFileLogger_Time::rollingFrequency() const {
  double seconds = 0;
  read([&] { seconds = rollingFrequency_; });
  return seconds;
}

void DDFileLogger_Time::setRollingFrequency(double seconds) {
  change([this, seconds] {
    rollingFrequency_ = seconds;
    maybeRollLogFileDueToAge();
  });
}

void DDFileLogger_Time::rollLogFile() { rollLogFileWithCompletionBlock({}); }

void DDFileLogger_Time::rollLogFileWithCompletionBlock(std::function<void()> completion) {
  const auto self = std::static_pointer_cast<DDFileLogger_Time>(shared_from_this());
  dispatch_async(loggerQueue(), [self, completion = std::move(completion)] {
    self->writePendingLines();
    self->rollLogFileNow();
    if (completion) dispatch_async(dispatch_get_main_queue(), completion);
  });
}

void DDFileLogger_Time::willRemoveLogger() {
  writePendingLines();
  rollLogFileNow();
}

void DDFileLogger_Time::flush() {
  writePendingLines();
  if (currentLogFileHandle_) synchronize(*currentLogFileHandle_);
}

void DDFileLogger_Time::logMessage(const DDLogMessage_Time& message) {
  auto line = formatter() ? formatter()->formatLogMessage(message) : message.logMsg;
  if (!line || line->empty()) return;
  if (!isAscii(*line)) line = validUtf8(*line);
  if (line->back() != '\n') *line += '\n';
  add(*line);
}

void DDFileLogger_Time::add(std::string_view line) {
  if (pendingLines_.empty()) {
    // Opened before it is written to: how much the file still takes must be known.
    reportingFailures([this] { currentLogFileHandle(); });
    // Behind the messages that wait by now.
    const auto self = std::static_pointer_cast<DDFileLogger_Time>(shared_from_this());
    dispatch_async(DDLog_Time::loggingQueue(), [self] {
      dispatch_sync(self->loggerQueue(), [&] { self->writePendingLines(); });
    });
  }
  pendingLines_ += line;
  const bool fillsFile =
      maximumFileSize_ > 0 && position_ + pendingLines_.size() >= maximumFileSize_;
  if (fillsFile || pendingLines_.size() >= MaximumPending) writePendingLines();
}

void DDFileLogger_Time::writePendingLines() {
  if (pendingLines_.empty()) return;
  reportingFailures([this] {
    write(pendingLines_);
    maybeRollLogFileDueToSize();
  });
  pendingLines_.clear();
  // One giant line is no reason to keep its room.
  if (pendingLines_.capacity() > 4 * MaximumPending) pendingLines_.shrink_to_fit();
}

void DDFileLogger_Time::write(std::string_view lines) {
  NSFileHandle* const file = currentLogFileHandle();
  if (file == nullptr) return;
  if (mayEndInCutLine_ && !file->endsInLineEnd()) file->writeData("\n");
  mayEndInCutLine_ = true;
  file->writeData(lines);
  mayEndInCutLine_ = false;
  position_ = file->offsetInFile();
}

void DDFileLogger_Time::reportingFailures(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception& exception) {
    if (failures_ == FailuresReported) return;
    ++failures_;
    NSLog(std::string("DDFileLogger.logMessage: ") + exception.what());
    if (failures_ == FailuresReported) {
      NSLog("DDFileLogger.logMessage: Too many exceptions -- will not log any more of them.");
    }
  }
}

bool DDFileLogger_Time::isFit(DDLogFileInfo_Time& info) const {
  if (info.isArchived()) return false;
  if (maximumFileSize_ > 0 && info.fileSize() >= maximumFileSize_) return false;
  return !isTooOld(info);
}

bool DDFileLogger_Time::isTooOld(DDLogFileInfo_Time& info) const {
  // By the timer's own date: an age that rounding made a little less would set it again at once.
  return rollingFrequency_ > 0 && NSDate::date() >= rollingDate(info);
}

NSDate DDFileLogger_Time::rollingDate(DDLogFileInfo_Time& info) const {
  return info.creationDate().dateByAddingTimeInterval(rollingFrequency_);
}

DDLogFileInfo_Time* DDFileLogger_Time::currentLogFileInfo() {
  if (!currentLogFileInfo_) {
    auto infos = logFileManager_->sortedLogFileInfos();
    if (!infos.empty() && isFit(infos.front())) {
      currentLogFileInfo_ = std::move(infos.front());
    } else {
      if (!infos.empty() && !infos.front().isArchived()) infos.front().setIsArchived(true);
      currentLogFileInfo_ = logFileManager_->createNewLogFile();
    }
  }
  return currentLogFileInfo_ ? &*currentLogFileInfo_ : nullptr;
}

NSFileHandle* DDFileLogger_Time::currentLogFileHandle() {
  // The watch may be late, as it is when the main thread is busy, or deaf: the system gives a user
  // so many watches and no more.
  if (currentLogFileHandle_ &&
      !currentLogFileHandle_->isFileAtPath(currentLogFileInfo_->filePath())) {
    rollLogFileNow();
  }
  for (int attempt = 0; !currentLogFileHandle_ && attempt < OpeningAttempts; ++attempt) {
    if (currentLogFileInfo() == nullptr) break;
    openCurrentLogFile();
  }
  return currentLogFileHandle_.get();
}

void DDFileLogger_Time::openCurrentLogFile() {
  const fs::path path = currentLogFileInfo_->filePath();
  currentLogFileHandle_ = NSFileHandle::fileHandleForAppendingAtPath(path);
  if (currentLogFileHandle_) {
    currentLogFileVnode_ = DispatchFileWatch(currentLogFileHandle_->fileDescriptor(),
                                             DISPATCH_VNODE_DELETE | DISPATCH_VNODE_RENAME,
                                             loggerQueue(), [this] { rollLogFileNow(); });
    // The watch does not tell of what happened before it.
    if (!currentLogFileHandle_->isFileAtPath(path)) currentLogFileHandle_.reset();
  }
  if (!currentLogFileHandle_) {
    currentLogFileVnode_.reset();
    currentLogFileInfo_.reset();
    return;
  }
  mayEndInCutLine_ = true;
  position_ = currentLogFileHandle_->offsetInFile();
  scheduleTimerToRollLogFileDueToAge();
}

void DDFileLogger_Time::scheduleTimerToRollLogFileDueToAge() {
  rollingTimer_.reset();
  if (!currentLogFileInfo_ || rollingFrequency_ <= 0) return;
  rollingTimer_ = DispatchTimer(rollingDate(*currentLogFileInfo_), loggerQueue(),
                                [this] { maybeRollLogFileDueToAge(); });
}

void DDFileLogger_Time::maybeRollLogFileDueToAge() {
  if (currentLogFileInfo_ && isTooOld(*currentLogFileInfo_)) {
    writePendingLines();
    rollLogFileNow();
  } else {
    scheduleTimerToRollLogFileDueToAge();
  }
}

void DDFileLogger_Time::maybeRollLogFileDueToSize() {
  if (maximumFileSize_ == 0 || !currentLogFileHandle_) return;
  if (position_ >= maximumFileSize_) rollLogFileNow();
}

void DDFileLogger_Time::rollLogFileNow() {
  if (!currentLogFileHandle_) return;
  synchronize(*currentLogFileHandle_);
  currentLogFileHandle_.reset();
  position_ = 0;
  currentLogFileInfo_->setIsArchived(true);
  logFileManager_->didRollAndArchiveLogFile(currentLogFileInfo_->filePath());
  currentLogFileInfo_.reset();
  currentLogFileVnode_.reset();
  rollingTimer_.reset();
}
