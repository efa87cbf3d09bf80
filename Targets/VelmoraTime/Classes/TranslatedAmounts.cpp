#include "Targets/VelmoraTime/Classes/TranslatedAmounts.h"

#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/FilledText.h"

std::string translatedAmount(int64_t count, std::string_view one, std::string_view many,
                             std::string_view table, std::string_view digitsModel) {
  const std::string_view key = count == 1 ? one : many;
  return filledIn(WENLocalizedString(key, "", table), "%i",
                  {stringWithDigitsOf(std::to_string(count), digitsModel)});
}
