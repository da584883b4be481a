// How certain a pose is, from the distances of the points from the flanks.
#pragma once

#include "inspect/calibrate/flankPoints.h"

namespace KxInspect::detail {

/// Fills in covariance, misfit and whether the flanks have points.
/// @param inverse of the normal matrix of the least squares
void judge(const FlankPoints& points, const Matrix<ObjectPose::kCount>& inverse, ObjectFit& fit);

} // namespace KxInspect::detail
