#include "Platform/EventKit/MailAddress_p.h"

#include <algorithm>

#include "Platform/Foundation/Text/NSString.h"

std::string mailAddress(std::string_view written) {
  constexpr std::string_view Scheme = "mailto:";
  constexpr std::string_view Blanks = " \t\r\n";
  const std::string address = lowercaseString(written);
  std::string_view rest = address;
  rest.remove_prefix(std::min(rest.find_first_not_of(Blanks), rest.size()));
  if (rest.starts_with(Scheme)) rest.remove_prefix(Scheme.size());
  return std::string(rest.substr(0, rest.find_last_not_of(Blanks) + 1));
}
