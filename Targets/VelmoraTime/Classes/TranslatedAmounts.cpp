#include "Targets/VelmoraTime/Classes/TranslatedAmounts.h"

#include <vector>

#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/ZEVTranslations.h"

std::string filledIn(std::string_view format, std::string_view place,
                     std::initializer_list<std::string> values) {
  const std::vector<std::string> pieces = componentsSeparatedByString(format, place);
  std::string text = pieces.front();
  const auto* value = values.begin();
  for (size_t index = 1; index < pieces.size(); ++index) {
    if (value != values.end()) text += *value++;
    text += pieces[index];
  }
  return text;
}

std::string translatedAmount(int64_t count, std::string_view one, std::string_view many,
                             std::string_view table, std::string_view digitsModel) {
  const std::string_view key = count == 1 ? one : many;
  return filledIn(WENLocalizedString(key, "", table), "%i",
                  {stringWithDigitsOf(std::to_string(count), digitsModel)});
}
