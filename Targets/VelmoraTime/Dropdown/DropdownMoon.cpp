#include "Targets/VelmoraTime/Dropdown/DropdownMoon.h"

#include <algorithm>
#include <cmath>

#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/FilledText.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Targets/VelmoraTime/Dropdown/MoonDetailsBackground.h"

namespace {

constexpr std::string_view Table = "time";
constexpr const char* MoonTimer = "updateMoonPhase";
constexpr double LeastWait = 300;  // Seconds.

constexpr int64_t RowWidth = 237;
constexpr int64_t MenuWidth = 320;
constexpr int32_t PhaseRows = 8;
constexpr int64_t FirstPhaseTop = 3;
constexpr int64_t PhaseStep = 23;

std::string translatedNameOfPhase(int64_t phase) {
  const std::string name = DropdownMoon::nameOfPhase(phase);
  return WENLocalizedString(name, "", Table);
}

/// A day and the time of day, as clocks of the dropdown show it.
ClockElements phaseDateFormat(const ZEVDateAndTimeUtilities& utilities) {
  ClockElements elements = utilities.dropdownTimeFormat();
  elements.insert(elements.begin(), "d MMM, ");
  return elements;
}

void showPhase(const StatInterfaceMoonPhaseRow_Time& row, const MoonPhaseRecord& record,
               const std::string& date) {
  constexpr double Waxing = 0;  // Days.
  constexpr double Waning = 16;
  const bool isQuarter = record.phase == 2 || record.phase == 6;
  const double wholeDisc = record.phase == 0 ? 0 : 1;
  row.moon()->showPhase(record.phase < 4 ? Waxing : Waning, isQuarter ? 0.5 : wholeDisc);
  row.moon()->setNeedsDisplay(true);
  row.name()->setStringValue(translatedNameOfPhase(record.phase));
  row.date()->setStringValue(date);
}

}  // namespace

DropdownMoon::DropdownMoon() {
  loadLargeRow();
  loadSmallRow();
  createPhasesMenu();
}

void DropdownMoon::loadLargeRow() {
  moon_ = MoonPhaseView_Time::moonWithFrame(ZEVMakeRect(10, 5, 32, 32), 32, 43,
                                            "stats-calendar-moon-light.tiff",
                                            "stats-calendar-moon-dark.tiff");
  moonItemPhase_ = createValueField(NSTextAlignment::Left, ZEVMakeRect(48, 21, 167, 15));
  moonItemNextPhase_ = createLabelField(NSTextAlignment::Left, ZEVMakeRect(48, 6, 167, 15));
  const auto row = std::make_shared<StatInterfaceView_Time>(ZEVMakeRect(0, 0, RowWidth, 42));
  row->addSubview(moon_);
  row->addSubview(moonItemPhase_);
  row->addSubview(moonItemNextPhase_);
  moonItem_ = createMenuItemWithView(row);
}

void DropdownMoon::loadSmallRow() {
  moonSmall_ = MoonPhaseView_Time::moonWithFrame(ZEVMakeRect(207, 1, 16, 16), 16, 22,
                                                 "menubar-moon-light", "menubar-moon-dark");
  moonSmall_->setAutoresizingMask(NSViewMinXMargin);
  moonItemPhaseSmall_ = createValueField(NSTextAlignment::Left, ZEVMakeRect(8, 2, 180, 15));
  const auto row = std::make_shared<StatInterfaceView_Time>(ZEVMakeRect(0, 0, RowWidth, 19));
  row->addSubview(moonSmall_);
  row->addSubview(moonItemPhaseSmall_);
  moonItemSmall_ = createMenuItemWithView(row);
}

