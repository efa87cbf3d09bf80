#include "Platform/Foundation/Text/BidirectionalText.h"

#include <unicode/ubidi.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <memory>

#include "Platform/Foundation/LibraryHandle.h"

namespace {

/// UTF-8 of everything from the Hebrew letters on starts with this byte or a greater one; nothing
/// before them changes a line's direction.
constexpr unsigned char FirstLeadByte = 0xD6;

bool isPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) < FirstLeadByte; });
}

/// The byte at which each UTF-16 unit starts, and the text's size at the end.
std::vector<size_t> bytesOfUnits(std::string_view text) {
  std::vector<size_t> bytes;
  const auto* data = reinterpret_cast<const uint8_t*>(text.data());
  const auto length = static_cast<int32_t>(text.size());
  for (int32_t position = 0; position < length;) {
    const auto start = static_cast<size_t>(position);
    UChar32 character = 0;
    U8_NEXT_OR_FFFD(data, position, length, character);
    bytes.insert(bytes.end(), static_cast<size_t>(U16_LENGTH(character)), start);
  }
  bytes.push_back(text.size());
  return bytes;
}

}  // namespace

DirectionalLine directionalLine(std::string_view text) {
  DirectionalLine line{false, {{0, text.size(), false}}};
  if (isPlain(text)) return line;
  const icu::UnicodeString units = icu::UnicodeString::fromUTF8(text);
  const std::vector<size_t> bytes = bytesOfUnits(text);
  const LibraryHandle<UBiDi, ubidi_close> bidi(ubidi_open());
  UErrorCode status = U_ZERO_ERROR;
  ubidi_setPara(bidi.get(), units.getBuffer(), units.length(), UBIDI_DEFAULT_LTR, nullptr, &status);
  const int32_t count = ubidi_countRuns(bidi.get(), &status);
  if (U_FAILURE(status)) return line;
  line.isRightToLeft = ubidi_getParaLevel(bidi.get()) % 2 == 1;
  line.runs.clear();
  for (int32_t index = 0; index < count; ++index) {
    int32_t start = 0;
    int32_t length = 0;
    const bool isRightToLeft = ubidi_getVisualRun(bidi.get(), index, &start, &length) == UBIDI_RTL;
    line.runs.push_back({bytes[static_cast<size_t>(start)],
                         bytes[static_cast<size_t>(start + length)], isRightToLeft});
  }
  return line;
}
