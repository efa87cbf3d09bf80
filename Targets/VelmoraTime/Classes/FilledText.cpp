#include "Targets/VelmoraTime/Classes/FilledText.h"

#include <vector>

#include "Platform/Foundation/Text/NSString.h"

std::string filledIn(std::string_view format, std::string_view place,
                     std::initializer_list<std::string_view> values) {
  const std::vector<std::string> pieces = componentsSeparatedByString(format, place);
  std::string text = pieces.front();
  const auto* value = values.begin();
  for (size_t index = 1; index < pieces.size(); ++index) {
    if (value != values.end()) text += *value++;
    text += pieces[index];
  }
  return text;
}
