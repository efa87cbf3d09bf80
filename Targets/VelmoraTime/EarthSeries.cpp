#include "Targets/VelmoraTime/EarthSeries.h"

#include <cmath>
#include <initializer_list>
#include <span>

#include "Targets/VelmoraTime/AstronomyTables.h"

namespace {

double sumOfTerms(std::span<const EarthTerm> terms, double tau) {
  double sum = 0;
  for (const EarthTerm& term : terms)
    sum += term.a * std::cos(term.b + term.c * tau);
  return sum;
}

/// The series of powers 0, 1, 2, ... of tau, in the units of the result.
double sumOfSeries(std::initializer_list<std::span<const EarthTerm>> series, double tau) {
  double sum = 0;
  double power = 1;
  for (const auto terms : series) {
    sum += sumOfTerms(terms, tau) * power;
    power *= tau;
  }
  return sum / 1e8;
}

}  // namespace

EarthPosition earthPosition(double tau) {
  return {
      .longitude = sumOfSeries({EarthL0, EarthL1, EarthL2, EarthL3, EarthL4, EarthL5}, tau),
      .latitude = sumOfSeries({EarthB0, EarthB1}, tau),
      .distance = sumOfSeries({EarthR0, EarthR1, EarthR2, EarthR3, EarthR4}, tau),
  };
}
