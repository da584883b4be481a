// Trains of random vehicles, as lists and as places of their axles.
#pragma once

#include <KxInspect/Consist.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace inspect_test {

/// A kind of vehicle: distances between axles and to the coupling, mm.
struct VehicleType {
    const char* mark;
    std::vector<double> spacings;
    double overhang; ///< from the last axle to the coupling
};

/// Coaches, metro cars, locomotives with two and three axles in a bogie, wagons with two and four axles, articulated units.
inline const std::vector<VehicleType>& vehicleTypes() {
    static const std::vector<VehicleType> types = {
        {"coach", {2500, 16500, 2500}, 2450},
        {"double-deck", {2520, 17480, 2520}, 2140},
        {"metro", {2100, 10500, 2100}, 1800},
        {"BoBo", {2650, 7250, 2650}, 3170},
        {"long BoBo", {3000, 6900, 3000}, 3190},
        {"shunter", {2200, 3800, 2200}, 2050},
        {"CoCo", {1850, 2080, 6600, 2080, 1850}, 2980},
        {"hopper", {1800, 5700, 1800}, 1620},
        {"box", {1800, 7200, 1800}, 1620},
        {"container", {1800, 12400, 1800}, 1870},
        {"two-axle", {9000}, 2750},
        {"short two-axle", {5400}, 2100},
        {"unit of 3", {2700, 13300, 2700, 13300, 2700}, 2900},
        {"unit of 5", {2300, 14500, 2700, 14100, 2700, 14100, 2700, 14500, 2300}, 2600},
    };
    return types;
}

struct Fleet {
    KxInspect::Consist consist;
    std::vector<double> places; ///< of all axles in the order of the list, mm
    struct Axle {
        int vehicle, axle; ///< from 1
    };
    std::vector<Axle> axles;

    /// @param kinds of vehicles that are in the train
    Fleet(int vehicles, int kinds, std::mt19937& random) {
        std::vector<VehicleType> types = vehicleTypes();
        std::shuffle(types.begin(), types.end(), random);
        std::vector<VehicleType> train;
        train.reserve(std::size_t(vehicles));
        for (int v = 0; v < vehicles; ++v) {
            train.push_back(types[random() % static_cast<unsigned>(kinds)]);
        }
        std::uniform_real_distribution<double> buffers(-120.0, 120.0);
        double at = 0.0;
        for (int v = 0; v < vehicles; ++v) {
            const VehicleType& type = train[std::size_t(v)];
            const double next = v + 1 < vehicles ? train[std::size_t(v) + 1].overhang : 0.0;
            KxInspect::ListedVehicle listed{type.mark, std::to_string(100 + v), "", type.spacings,
                                            type.overhang + next + buffers(random)};
            for (std::size_t i = 0; i < listed.axles(); ++i) {
                places.push_back(at);
                axles.push_back({v + 1, int(i) + 1});
                at += i < listed.spacings.size() ? listed.spacings[i] : listed.toNext;
            }
            consist.vehicles.push_back(listed);
        }
    }

    void turn() {
        const double end = places.back();
        std::reverse(places.begin(), places.end());
        std::reverse(axles.begin(), axles.end());
        for (double& place : places) {
            place = end - place;
        }
    }
    void leaveOut(std::size_t axle) {
        places.erase(places.begin() + static_cast<std::ptrdiff_t>(axle));
        axles.erase(axles.begin() + static_cast<std::ptrdiff_t>(axle));
    }
    /// As measured: with noise, another scale and a start somewhere.
    std::vector<double> measured(double noise, double scale, std::mt19937& random) const {
        std::normal_distribution<double> error(0.0, noise);
        std::vector<double> result;
        for (const double place : places) {
            result.push_back(700.0 + scale * place + error(random));
        }
        return result;
    }
};

} // namespace inspect_test
