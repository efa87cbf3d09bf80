#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Dispatch/DispatchFunctions.h"
#include "Platform/EventKit/CalendarSource_p.h"

/// Asks one source on a queue of its own and does not wait for ever, so that what is broken, slow
/// or away takes nothing from the others.
class SourceQueue {
 public:
  /// `answered` is called on the main thread when an answer has come too late.
  SourceQueue(std::shared_ptr<CalendarSource> source, std::string_view name,
              std::function<void()> answered);

  /// There are no others: it is asked on the caller's thread and waited for.
  void setAlone() { isAlone_ = true; }

  /// What `question` gives. Nothing if it throws, if it takes longer than ten seconds, or while an
  /// earlier question is still being answered.
  template <typename Answer>
  std::optional<Answer> ask(std::function<Answer(CalendarSource&)> question) {
    const auto answer = std::make_shared<std::optional<Answer>>();
    const bool isInTime = run([answer, question = std::move(question)](CalendarSource& source) {
      *answer = question(source);
    });
    return isInTime ? std::move(*answer) : std::nullopt;
  }

 private:
  struct Run;
  using Work = std::function<void(CalendarSource&)>;

  static void answer(CalendarSource& source, const std::string& name, const Work& work);
  bool run(Work work);

  std::shared_ptr<CalendarSource> source_;
  std::string name_;
  std::function<void()> answered_;
  bool isAlone_ = false;
  dispatch_queue_t queue_;
  std::shared_ptr<Run> running_;
};
