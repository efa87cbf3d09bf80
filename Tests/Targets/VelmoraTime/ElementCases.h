#pragma once

/// What each walker makes of an element alone, in American English on Saturday, 2026-11-21 15:04:05
/// UTC, where today is Sunday, the 22nd. The ISO week is 47, the Sunday week too: January 1 was a
/// Thursday.
struct ElementCase {
  const char* element;
  const char* inDateString;  ///< The icons are no patterns: the formatter stops at their letters.
  /// The pieces: texts in brackets, "moon" and "leaf". Null: the same text as in `dateString`.
  const char* inMenubar = nullptr;
  const char* inCity =
      nullptr;  ///< In a world clock's row. Null: the same text as in `dateString`.
};

constexpr ElementCase ElementCases[] = {
    {"__DAY_MTWRFSU__", "U"},
    {"__RELATIVE_DAY__", "Today"},
    {"__DAY_SUFFIX__", "st"},
    {"__DAY_SUFFIX_UPPER__", "ST"},
    {"FUZZY", "five past three"},
    {"FUZZY_", "five past three"},
    {"___ICON__MOON__", "___", "moon"},
    {"___ICON__MOON__BIG", "___", "moon"},
    {"___ICON", "___", "leaf"},
    {"___ICON__", "___", "leaf"},
    {"___HH", "___15"},
    {"':'", ":"},
    {"'.'", "."},
    {"w", "47"},
    {"h", "3"},
    {"hh", "03"},
    {"H", "15"},
    {"HH", "15"},
    {"m", "4"},
    {"mm", "04"},
    {"ss", "05"},
    {"a", "PM"},
    {"aa", "P"},
    {"aaa", "p"},
    {"E", "Sat"},
    {"EE", "Sat"},
    {"EEE", "Sat"},
    {"EEEE", "Saturday"},
    {"EEEEE", "S"},
    {"MMM", "Nov"},
    {":", ":"},
    {"' '", " "},
    {"'o''clock'", "o''clock"},
    {"'aa'", "'P'", nullptr, "aa"},
    {"'EE'", "ccc"},
    {"h 'o''clock' aa", "3 o'clock P", nullptr, "3 o'clock PM"},
    {"zzz", "UTC"},
};
