#include "Platform/Foundation/Zones/TimeZoneRules.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>

#include "Platform/Foundation/Zones/PosixTimeZone_p.h"

namespace {

constexpr size_t HeaderSize = 44;
constexpr size_t MaximumFileSize = 1 << 20;

/// The Gregorian calendar repeats after 146,097 days, and with it every yearly rule.
constexpr int64_t CycleSeconds = int64_t{146'097} * 86'400;

int64_t bigEndian(std::string_view bytes) {
  uint64_t value = (static_cast<unsigned char>(bytes[0]) & 0x80U) != 0 ? ~uint64_t{0} : 0;
  for (const char byte : bytes)
    value = value << 8 | static_cast<unsigned char>(byte);
  return static_cast<int64_t>(value);
}

/// The six counts of a header, in its order: UTC and standard indicators, leap seconds,
/// transitions, kinds, characters of abbreviations.
enum Count { UtcCount, StandardCount, LeapCount, TransitionCount, KindCount, CharacterCount };

bool readCounts(std::string_view header, uint32_t (&counts)[6]) {
  if (header.size() < HeaderSize || !header.starts_with("TZif")) return false;
  for (size_t index = 0; index < 6; ++index) {
    const int64_t count = bigEndian(header.substr(20 + 4 * index, 4));
    if (count < 0 || count > static_cast<int64_t>(MaximumFileSize)) return false;
    counts[index] = static_cast<uint32_t>(count);
  }
  return counts[KindCount] > 0 && counts[KindCount] <= 256;
}

size_t blockSize(const uint32_t (&counts)[6], size_t timeSize) {
  return counts[TransitionCount] * (timeSize + 1) + size_t{counts[KindCount]} * 6 +
         counts[CharacterCount] + counts[LeapCount] * (timeSize + 4) + counts[StandardCount] +
         counts[UtcCount];
}

}  // namespace

std::shared_ptr<const TimeZoneRules> TimeZoneRules::fromFile(const std::filesystem::path& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (error || size > MaximumFileSize) return nullptr;
  std::ifstream stream(path, std::ios::binary);
  std::string bytes(size, '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<size_t>(stream.gcount()));
  auto rules = std::make_shared<TimeZoneRules>();
  return rules->parse(bytes) ? rules : nullptr;
}

std::shared_ptr<const TimeZoneRules> TimeZoneRules::fromPosixRule(std::string_view rule) {
  auto rules = std::make_shared<TimeZoneRules>();
  return rules->extendByRule(rule) ? rules : nullptr;
}

std::shared_ptr<const TimeZoneRules> TimeZoneRules::fixed(int32_t offset,
                                                          std::string_view abbreviation) {
  auto rules = std::make_shared<TimeZoneRules>();
  rules->kinds_.push_back({offset, false, std::string(abbreviation)});
  return rules;
}

bool TimeZoneRules::parse(std::string_view bytes) {
  uint32_t counts[6];
  if (!readCounts(bytes, counts)) return false;
  const bool hasWideBlock = bytes[4] >= '2';
  bytes.remove_prefix(HeaderSize);
  if (!hasWideBlock) return parseBlock(bytes, 4, counts);

  // The first block repeats the second in 32 bits for readers of the first version.
  const size_t narrow = blockSize(counts, 4);
  if (bytes.size() < narrow + HeaderSize) return false;
  bytes.remove_prefix(narrow);
  if (!readCounts(bytes, counts)) return false;
  bytes.remove_prefix(HeaderSize);
  if (!parseBlock(bytes, 8, counts)) return false;

  const std::string_view footer = bytes.substr(std::min(blockSize(counts, 8), bytes.size()));
  const size_t end = footer.find('\n', 1);
  if (!footer.starts_with('\n') || end == std::string_view::npos) return false;
  const std::string_view rule = footer.substr(1, end - 1);
  return rule.empty() || extendByRule(rule);
}

bool TimeZoneRules::parseBlock(std::string_view block, int timeSize, const uint32_t (&counts)[6]) {
  const auto width = static_cast<size_t>(timeSize);
  if (block.size() < blockSize(counts, width)) return false;
  const std::string_view times = block.substr(0, counts[TransitionCount] * width);
  const std::string_view numbers = block.substr(times.size(), counts[TransitionCount]);
  const std::string_view kinds =
      block.substr(times.size() + numbers.size(), size_t{counts[KindCount]} * 6);
  const std::string_view characters =
      block.substr(times.size() + numbers.size() + kinds.size(), counts[CharacterCount]);

  for (size_t index = 0; index < counts[KindCount]; ++index) {
    const std::string_view kind = kinds.substr(index * 6, 6);
    const size_t begin = static_cast<unsigned char>(kind[5]);
    if (begin >= characters.size()) return false;
    const std::string_view name = characters.substr(begin);
    kinds_.push_back({static_cast<int32_t>(bigEndian(kind.substr(0, 4))), kind[4] != 0,
                      std::string(name.substr(0, name.find('\0')))});
  }
  for (size_t index = 0; index < counts[TransitionCount]; ++index) {
    const auto kind = static_cast<uint8_t>(numbers[index]);
    const int64_t time = bigEndian(times.substr(index * width, width));
    if (kind >= kinds_.size()) return false;
    if (!transitions_.empty() && time <= transitions_.back().time) return false;
    transitions_.push_back({time, kind});
  }
  return true;
}

uint8_t TimeZoneRules::kindNumber(const Kind& kind) {
  const auto same = [&](const Kind& other) {
    return other.offset == kind.offset && other.daylight == kind.daylight &&
           other.abbreviation == kind.abbreviation;
  };
  const auto found = std::find_if(kinds_.begin(), kinds_.end(), same);
  if (found == kinds_.end()) {
    kinds_.push_back(kind);
    return static_cast<uint8_t>(kinds_.size() - 1);
  }
  return static_cast<uint8_t>(found - kinds_.begin());
}

bool TimeZoneRules::extendByRule(std::string_view text) {
  const auto rule = PosixTimeZone::parse(text);
  if (!rule || kinds_.size() > 250) return false;
  const uint8_t standard = kindNumber({rule->standardOffset, false, rule->standardName});
  // Without daylight time the last transition goes on for ever.
  if (!rule->daylight) return true;
  const uint8_t summer = kindNumber({rule->daylight->offset, true, rule->daylight->name});
  if (transitions_.empty()) firstKind_ = standard;

  // A full cycle behind the last known transition, after which the list repeats itself.
  const int64_t last =
      transitions_.empty() ? std::numeric_limits<int64_t>::min() : transitions_.back().time;
  const int firstYear = transitions_.empty() ? 1900 : yearOfTime(last);
  std::vector<Transition> yearly;
  for (int year = firstYear; year <= firstYear + 401; ++year) {
    yearly.push_back({rule->daylight->startsAt(year) - rule->standardOffset, summer});
    yearly.push_back({rule->daylight->endsAt(year) - rule->daylight->offset, standard});
  }
  // Stable: a summer that begins in the moment in which the one before ends goes on without a gap.
  std::stable_sort(yearly.begin(), yearly.end(),
                   [](const Transition& a, const Transition& b) { return a.time < b.time; });
  for (const Transition& transition : yearly) {
    if (transition.time > last) transitions_.push_back(transition);
  }
  cycleStart_ = transitions_.back().time - CycleSeconds;
  return true;
}

TimeZonePeriod TimeZoneRules::periodAt(int64_t time) const {
  int64_t shift = 0;
  if (cycleStart_ && time >= *cycleStart_ + CycleSeconds) {
    shift = (time - *cycleStart_) / CycleSeconds * CycleSeconds;
  }
  const auto next = std::upper_bound(
      transitions_.begin(), transitions_.end(), time - shift,
      [](int64_t moment, const Transition& transition) { return moment < transition.time; });
  const bool isFirst = next == transitions_.begin();
  const Kind& kind = kinds_[isFirst ? firstKind_ : std::prev(next)->kind];
  return {isFirst ? std::numeric_limits<int64_t>::min() : std::prev(next)->time + shift,
          next == transitions_.end() ? std::numeric_limits<int64_t>::max() : next->time + shift,
          kind.offset, kind.daylight, kind.abbreviation};
}

TimeZonePeriod TimeZoneRules::periodAtLocal(int64_t wallClock) const {
  // No zone is further than this from UTC, and none changes twice within it.
  constexpr int64_t MaximumOffset = 26 * 3600;
  const TimeZonePeriod before = periodAt(wallClock - MaximumOffset);
  if (before.end == std::numeric_limits<int64_t>::max() || wallClock - before.offset < before.end) {
    return before;
  }
  const TimeZonePeriod after = periodAt(before.end);
  return wallClock - after.offset >= after.start ? after : before;
}

bool TimeZoneRules::usesDaylight() const {
  return std::any_of(kinds_.begin(), kinds_.end(), [](const Kind& kind) { return kind.daylight; });
}
