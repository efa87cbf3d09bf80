#pragma once

#include <cstdint>

/// The level of the system's interfaces, worked out once: each flag means later than 10.N.
class WENVersions_Time {
 public:
  static const WENVersions_Time& sharedVersions();

  int64_t major() const { return major_; }
  int64_t minor() const { return minor_; }
  int64_t bugfix() const { return bugfix_; }

  bool isLion() const { return isLion_; }
  bool isMountainLion() const { return isMountainLion_; }
  bool isMavericks() const { return isMavericks_; }
  bool isYosemite() const { return isYosemite_; }
  bool isElCapitan() const { return isElCapitan_; }
  bool isSierra() const { return isSierra_; }

 private:
  WENVersions_Time();

  /// Whether the level is later than 10.`level`.
  bool isLaterThan(int64_t level) const;

  int64_t major_;
  int64_t minor_;
  int64_t bugfix_;
  bool isLion_;
  bool isMountainLion_;
  bool isMavericks_;
  bool isYosemite_;
  bool isElCapitan_;
  bool isSierra_;
};
