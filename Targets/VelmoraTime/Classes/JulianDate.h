#pragma once

#include <cstdint>

// Julian dates and the calendar: Gregorian from 1582 October 15 on, Julian before. Meeus,
// "Astronomical Algorithms", ch. 7. Meant for years -4712 and later.

/// Julian date of a calendar date and time, UTC. `month` counts from 0.
double ucttoj(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
              int32_t second);

/// The calendar date of a Julian date; `month` counts from 1. What is not finite or a hundred
/// million days away reads as Julian date 0.
void jyear(int32_t& year, int32_t& month, int32_t& day, double julianDate);

/// The time of day of a Julian date, to the nearest second: the last half second of a day reads
/// 24:00:00.
void jhms(int32_t& hour, int32_t& minute, int32_t& second, double julianDate);
