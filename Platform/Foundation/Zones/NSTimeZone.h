#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/Time/NSDate.h"

class TimeZoneRules;

/// A time zone by its IANA name, with the rules of the system's zone files. A value: copies share
/// the rules.
class NSTimeZone {
 public:
  /// The machine's zone: `TZ`, else the target of `/etc/localtime`, else UTC. Kept until
  /// `resetSystemTimeZone`.
  static NSTimeZone systemTimeZone();
  /// The zone for whatever names none: the system's.
  static NSTimeZone defaultTimeZone() { return systemTimeZone(); }
  static void resetSystemTimeZone();

  /// Makes another zone the system's in this process; nothing undoes that.
  static void setSystemTimeZone(std::optional<NSTimeZone> zone);

  /// Nothing if the system has no such zone.
  static std::optional<NSTimeZone> timeZoneWithName(std::string_view name);
  /// Knows "UTC" and "GMT".
  static std::optional<NSTimeZone> timeZoneWithAbbreviation(std::string_view abbreviation);

  const std::string& name() const { return *name_; }

  /// Seconds to add to UTC, east-positive; for the present instant without a date.
  int secondsFromGMT() const;
  int secondsFromGMTForDate(const NSDate& date) const;

  /// The zone's rules, for the platform's own use.
  const TimeZoneRules& rules() const { return *rules_; }

  friend bool operator==(const NSTimeZone& a, const NSTimeZone& b) { return a.rules_ == b.rules_; }

 private:
  NSTimeZone(std::string_view name, std::shared_ptr<const TimeZoneRules> rules)
      : name_(std::make_shared<const std::string>(name)), rules_(std::move(rules)) {}

  static NSTimeZone findSystemTimeZone();
  static NSTimeZone zoneOfFile(const std::filesystem::path& file);

  std::shared_ptr<const std::string> name_;
  std::shared_ptr<const TimeZoneRules> rules_;
};

/// The file whose target names the machine's zone: `/etc/localtime`, or what
/// `VELMORA_LOCALTIME_FILE` names in its place.
std::filesystem::path localTimeFile();

/// Where the system's zone files lie: `TZDIR`, else the usual folder.
std::filesystem::path timeZoneFolder();
