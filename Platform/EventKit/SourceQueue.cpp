#include "Platform/EventKit/SourceQueue_p.h"

#include <chrono>
#include <exception>
#include <utility>

#include "Platform/Foundation/Process/NSLog.h"

namespace {

constexpr std::chrono::seconds Patience(10);

}  // namespace

struct SourceQueue::Run {
  std::mutex mutex;
  std::condition_variable done;
  bool isDone = false;
  bool isLate = false;  ///< Nobody waits any more.
};

SourceQueue::SourceQueue(std::shared_ptr<CalendarSource> source, std::string_view name,
                         std::function<void()> answered)
    : source_(std::move(source)),
      name_(name),
      answered_(std::move(answered)),
      queue_(dispatch_queue_create(name)) {}

void SourceQueue::answer(CalendarSource& source, const std::string& name, const Work& work) {
  try {
    work(source);
  } catch (const std::exception& exception) {
    NSLog("error: " + name + ": " + exception.what());
  }
}

bool SourceQueue::run(Work work) {
  if (isAlone_) {
    answer(*source_, name_, work);
    return true;
  }
  if (running_) {
    const std::lock_guard guard(running_->mutex);
    if (!running_->isDone) return false;
  }
  running_ = std::make_shared<Run>();
  dispatch_async(queue_, [run = running_, source = source_, name = name_, answered = answered_,
                          work = std::move(work)]() mutable {
    answer(*source, name, work);
    // The source may end with this, before anybody is told.
    source.reset();
    const std::lock_guard guard(run->mutex);
    run->isDone = true;
    if (run->isLate) dispatch_async(dispatch_get_main_queue(), answered);
    run->done.notify_all();
  });
  std::unique_lock lock(running_->mutex);
  if (running_->done.wait_for(lock, Patience, [this] { return running_->isDone; })) return true;
  running_->isLate = true;
  NSLog("error: " + name_ + ": no answer yet");
  return false;
}
