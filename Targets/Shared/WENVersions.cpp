#include "Targets/Shared/WENVersions.h"

#include "Platform/Foundation/Process/NSProcessInfo.h"

const WENVersions_Time& WENVersions_Time::sharedVersions() {
  static const WENVersions_Time versions;
  return versions;
}

WENVersions_Time::WENVersions_Time()
    : major_(operatingSystemVersion().majorVersion),
      minor_(operatingSystemVersion().minorVersion),
      bugfix_(operatingSystemVersion().patchVersion),
      isLion_(isLaterThan(6)),
      isMountainLion_(isLaterThan(7)),
      isMavericks_(isLaterThan(8)),
      isYosemite_(isLaterThan(9)),
      isElCapitan_(isLaterThan(10)),
      isSierra_(isLaterThan(11)) {}

bool WENVersions_Time::isLaterThan(int64_t level) const {
  return major_ > 10 || (major_ == 10 && minor_ > level);
}
