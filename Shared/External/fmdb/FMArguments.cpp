#include "Shared/External/fmdb/FMArguments.h"

#include <algorithm>

namespace {

/// The length of the value's name at the start of `text`, behind the "%"; 0 if there is none.
size_t conversionLength(std::string_view text) {
  constexpr std::string_view Widths = "hlqzt";
  constexpr std::string_view Kinds = "@cCdDiuUfFgGeEsS";
  const size_t kind = text.find_first_not_of(Widths);
  if (kind == std::string_view::npos || Kinds.find(text[kind]) == std::string_view::npos) return 0;
  return kind + 1;
}

}  // namespace

std::string FMQueryFromFormat(std::string_view format) {
  std::string query;
  while (!format.empty()) {
    const size_t percent = std::min(format.find('%'), format.size());
    query.append(format.substr(0, percent));
    format.remove_prefix(percent);
    if (format.empty()) break;
    format.remove_prefix(1);
    if (format.starts_with('%')) {
      query += '%';
      format.remove_prefix(1);
    } else if (const size_t length = conversionLength(format); length > 0) {
      query += '?';
      format.remove_prefix(length);
    } else {
      query += '%';
    }
  }
  return query;
}
