#pragma once

#include <memory>

#include "Platform/Foundation/Time/NSDate.h"
#include "Targets/VelmoraTime/Classes/MoonData.h"
#include "Targets/VelmoraTime/Classes/VelmoraTime.h"
#include "Targets/VelmoraTime/Classes/VelmoraTimeMenuExtraView.h"

/// The width that the host view gives an item that draws nothing.
constexpr int64_t EmptySlotWidth = 4;

/// The clock's drawing object with the extra that it belongs to, not started: it draws, but nothing
/// ticks.
struct MenubarContent {
  std::shared_ptr<VelmoraTime> extra;
  std::shared_ptr<VelmoraTimeMenuExtraView> view;
};

inline MenubarContent makeMenubarContent() {
  auto extra = std::make_shared<VelmoraTime>();
  auto view = make<VelmoraTimeMenuExtraView>(NSMakeRect(0, 0, 20, NSMenuExtra::Height), *extra);
  view->update();
  double age = 0;
  double illumination = 0;
  currentPhase(age, illumination, NSDate::date());
  view->moon().showPhase(age, illumination);
  return {std::move(extra), std::move(view)};
}
