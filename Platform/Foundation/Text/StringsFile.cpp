#include "Platform/Foundation/Text/StringsFile.h"

#include <fstream>

namespace {

void appendUtf8(std::string& text, uint32_t codePoint) {
  const auto byte = [&](uint32_t value) { text += static_cast<char>(value); };
  if (codePoint < 0x80) {
    byte(codePoint);
  } else if (codePoint < 0x800) {
    byte(0xC0 | codePoint >> 6);
    byte(0x80 | (codePoint & 0x3F));
  } else {
    byte(0xE0 | codePoint >> 12);
    byte(0x80 | (codePoint >> 6 & 0x3F));
    byte(0x80 | (codePoint & 0x3F));
  }
}

class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {}

  std::optional<StringsTable> parse() {
    StringsTable table;
    while (skipBlanks() && !text_.empty()) {
      std::string key;
      std::string value;
      if (!quoted(key) || !skipBlanks() || !take('=') || !skipBlanks() || !quoted(value) ||
          !skipBlanks() || !take(';')) {
        return std::nullopt;
      }
      table.insert_or_assign(std::move(key), std::move(value));
    }
    if (!text_.empty()) return std::nullopt;
    return table;
  }

 private:
  bool take(char expected) {
    if (!text_.starts_with(expected)) return false;
    text_.remove_prefix(1);
    return true;
  }

  /// Skips white space and comments; false for a comment without an end.
  bool skipBlanks() {
    while (true) {
      const size_t start = text_.find_first_not_of(" \t\r\n");
      text_.remove_prefix(std::min(start, text_.size()));
      size_t end = 0;
      if (text_.starts_with("//")) {
        end = std::min(text_.find('\n'), text_.size());
      } else if (text_.starts_with("/*")) {
        end = text_.find("*/", 2);
        if (end == std::string_view::npos) return false;
        end += 2;
      } else {
        return true;
      }
      text_.remove_prefix(end);
    }
  }

  bool quoted(std::string& result) {
    if (!take('"')) return false;
    while (!text_.empty()) {
      const char character = text_.front();
      text_.remove_prefix(1);
      if (character == '"') return true;
      if (character != '\\') {
        result += character;
      } else if (!escape(result)) {
        return false;
      }
    }
    return false;
  }

  bool escape(std::string& result) {
    if (text_.empty()) return false;
    const char character = text_.front();
    text_.remove_prefix(1);
    switch (character) {
      case '"':
      case '\\':
      case '\'':
        result += character;
        return true;
      case 'n':
        result += '\n';
        return true;
      case 'r':
        result += '\r';
        return true;
      case 't':
        result += '\t';
        return true;
      case 'u':
      case 'U':
        return codePoint(result);
      default:
        return false;
    }
  }

  bool codePoint(std::string& result) {
    constexpr std::string_view Digits = "0123456789abcdef";
    if (text_.size() < 4) return false;
    uint32_t value = 0;
    for (const char character : text_.substr(0, 4)) {
      const bool isUpper = character >= 'A' && character <= 'F';
      const size_t digit = Digits.find(static_cast<char>(isUpper ? character | 0x20 : character));
      if (digit == std::string_view::npos) return false;
      value = value << 4 | static_cast<uint32_t>(digit);
    }
    // Half of a pair, or the end of a text: neither is a character.
    if (value == 0 || (value >= 0xD800 && value <= 0xDFFF)) return false;
    text_.remove_prefix(4);
    appendUtf8(result, value);
    return true;
  }

  std::string_view text_;
};

}  // namespace

std::optional<StringsTable> stringsTableFromText(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  return Parser(text).parse();
}

std::optional<StringsTable> stringsTableFromFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  // Up to a byte that no text has. The end is missed by a failed read, too, as of a folder.
  std::string text;
  std::getline(stream, text, '\0');
  if (!stream.eof()) return std::nullopt;
  return stringsTableFromText(text);
}
