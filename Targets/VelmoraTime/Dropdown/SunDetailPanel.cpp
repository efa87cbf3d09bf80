#include "Targets/VelmoraTime/Dropdown/SunDetailPanel.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"
#include "Targets/Shared/Dropdown/SpacerView.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceDayLengthBackground.h"
#include "Targets/VelmoraTime/Dropdown/SunPanelRows.h"
#include "Targets/VelmoraTime/Dropdown/SunPanelTexts.h"

namespace {

constexpr std::string_view Table = "time";

/// What a value of a line tells, and under which key of the record it stands.
struct Source {
  enum class Kind { Nothing, Title, Angle, SunTime, MoonTime, PresentTime };
  Kind kind = Kind::Nothing;
  std::string_view key;  ///< Of a title: its text.
};

constexpr Source title(std::string_view text) { return {Source::Kind::Title, text}; }
constexpr Source angle(std::string_view key) { return {Source::Kind::Angle, key}; }
constexpr Source sunTime(std::string_view key) { return {Source::Kind::SunTime, key}; }
constexpr Source moonTime(std::string_view key) { return {Source::Kind::MoonTime, key}; }
constexpr Source Nothing;
constexpr Source PresentTime{Source::Kind::PresentTime, ""};

/// A line from top to bottom. One without a picture has the titles of columns.
struct Line {
  int64_t y;  ///< Of the lower edge, in points from the panel's.
  std::string_view label;
  std::string_view picture;
  Source field;
  Source value2;
};

constexpr Line Lines[] = {
    {284, "", "", title(localizedKey("AZIMUTH")), title(localizedKey("TIME"))},
    {265, localizedKey("Current Time"), "icon-moon-age", angle("azimuth-now"), PresentTime},
    {247, localizedKey("Sunrise"), "stats-calendar-sunrise", angle("azimuth-rise-sun"),
     sunTime("rise-sun")},
    {230, localizedKey("Noon"), "stats-calendar-noon", angle("azimuth-noon"), sunTime("noon")},
    {213, localizedKey("Sunset"), "stats-calendar-sunset", angle("azimuth-set-sun"),
     sunTime("set-sun")},
    {196, localizedKey("Moonrise"), "stats-calendar-moonrise", Nothing, moonTime("rise")},
    {179, localizedKey("Moonset"), "stats-calendar-moonset", Nothing, moonTime("set")},
    {106, localizedKey("Current Altitude"), "icon-sun-currentaltitude", Nothing,
     angle("altitude-now")},
    {89, localizedKey("Noon Altitude"), "stats-calendar-noon", Nothing, angle("altitude-noon")},
    {59, localizedKey("TWILIGHT"), "", title(localizedKey("DAWN")), title(localizedKey("DUSK"))},
    {41, localizedKey("Civil"), "icon-twilight-civil", sunTime("rise-civil"), sunTime("set-civil")},
    {24, localizedKey("Nautical"), "icon-twilight-nautical", sunTime("rise-nautical"),
     sunTime("set-nautical")},
    {7, localizedKey("Astronomical"), "icon-twilight-astronomical", sunTime("rise-astronomical"),
     sunTime("set-astronomical")},
};

constexpr NSRect Panel = {{0, 0}, {320, 305}};
constexpr int64_t DayLengthBottom = 128;
constexpr NSRect DayLengthBand = {{0, DayLengthBottom}, {320, 44}};
constexpr NSRect DayLength1 = {{20, 21}, {280, 18}};
constexpr NSRect DayLength2 = {{20, 6}, {280, 18}};
constexpr double DayLengthSize = 13;
constexpr NSRect Rule = {{0, 80}, {320, 1}};

/// The lines of the panel are one table to assistive technologies.
class SunTable_Time : public StatInterfaceView_Time {
 public:
  using StatInterfaceView_Time::StatInterfaceView_Time;
  NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::Table; }
};

std::string translated(std::string_view key) {
  return key.empty() ? std::string() : WENLocalizedString(key, "", Table);
}

std::shared_ptr<ZEVMenuItem_Time> itemOfLine(const Line& line) {
  if (!line.picture.empty()) {
    return createTripleSunRow(translated(line.label), line.picture, line.y);
  }
  const auto capitals = [](std::string_view key) { return uppercaseString(translated(key)); };
  return createTripleSunHeaderRow(capitals(line.label), capitals(line.field.key),
                                  capitals(line.value2.key), line.y);
}

template <typename Record>
double valueOf(const Record& record, std::string_view key) {
  const auto found = record.find(key);
  return found != record.end() ? found->second : 0;
}

}  // namespace

SunDetailPanel::SunDetailPanel() : view_(std::make_shared<SunTable_Time>(Panel)) {
  view_->setBackgroundDisabled(true);
  bool hasDayLength = false;
  for (const Line& line : Lines) {
    if (!hasDayLength && line.y < DayLengthBottom) {
      addDayLength();
      hasDayLength = true;
    }
    addLine(itemOfLine(line));
  }
  view_->addSubview(std::make_shared<SpacerView_Time>(Rule));
}

void SunDetailPanel::addLine(std::shared_ptr<ZEVMenuItem_Time> line) {
  view_->addSubview(line->alternateView());
  lines_.push_back(std::move(line));
}

void SunDetailPanel::addDayLength() {
  const auto band = std::make_shared<StatInterfaceDayLengthBackground_Time>(DayLengthBand);
  dayLength1Label_ = std::make_shared<StatInterfaceTextField_Time>(DayLength1);
  dayLength2Label_ = std::make_shared<StatInterfaceTextField_Time>(DayLength2);
  for (const auto& label : {dayLength1Label_, dayLength2Label_}) {
    label->setFont(zevNormalFont(DayLengthSize));
    label->setNormalTextColor(NSColor::whiteColor());
    label->setAlignment(NSTextAlignment::Center);
    band->addSubview(label);
  }
  view_->addSubview(band);
}

void SunDetailPanel::update(const SunData& sun, const MoonData& moon, NSDateFormatter& formatter) {
  const ClockElements format = ZEVDateAndTimeUtilities::sharedUtilities().dropdownTimeFormat();
  const auto textOf = [&](const Source& source) -> std::string {
    switch (source.kind) {
      case Source::Kind::Nothing:
      case Source::Kind::Title:
        return {};
      case Source::Kind::Angle:
        return degreesFromValue(valueOf(sun, source.key));
      case Source::Kind::SunTime:
        return timeFromValue(valueOf(sun, source.key), format, formatter);
      case Source::Kind::MoonTime:
        return timeFromValue(valueOf(moon, source.key), format, formatter);
      case Source::Kind::PresentTime:
        return dateString(format, formatter, NSDate::date().timeIntervalSince1970());
    }
    return {};
  };
  for (size_t index = 0; index < lines_.size(); ++index) {
    const Line& line = Lines[index];
    if (line.picture.empty()) continue;
    lines_[index]->field()->setStringValue(textOf(line.field));
    lines_[index]->value2()->setStringValue(textOf(line.value2));
  }
  const double today = valueOf(sun, "daylength");
  dayLength1Label_->setStringValue(dayLengthFromValue(today));
  dayLength2Label_->setStringValue(dayLengthDifference(today, valueOf(sun, "daylength-yesterday")));
}
