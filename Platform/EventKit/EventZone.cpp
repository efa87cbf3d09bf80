#include "Platform/EventKit/EventZone_p.h"

#include <algorithm>
#include <utility>

#include "Platform/Foundation/Zones/TimeZoneRules.h"

EventZone EventZone::named(NSTimeZone zone) {
  EventZone made(Kind::Named);
  made.zone_ = std::move(zone);
  return made;
}

EventZone EventZone::defined(std::shared_ptr<const Definition> definition) {
  EventZone made(Kind::Defined);
  made.definition_ = std::move(definition);
  return made;
}

int64_t EventZone::instantOf(int64_t reading, const NSTimeZone& wallZone) const {
  switch (kind_) {
    case Kind::Floating:
      return reading - wallZone.rules().periodAtLocal(reading).offset;
    case Kind::Named:
      return reading - zone_->rules().periodAtLocal(reading).offset;
    case Kind::Defined:
      break;
  }
  // The clock before a change shows what comes before it, and what the change skips.
  int32_t offset = definition_->firstOffset;
  for (const Change& change : definition_->changes) {
    if (reading - std::max(offset, change.offset) < change.time) break;
    offset = change.offset;
  }
  return reading - offset;
}
