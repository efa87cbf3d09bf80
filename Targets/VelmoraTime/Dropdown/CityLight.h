#pragma once

#include "Targets/VelmoraTime/Classes/SunData.h"

/// The light on a clock's face.
struct CityLight {
  bool day = false;     ///< The light dial is shown, whatever the share says.
  float darkShare = 0;  ///< Of the dark dial, from 0 to 1.
};

/// The light of a moment, in seconds since 1970, by the Sun's record of that day: through civil
/// twilight, where there is a Sun above and below the horizon, the dials are blended. A record
/// without the times counts them as 0.
CityLight lightOfCity(const SunData& record, double time);
