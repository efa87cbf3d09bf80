#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/VelmoraTime.h"
#include "Targets/VelmoraTime/Classes/VelmoraTimeMenuExtraView.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

/// A format list, one element a line, walked for a text and for the bar. The only fault that a list
/// may raise is that of a lone apostrophe.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const bool isSetUp = [] {
    ignoreStoredPreferences(ZEVPreferences_Time::Domain);
    setPreferenceOverride("Time_MenubarFlashSeperators", true, ZEVPreferences_Time::Domain);
    return true;
  }();
  static const auto extra = std::make_shared<VelmoraTime>();
  static const auto view = make<VelmoraTimeMenuExtraView>(NSMakeRect(0, 0, 20, 22), *extra);
  if (!isSetUp || size > 512) return 0;
  const ClockElements elements =
      componentsSeparatedByString({reinterpret_cast<const char*>(data), size}, "\n");
  constexpr double Time = 1'795'000'000;
  try {
    dateString(elements, ZEVDateAndTimeUtilities::sharedUtilities().dateFormatter(), Time);
    int64_t offset = 0;
    view->clockPieces(offset, Time, 1, elements);
  } catch (const std::out_of_range&) {
    return 0;
  }
  return 0;
}
