#include "Targets/VelmoraTime/Classes/RiseSetSearch.h"

#include <cmath>

void quad(double& nz, double& z1, double& z2, double& xe, double& ye, double yMinus, double y0,
          double yPlus) {
  const double a = (yMinus + yPlus) / 2 - y0;
  const double b = (yPlus - yMinus) / 2;
  xe = -b / (2 * a);
  ye = (a * xe + b) * xe + y0;
  nz = z1 = z2 = 0;
  const double discriminant = b * b - 4 * a * y0;
  if (discriminant < 0) return;
  const double dx = std::sqrt(discriminant) / 2 / std::abs(a);
  z1 = xe - dx;
  z2 = xe + dx;
  if (std::abs(z1) <= 1) nz += 1;
  if (std::abs(z2) <= 1) nz += 1;
  if (z1 < -1) z1 = z2;
}
