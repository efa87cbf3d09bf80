#pragma once

// The Moon's phase at a moment and the moments of the principal phases. Julian dates are doubles;
// a phase fraction runs from 0 at new moon over 0.25, 0.5 and 0.75 to 1 at the next.

/// The phase fraction of a moment, with the illuminated fraction of the disc, the age in days, the
/// distances of Moon and Sun in kilometres and their apparent diameters in degrees.
/// Duffett-Smith, "Practical Astronomy with Your Calculator", elements of 1980.
double phase(double& illumination, double& age, double& distance, double& angularDiameter,
             double& sunDistance, double& sunAngularDiameter, double julianDate);

/// The number of the lunation, counted from January 1900, whose new moon is the last mean one at or
/// before the date. Far from our era, where the search does not close, from the mean month alone.
double lunationstart(double julianDate);

/// The moment (Julian date, dynamical time) of the phase `fraction` of a lunation. Only 0, 0.25,
/// 0.5 and 0.75 get the periodic terms; any other fraction gives the mean moment. `phase` receives
/// the fraction. Meeus, "Astronomical Formulae for Calculators", ch. 32.
double truephase(double& phase, double lunation, double fraction);
