// What vehicles look like to a row of gaps between axles.
#pragma once

#include <cstddef>
#include <vector>

namespace KxInspect::detail {

/// The most axles of an articulated train.
inline constexpr std::size_t kMostAxles = 64;

/// How unlikely it is that axles with these gaps make one vehicle; infinity when none is known that looks so.
double costOfVehicle(const double* gaps, std::size_t count);

/// Its bogies, see layoutOf().
std::vector<int> layoutOfVehicle(const double* gaps, std::size_t count);

/// The same as costOfVehicle() of a gap between the last axle of a vehicle and the first one of the next.
double costOfCoupling(double gap);

/// Whether vehicles can be so far apart, one of them with an axle that was not seen.
bool canPart(double gap);

/// Whether two lengths of one train are the same within 50 mm and 1 % of what they are measured from.
bool isSameLength(double a, double b, double from = 0.0);

} // namespace KxInspect::detail
