#include "Targets/VelmoraTime/Classes/JulianDate.h"

#include "Targets/VelmoraTime/Classes/AstronomyArithmetic.h"

namespace {

double usableJulianDate(double julianDate) {
  constexpr double Furthest = 1e8;
  return std::abs(julianDate) < Furthest ? julianDate : 0;
}

}  // namespace

double ucttoj(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
              int32_t second) {
  const bool gregorian = year > 1582 || (year == 1582 && (month > 9 || (month == 9 && day >= 5)));
  double y = year;
  double m = month + 1.0;
  if (m < 3) {
    y -= 1;
    m += 12;
  }
  double b = 0;
  if (gregorian) {
    const double a = std::trunc(y / 100);
    b = 2 - a + std::trunc(a / 4);
  }
  const double seconds = hour * 3600.0 + minute * 60.0 + second;
  return std::trunc(365.25 * (y + 4716)) + std::trunc(30.6001 * (m + 1)) + day + b - 1524.5 +
         seconds / 86400;
}

void jyear(int32_t& year, int32_t& month, int32_t& day, double julianDate) {
  const double noonBased = usableJulianDate(julianDate) + 0.5;
  double z = std::floor(noonBased);
  const double f = noonBased - z;
  if (z >= 2299161) {
    const double a = std::floor((z - 1867216.25) / 36524.25);
    z = z + 1 + a - std::floor(a / 4);
  }
  const double b = z + 1524;
  const double c = std::floor((b - 122.1) / 365.25);
  const double r = b - std::floor(365.25 * c);
  const double e = std::floor(r / 30.6001);
  day = truncatedTo32Bits(f + r - std::floor(30.6001 * e));
  month = truncatedTo32Bits(e < 14 ? e - 1 : e - 13);
  year = truncatedTo32Bits(month > 2 ? c - 4716 : c - 4715);
}

void jhms(int32_t& hour, int32_t& minute, int32_t& second, double julianDate) {
  const double noonBased = usableJulianDate(julianDate) + 0.5;
  const int32_t seconds = truncatedTo32Bits((noonBased - std::floor(noonBased)) * 86400 + 0.5);
  hour = seconds / 3600;
  minute = (seconds / 60) % 60;
  second = seconds % 60;
}
