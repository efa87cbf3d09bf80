#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Cuts iCalendar text (RFC 5545) into its events and zones while it comes in, so that neither the
/// length of a file nor what it holds besides takes memory: alarms, descriptions and attachments
/// are dropped on the way.
class ICalendarReader {
 public:
  /// What is found; the texts hold for the call only.
  class Sink {
   public:
    virtual ~Sink() = default;
    /// A VEVENT with those of its properties that matter here.
    virtual void event(const std::string& component) = 0;
    /// A VTIMEZONE as it stands.
    virtual void zone(const std::string& component) = 0;
    /// A property of the calendar itself, with its name in upper case.
    virtual void property(std::string_view name, std::string_view value) = 0;
    /// An event or a zone that cannot be used, as far as it has come, and why.
    virtual void fault(std::string_view reason, const std::string& component) = 0;
  };

  explicit ICalendarReader(Sink& sink) : sink_(sink) {}

  void feed(std::string_view block);
  /// At the end of the text.
  void finish();

 private:
  enum class Inside : uint8_t { Calendar, Event, Zone };

  void append(std::string_view piece);
  void takeLine();
  void begin(std::string_view name);
  void end(std::string_view name);
  void takeEventLine();
  void keepLine();
  void leave();
  void abandon(std::string_view reason);

  Sink& sink_;
  std::string line_;         ///< The line being put together from its folded pieces.
  bool isCut_ = false;       ///< It was too long.
  bool atLineStart_ = true;  ///< What comes next begins a line as it stands in the text.
  Inside inside_ = Inside::Calendar;
  int nested_ = 0;  ///< Components around what is read, such as alarms and tasks.
  std::string component_;
  std::string_view fault_;  ///< Why what is being read cannot be used; empty if it can.
};
