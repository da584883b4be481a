// Gage repeatability and reproducibility: how well a value is measured.
#pragma once

#include <KxInspect/Interval.h>

#include <limits>
#include <string>
#include <vector>

namespace kxstudy {

/// One measurement of one value. A part is what is measured (a wheelset), a station is what measures it.
struct Reading {
    int part = 0;
    int station = 0;
    double value = std::numeric_limits<double>::quiet_NaN(); ///< NaN: not measured
    double truth = std::numeric_limits<double>::quiet_NaN();
    KxInspect::Interval interval = {}; ///< that came with the value
};

/// A value that is studied, with its readings.
struct StudiedValue {
    std::string command; ///< that measures it
    std::string name;
    std::string unit;
    double tolerance = 0.0; ///< width, in the unit
    int decimals = 3;
    std::vector<Reading> readings = {};
};

/// The components of the error of a value, value minus truth, as standard deviations, by the analysis of variance of a
/// crossed study with random parts and stations (AIAG, Measurement Systems Analysis, 4th edition, 2010).
struct Accuracy {
    int readings = 0; ///< with a value
    int missing = 0; ///< without
    double repeatability = std::numeric_limits<double>::quiet_NaN(); ///< within a part at one station
    double reproducibility = std::numeric_limits<double>::quiet_NaN(); ///< between stations, alone and by part
    double bias = std::numeric_limits<double>::quiet_NaN(); ///< mean of all errors
    double largest = std::numeric_limits<double>::quiet_NaN(); ///< error, by its size
    double held = std::numeric_limits<double>::quiet_NaN(); ///< share of the known intervals that hold the truth
    int intervals = 0; ///< that are known

    double deviation() const; ///< of both components together
    double percentOf(double tolerance) const; ///< six of these deviations, in percent of a width
};

/// Parts that some station has not measured twice are left out of the deviations.
Accuracy analyse(const StudiedValue& value);

/// Of all errors of a value taken together, bias included.
double rootMeanSquare(const StudiedValue& value);

/// What a cause adds to the noise, both as root mean squares.
double added(double with, double noise);

/// The results as a table in Markdown.
std::string accuracyTable(const std::vector<StudiedValue>& values);

} // namespace kxstudy
