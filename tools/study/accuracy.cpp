// Gage repeatability and reproducibility: how well a value is measured.
#include "tools/study/accuracy.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <set>
#include <utility>

namespace kxstudy {

namespace {

double mean(const std::vector<double>& values) {
    double sum = 0.0;
    for (const double value : values) {
        sum += value;
    }
    return sum / static_cast<double>(values.size());
}

/// The sum of the squared deviations from the mean.
double squares(const std::vector<double>& values) {
    const double middle = mean(values);
    double sum = 0.0;
    for (const double value : values) {
        sum += (value - middle) * (value - middle);
    }
    return sum;
}

/// The errors of each part at each station.
using Cells = std::map<int, std::map<int, std::vector<double>>>;

/// Leaves only parts that every station has measured at least twice.
void dropIncomplete(Cells& cells) {
    std::set<int> stations;
    for (const auto& [part, row] : cells) {
        for (const auto& [station, errors] : row) {
            stations.insert(station);
        }
    }
    std::erase_if(cells, [&](const auto& entry) {
        return entry.second.size() < stations.size() ||
               std::any_of(entry.second.begin(), entry.second.end(),
                           [](const auto& cell) { return cell.second.size() < 2; });
    });
}

void addDeviations(Cells cells, Accuracy& accuracy) {
    dropIncomplete(cells);
    if (cells.size() < 2 || cells.begin()->second.size() < 2) {
        return;
    }
    double within = 0.0;
    double free = 0.0;
    double perCell = 0.0; // mean of 1 / readings
    std::vector<double> partMeans;
    std::map<int, std::vector<double>> byStation;
    std::vector<double> all;
    for (const auto& [part, row] : cells) {
        std::vector<double> cellMeans;
        for (const auto& [station, errors] : row) {
            within += squares(errors);
            free += static_cast<double>(errors.size() - 1);
            perCell += 1.0 / static_cast<double>(errors.size());
            cellMeans.push_back(mean(errors));
            byStation[station].push_back(cellMeans.back());
            all.push_back(cellMeans.back());
        }
        partMeans.push_back(mean(cellMeans));
    }
    const auto parts = static_cast<double>(cells.size());
    const auto stations = static_cast<double>(byStation.size());
    std::vector<double> stationMeans;
    stationMeans.reserve(byStation.size());
    for (const auto& [station, means] : byStation) {
        stationMeans.push_back(mean(means));
    }
    const double repeatability = within / free;
    // Mean squares of the means of the cells.
    const double interaction = (squares(all) - stations * squares(partMeans) - parts * squares(stationMeans)) /
                               ((parts - 1.0) * (stations - 1.0));
    const double between = parts * squares(stationMeans) / (stations - 1.0);
    const double byPart = std::max(0.0, interaction - repeatability * perCell / (parts * stations));
    const double alone = std::max(0.0, (between - interaction) / parts);
    accuracy.repeatability = std::sqrt(repeatability);
    accuracy.reproducibility = std::sqrt(alone + byPart);
}

std::string fixed(double value, int decimals) {
    char text[64];
    const int length = std::snprintf(text, sizeof(text), "%.*f", decimals, value);
    return std::isfinite(value) && length > 0 ? text : "-";
}

} // namespace

double Accuracy::deviation() const {
    return std::hypot(repeatability, reproducibility);
}

double Accuracy::percentOf(double tolerance) const {
    return 600.0 * deviation() / tolerance;
}

Accuracy analyse(const StudiedValue& value) {
    Accuracy accuracy;
    Cells cells;
    std::vector<double> errors;
    int held = 0;
    for (const Reading& reading : value.readings) {
        if (!std::isfinite(reading.value)) {
            ++accuracy.missing;
            continue;
        }
        const double error = reading.value - reading.truth;
        cells[reading.part][reading.station].push_back(error);
        errors.push_back(error);
        if (reading.interval.isKnown()) {
            ++accuracy.intervals;
            held += reading.interval.holds(static_cast<float>(reading.truth)) ? 1 : 0;
        }
    }
    accuracy.readings = static_cast<int>(errors.size());
    if (errors.empty()) {
        return accuracy;
    }
    accuracy.bias = mean(errors);
    accuracy.largest =
        *std::max_element(errors.begin(), errors.end(), [](double a, double b) { return std::abs(a) < std::abs(b); });
    if (accuracy.intervals > 0) {
        accuracy.held = static_cast<double>(held) / accuracy.intervals;
    }
    addDeviations(std::move(cells), accuracy);
    return accuracy;
}

double rootMeanSquare(const StudiedValue& value) {
    const Accuracy accuracy = analyse(value);
    return std::hypot(accuracy.deviation(), accuracy.bias);
}

double added(double with, double noise) {
    return std::sqrt(std::max(0.0, with * with - noise * noise));
}

std::string accuracyTable(const std::vector<StudiedValue>& values) {
    std::string table = "| command | value | unit | readings | not measured | repeatability | reproducibility | "
                        "tolerance | six deviations, "
                        "% of the tolerance | bias | largest error | intervals that hold the truth, % |\n"
                        "| --- | --- | --- | ---: | ---: | ---: | ---: | ---: | ---: | ---: | ---: | ---: |\n";
    for (const StudiedValue& value : values) {
        const Accuracy a = analyse(value);
        table += "| `" + value.command + "` | " + value.name + " | " + value.unit + " | " + std::to_string(a.readings) +
                 " | " + std::to_string(a.missing) + " | " + fixed(a.repeatability, value.decimals) + " | " +
                 fixed(a.reproducibility, value.decimals) + " | " + fixed(value.tolerance, value.decimals) + " | " +
                 fixed(a.percentOf(value.tolerance), 1) + " | " + fixed(a.bias, value.decimals) + " | " +
                 fixed(a.largest, value.decimals) + " | " + fixed(100.0 * a.held, 1) + " |\n";
    }
    return table;
}

} // namespace kxstudy
