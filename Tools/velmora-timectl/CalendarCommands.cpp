#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <regex>

#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/VelmoraTime/Calendar/CalendarPlaces.h"
#include "Targets/VelmoraTime/Calendar/StatInterfaceCalendar.h"
#include "Tools/velmora-timectl/CalendarFolder.h"
#include "Tools/velmora-timectl/Command.h"
#include "Tools/velmora-timectl/Errors.h"

namespace {

constexpr int FirstYear = 1;

/// The beginning of a date that is written "YYYY-MM-DD", in wall-clock seconds.
std::optional<double> dateFromText(const std::string& text) {
  static const std::regex form(R"((\d{4})-(\d{2})-(\d{2}))");
  std::smatch parts;
  if (!std::regex_match(text, parts, form)) return std::nullopt;
  const auto part = [&](size_t index) { return std::stoi(parts[index]); };
  const std::chrono::year_month_day date{std::chrono::year(part(1)),
                                         std::chrono::month(static_cast<unsigned>(part(2))),
                                         std::chrono::day(static_cast<unsigned>(part(3)))};
  if (!date.ok() || part(1) < FirstYear) return std::nullopt;
  return static_cast<double>(std::chrono::sys_days(date).time_since_epoch().count()) *
         SecondsPerDay;
}

std::shared_ptr<StatInterfaceCalendar_Time> monthFromArguments(const Arguments& arguments) {
  arguments.expectRest({});
  auto month = std::make_shared<StatInterfaceCalendar_Time>();
  month->loadControls();
  month->loadCells();
  if (const auto weekday = arguments.value("--first-weekday")) {
    month->setFirstWeekday(static_cast<int>(integerFromText(*weekday, "--first-weekday", 1, 7)));
  }
  std::optional<double> day;
  if (const auto text = arguments.value("--month")) {
    day = dateFromText(*text + "-01");
    if (!day) throw UsageError("--month: '" + *text + "' is no month; write one such as 2026-11");
  }
  month->setSelectedMonth(day);
  month->updateHeaders();
  return month;
}

Json cellJson(const StatInterfaceCalendarCell& cell) {
  return {{"label", cell.label()->stringValue()},
          {"date", cell.date()},
          {"weekday", cell.weekday()},
          {"type", cell.type()},
          {"today", cell.isToday()},
          {"tomorrow", cell.isTomorrow()}};
}

Json monthCommand(const Arguments& arguments) {
  const auto month = monthFromArguments(arguments);
  Json headers = Json::array();
  for (size_t index = 1; index < month->headerCells().size(); ++index)
    headers.push_back(month->headerCells()[index]->stringValue());
  Json weeks = Json::array();
  for (const auto& cell : month->weekCells())
    weeks.push_back(cell.label()->stringValue());
  Json cells = Json::array();
  for (const auto& cell : month->cells())
    cells.push_back(cellJson(cell));
  return {{"title", month->title()},
          {"headers", headers},
          {"weeks", weeks},
          {"cells", cells},
          {"currentDay", month->currentDay()},
          {"monthStartTime", month->monthStartTime()},
          {"monthEndTime", month->monthEndTime()}};
}

void hideCalendars(const std::vector<std::string>& identifiers) {
  PropertyList::Array list(identifiers.begin(), identifiers.end());
  setPreferenceOverride("DisabledCalendars", PropertyList::Dictionary{{"MainWindow", list}},
                        "com.apple.iCal");
}

/// "#RRGGBB", with two digits more where one sees through it.
std::string colorText(const NSColor& color) {
  std::string text = "#";
  const auto add = [&text](double part) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    const auto value = static_cast<size_t>(std::lround(part * 255));
    text += Digits[value / 16];
    text += Digits[value % 16];
  };
  for (const double part : {color.redComponent(), color.greenComponent(), color.blueComponent()})
    add(part);
  if (color.alphaComponent() < 1) add(color.alphaComponent());
  return text;
}

Json eventsCommand(const Arguments& arguments) {
  const auto month = monthFromArguments(arguments);
  hideCalendars(arguments.values("--hide"));
  if (const auto text = arguments.value("--select")) {
    const auto day = dateFromText(*text);
    if (!day) throw UsageError("--select: '" + *text + "' is no day; write one such as 2026-11-21");
    month->setSelectedDay(*day);
  }
  useCalendars(arguments, arguments.values("--me"));
  const auto collector = CalendarStatCollector::sharedCalendarCollector();
  collector->setEnabled(true);
  collector->checkCalendarAccess();
  month->fetchNow();

  Json days = Json::array();
  for (const auto& cell : month->cells()) {
    Json titles = Json::array();
    for (const auto& event : cell.events())
      titles.push_back(event->title().value_or(""));
    days.push_back(titles);
  }
  Json upcoming = Json::array();
  for (const auto& row : month->upcomingEvents()) {
    upcoming.push_back({{"name", row->name()->stringValue()},
                        {"time", row->time()->stringValue()},
                        {"color", colorText(row->dot()->color())}});
  }
  return {{"days", days}, {"upcoming", upcoming}};
}

constexpr OptionSpec MonthOption = {"--month", "YYYY-MM", "the month (the present one)"};
constexpr OptionSpec FirstWeekdayOption = {"--first-weekday", "1..7",
                                           "where weeks begin, 1 for Sunday (the locale's)"};

constexpr OptionSpec MonthOptions[] = {MonthOption, FirstWeekdayOption};
constexpr OptionSpec EventsOptions[] = {
    {CalendarFolderOption.name, CalendarFolderOption.value, "the folder of calendars", true},
    {"--me", "ADDRESS", "a mail address of the user; may be repeated"},
    MonthOption,
    FirstWeekdayOption,
    {"--select", "YYYY-MM-DD", "the chosen day (today)"},
    {"--hide", "CALENDAR-ID", "a calendar that is switched off; may be repeated"}};

constexpr Command Commands[] = {
    {"month", "", "the month's grid: title, weekdays, weeks and days", MonthOptions, monthCommand},
    {"events", "", "the events of the month's days and the rows of the chosen one", EventsOptions,
     eventsCommand},
};

}  // namespace

std::span<const Command> calendarCommands() { return Commands; }

void useCalendars(const Arguments& arguments, const std::vector<std::string>& me) {
  const auto folder = arguments.value(CalendarFolderOption.name);
  if (!folder) {
    EKEventStore::setDefaultPlaces(calendarPlacesFromSettings);
    return;
  }
  std::error_code error;
  const std::filesystem::directory_iterator entries(*folder, error);
  if (error) throw CommandFailure("the folder " + *folder + " cannot be read: " + error.message());
  EKEventStore::setDefaultPlaces([folder, me] {
    EKCalendarPlaces places = calendarPlacesFromSettings();
    places.folders = {*folder};
    places.userAddresses.insert(places.userAddresses.end(), me.begin(), me.end());
    places.includesDesktop = false;
    return places;
  });
}