void DropdownMoon::createPhasesMenu() {
  moonDetailsMoon_ = MoonPhaseView_Time::moonWithFrame(ZEVMakeRect(100, 20, 120, 120), 120, 158,
                                                       "stats-calendar-moon-header-lightmoon", "");
  const auto header =
      std::make_shared<MoonDetailsBackground_Time>(ZEVMakeRect(0, 0, MenuWidth, 160));
  header->addSubview(moonDetailsMoon_);

  const auto rows =
      std::make_shared<StatInterfaceFlippedView_Time>(ZEVMakeRect(0, 0, MenuWidth, 190));
  phaseRows_.resize(PhaseRows);
  int64_t top = FirstPhaseTop;
  for (const auto& row : phaseRows_) {
    row.view()->setFrameOrigin({0, static_cast<double>(top)});
    rows->addSubview(row.view());
    top += PhaseStep;
  }

  moonMenu_ = createMenu();
  moonMenu_->addItem(createMenuItemWithView(header));
  moonMenu_->addItem(createFillerItem(nullptr, "", MenuWidth, 4));
  moonMenu_->addItem(createMenuItemWithView(rows));
  moonMenu_->addItem(createFillerItem(nullptr, "", MenuWidth, 3));
}

const std::shared_ptr<ZEVMenuItem_Time>& DropdownMoon::itemWithSubmenu(bool isLarge) {
  const auto& item = isLarge ? moonItem_ : moonItemSmall_;
  item->setSubmenu(moonMenu_);
  return item;
}

std::string DropdownMoon::nameOfPhase(int64_t phase) {
  constexpr auto Names =
      localizedKeys("New Moon", "Waxing Crescent", "First Quarter", "Waxing Gibbous", "Full Moon",
                    "Waning Gibbous", "Last Quarter", "Waning Crescent");
  const bool isKnown = phase >= 0 && phase < static_cast<int64_t>(Names.size());
  return isKnown ? std::string(Names[static_cast<size_t>(phase)]) : "";
}

void DropdownMoon::updateCurrentPhase() {
  double age = 0;
  double illumination = 0;
  const int32_t phase = currentPhase(age, illumination, NSDate::date());
  for (const auto& field : {moonItemPhase_, moonItemPhaseSmall_})
    field->setStringValue(translatedNameOfPhase(phase));
  for (const auto& moon : {moon_, moonSmall_, moonDetailsMoon_}) {
    moon->showPhase(age, illumination);
    moon->setNeedsDisplay(true);
  }
}

void DropdownMoon::updateMoonPhase() {
  const NSDate now = NSDate::date();
  const auto records = nextPhases(PhaseRows, now);
  const double wait = records.empty() ? 0 : records.front().time + 1 - now.timeIntervalSince1970();
  stopTimers();
  performSelectorAfterDelay(MoonTimer, wait > LeastWait ? std::trunc(wait) : LeastWait,
                            [this] { updateMoonPhase(); });
  if (!records.empty()) showNextPhase(records.front());

  auto& utilities = ZEVDateAndTimeUtilities::sharedUtilities();
  const ClockElements elements = phaseDateFormat(utilities);
  NSDateFormatter& formatter = utilities.dateFormatter();
  formatter.setTimeZone(NSTimeZone::systemTimeZone());
  for (size_t i = 0; i < std::min(records.size(), phaseRows_.size()); ++i) {
    const std::string date = dateString(elements, formatter, records[i].time);
    // An abbreviated month may bring a full stop of its own.
    showPhase(phaseRows_[i], records[i], stringByReplacingOccurrences(date, ".,", ","));
  }
}

void DropdownMoon::showNextPhase(const MoonPhaseRecord& record) {
  NSDateFormatter& formatter = ZEVDateAndTimeUtilities::sharedUtilities().dateFormatter();
  formatter.setTimeZone(NSTimeZone::systemTimeZone());
  formatter.setDateFormat(WENLocalizedString("MOONPHASE_NEXT_DATE_FORMAT", "MMM d", Table));
  moonItemNextPhase_->setStringValue(
      filledIn(WENLocalizedString("MOONPHASE_NEXT_FORMAT", "%@ - %@", Table), "%@",
               {formatter.stringFromDate(NSDate::dateWithTimeIntervalSince1970(record.time)),
                translatedNameOfPhase(record.phase)}));
}

void DropdownMoon::stopTimers() { cancelPreviousPerformRequests(MoonTimer); }
