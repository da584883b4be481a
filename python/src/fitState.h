// The fit of a station as a value: what a pickle holds, and equality to the bit.
#pragma once

#include <KxInspect/StationSetup.h>

#include <pybind11/pybind11.h>

namespace kxpython {

namespace py = pybind11;

/// All fields, in tuples and lists.
py::tuple stateOf(const KxInspect::StationFit& fit);

/// The fit of such a state; ValueError or another exception for anything else.
KxInspect::StationFit fitFrom(const py::tuple& state);

/// Whether two fits hold the same bits: NaN equals NaN.
bool haveSameBits(const KxInspect::StationFit& a, const KxInspect::StationFit& b);

} // namespace kxpython
