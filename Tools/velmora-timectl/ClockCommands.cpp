#include <array>
#include <memory>

#include "Platform/Foundation/Time/SystemClock.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceTimeItem.h"
#include "Targets/VelmoraTime/Dropdown/SunDetailPanel.h"
#include "Tools/velmora-timectl/Command.h"
#include "Tools/velmora-timectl/Errors.h"
#include "Tools/velmora-timectl/MenubarContent.h"

namespace {

ClockElements elementsArgument(const Arguments& arguments) {
  constexpr std::string_view Option = "--elements";
  const PropertyList value = propertyListFromJson(arguments.required(Option), Option);
  ClockElements elements;
  bool isListOfTexts = value.array() != nullptr;
  if (isListOfTexts) {
    for (const PropertyList& item : *value.array()) {
      if (item.string() == nullptr) {
        isListOfTexts = false;
        break;
      }
      elements.push_back(*item.string());
    }
  }
  if (!isListOfTexts) {
    throw UsageError(R"(--elements: a JSON list of texts is wanted, such as '["HH",":","mm"]')");
  }
  return elements;
}

Json textsOf(const ClockElements& elements) { return Json(elements); }

Json formatCommand(const Arguments& arguments) {
  arguments.expectRest({});
  const NSDate time = instantFromText(arguments.required("--time"), "--time");
  NSDateFormatter& formatter = ZEVDateAndTimeUtilities::sharedUtilities().dateFormatter();
  formatter.setTimeZone(zoneFromText(arguments.required("--zone"), "--zone"));
  return {
      {"text", dateString(elementsArgument(arguments), formatter, time.timeIntervalSince1970())}};
}

Json pieceJson(const ClockPiece& piece) {
  Json json;
  switch (piece.kind) {
    case ClockPiece::Kind::Text:
      json = {{"kind", "text"}, {"text", piece.text}};
      break;
    case ClockPiece::Kind::Separator:
      json = {{"kind", "separator"}, {"text", piece.text}, {"visible", piece.isVisible}};
      break;
    case ClockPiece::Kind::Moon:
      json["kind"] = "moon";
      break;
    case ClockPiece::Kind::Calendar:
      json = {
          {"kind", "calendar"}, {"type", piece.text}, {"day", piece.day}, {"white", piece.isWhite}};
      break;
  }
  json["x"] = piece.point.x;
  json["y"] = piece.point.y;
  return json;
}

Json menubarCommand(const Arguments& arguments) {
  arguments.expectRest({});
  const std::string flash = arguments.required("--flash");
  if (flash != "0" && flash != "1") {
    throw UsageError("--flash: '" + flash + "' is neither 0 nor 1");
  }
  int64_t width = 0;
  const auto content = makeMenubarContent();
  const auto pieces = content.view->clockPieces(width, NSDate::date().timeIntervalSince1970(),
                                                flash == "1" ? 1 : 0, elementsArgument(arguments));
  Json list = Json::array();
  std::string texts;
  for (const ClockPiece& piece : pieces) {
    list.push_back(pieceJson(piece));
    if (piece.kind == ClockPiece::Kind::Text || piece.kind == ClockPiece::Kind::Separator) {
      texts += piece.text;
    }
  }
  return {{"pieces", list}, {"texts", texts}, {"width", width == 0 ? EmptySlotWidth : width}};
}

Json dropdownTimeFormatCommand(const Arguments& arguments) {
  arguments.expectRest({});
  return textsOf(ZEVDateAndTimeUtilities::sharedUtilities().dropdownTimeFormat());
}

Json weekCommand(const Arguments& arguments) {
  arguments.expectRest({});
  const NSDate time = instantFromText(arguments.required("--time"), "--time");
  return {{"week", ZEVDateAndTimeUtilities::sharedUtilities().week(time.timeIntervalSince1970())}};
}

/// A world clock as the dropdown makes it.
std::shared_ptr<StatInterfaceTimeItem> worldClock(const NSTimeZone& zone, double latitude = 0,
                                                  double longitude = 0) {
  CityRecord city;
  city.timezone = zone.name();
  city.latitude = latitude;
  city.longitude = longitude;
  auto clock = std::make_shared<StatInterfaceTimeItem>();
  clock->setDetails(city);
  clock->loadLocale();
  clock->updateMode();
  clock->updateStaticInfo();
  return clock;
}

Json clockCommand(const Arguments& arguments) {
  arguments.expectRest({});
  const auto clock = worldClock(zoneFromText(arguments.required("--zone"), "--zone"));
  return {{"text", clock->textOfElements(elementsArgument(arguments), NSDate::date())}};
}

/// The same at the place of the arguments.
std::shared_ptr<StatInterfaceTimeItem> worldClockAtPlace(const Arguments& arguments) {
  arguments.expectRest({});
  return worldClock(zoneFromText(arguments.required("--zone"), "--zone"),
                    numberFromText(arguments.required("--lat"), "--lat", -90, 90),
                    numberFromText(arguments.required("--lon"), "--lon", -180, 180));
}

Json lightCommand(const Arguments& arguments) {
  const auto clock = worldClockAtPlace(arguments);
  clock->updateSoonAndMoon();
  clock->updateLight(NSDate::date());
  return {{"day", clock->day()},
          {"lightPercentage", static_cast<double>(clock->lightPercentage())}};
}

Json sunPanelCommand(const Arguments& arguments) {
  const auto clock = worldClockAtPlace(arguments);
  clock->updateSubmenu();
  const SunDetailPanel& panel = clock->sunPanel();
  Json list = Json::array();
  for (const auto& line : panel.lines()) {
    list.push_back({{"label", line->label()->stringValue()},
                    {"field", line->field()->stringValue()},
                    {"value2", line->value2()->stringValue()}});
  }
  list.push_back({{"dayLength1", panel.dayLength1Label()->stringValue()},
                  {"dayLength2", panel.dayLength2Label()->stringValue()}});
  return list;
}

std::string fuzzyClockInZone(const NSDate& date, const NSTimeZone& zone) {
  return worldClock(zone)->fuzzyClockWithDate(
      date.dateByAddingTimeInterval(zone.secondsFromGMTForDate(date)));
}

Json fuzzyCommand(const Arguments& arguments) {
  arguments.expectRest({});
  const NSDate date = instantFromText(arguments.required("--time"), "--time");
  const std::string copy = arguments.required("--copy");
  const auto zone = arguments.value("--zone");
  if (copy == "clock") {
    return {{"text", fuzzyClockInZone(date, zone ? zoneFromText(*zone, "--zone")
                                                 : NSTimeZone::systemTimeZone())}};
  }
  if (zone) throw UsageError("--zone goes with --copy clock only; the others show the system zone");
  const double time = date.timeIntervalSince1970();
  if (copy == "menubar") return {{"text", makeMenubarContent().view->fuzzyClock(time)}};
  if (copy == "utilities") {
    return {{"text", ZEVDateAndTimeUtilities::sharedUtilities().fuzzyClock(time)}};
  }
  throw UsageError("--copy: there is no copy '" + copy + "'; there are: utilities, menubar, clock");
}

constexpr OptionSpec TimeOption = {"--time", "INSTANT", "the instant to show", true};
constexpr OptionSpec ElementsOption = {"--elements", "JSON-LIST", "the format list", true};

constexpr OptionSpec ZoneOption = {"--zone", "ZONE", "the time zone, by its IANA name", true};

constexpr OptionSpec FormatOptions[] = {TimeOption, ZoneOption, ElementsOption};
constexpr OptionSpec ClockOptions[] = {ZoneOption, ElementsOption};
constexpr OptionSpec PlaceOptions[] = {ZoneOption,
                                       {"--lat", "D", "latitude in degrees, north-positive", true},
                                       {"--lon", "D", "longitude in degrees, east-positive", true}};
constexpr OptionSpec MenubarOptions[] = {
    ElementsOption,
    {"--flash", "0|1", "whether the flashing separators are shown or hidden", true}};
constexpr OptionSpec WeekOptions[] = {TimeOption};
constexpr OptionSpec FuzzyOptions[] = {TimeOption,
                                       {"--copy", "utilities|menubar|clock", "whose wording", true},
                                       {"--zone", "ZONE", "the city's zone, for clock"}};

constexpr Command Commands[] = {
    {"format", "", "the text of a format list for an instant", FormatOptions, formatCommand},
    {"menubar", "", "what one draw of the clock in the bar does now", MenubarOptions,
     menubarCommand},
    {"clock", "", "the text of a world clock now", ClockOptions, clockCommand},
    {"light", "", "the light on a world clock's face now", PlaceOptions, lightCommand},
    {"sun-panel", "", "the texts of a city's sun panel now", PlaceOptions, sunPanelCommand},
    {"dropdown-time-format", "", "the format list of a bare time", {}, dropdownTimeFormatCommand},
    {"week", "", "the week number of an instant, on the UTC calendar", WeekOptions, weekCommand},
    {"fuzzy", "", "the time in words, in the system zone or a city's", FuzzyOptions, fuzzyCommand},
};

}  // namespace

std::span<const Command> clockCommands() { return Commands; }
