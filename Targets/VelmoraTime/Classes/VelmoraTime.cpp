#include "Targets/VelmoraTime/Classes/VelmoraTime.h"

#include "Platform/Foundation/Text/NSLocale.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Targets/VelmoraTime/Classes/ZEVTimeModule.h"

NSUserInterfaceLayoutDirection VelmoraTime::layoutDirection() {
  const PropertyList language = ZEVObjectForKey("language");
  const NSLocale locale = language.string() != nullptr
                              ? NSLocale::localeWithLocaleIdentifier(*language.string())
                              : NSLocale::currentLocale();
  return locale.characterDirection() == NSLocaleLanguageDirection::RightToLeft
             ? NSUserInterfaceLayoutDirection::RightToLeft
             : NSUserInterfaceLayoutDirection::LeftToRight;
}

void VelmoraTime::initWithBundle(const NSBundle& bundle) {
  // The code stays in the process: what an earlier extra made in its language must not meet this
  // one. Here and not at the unloading, since an answer to a late question may have been kept.
  ZEVPreferences_Time::begin();
  ZEVTranslations_Time::cleanup();
  ZEVDateAndTimeUtilities::cleanup();
  NSApplication::sharedApplication().setUserInterfaceLayoutDirection(layoutDirection());
  ZEVMenuExtra_Time::initWithBundle(bundle);
}

void VelmoraTime::loadModules() { addModule(make<ZEVTimeModule_Time>(*this)); }

void VelmoraTime::cleanup() { ZEVPreferences_Time::cleanup(); }
