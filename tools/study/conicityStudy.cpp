// Wheel-sets on their tracks, all four profiles measured with one of three gauges; gauge and back-to-back are given.
#include "tools/study/gauge.h"
#include "tools/study/studies.h"

#include "simulator/railHead.h"
#include "simulator/wornRim.h"

#include <KxInspect/Conicity.h>

#include <cmath>
#include <string>

namespace kxstudy {

namespace {

constexpr float kAmplitude = 3.0f; // mm, as is usual (EN 14363)
constexpr double kStep = 0.01; // mm along contours

/// Inclined 1:40; as heights.
kxsim::Contour railHead() {
    kxsim::Contour head;
    for (const KxInspect::Point& p : kxsim::railHeadContour({}, kStep)) {
        head.push_back({static_cast<double>(p.x), -static_cast<double>(p.y)});
    }
    return head;
}

KxInspect::Profile asItIs(const kxsim::Contour& contour) {
    KxInspect::Profile profile;
    for (const kxsim::ContourPoint& p : contour) {
        profile.points.push_back({static_cast<float>(p.axial), static_cast<float>(p.radius)});
    }
    return profile;
}

/// @param gauge null for the contours as they are
KxInspect::ConicityResult measure(const KxInspect::PerWheelSetPart<kxsim::Contour>& contours, const Gauge* gauge,
                                  kxsim::Random& random) {
    KxInspect::ConicityInput input;
    input.shownAmplitude = kAmplitude;
    if (gauge == nullptr) {
        input.smoothing = 0.0f;
    }
    for (std::size_t part = 0; part < contours.size(); ++part) {
        input.sections[part].profile =
            gauge == nullptr ? asItIs(contours[part]) : measuredBy(*gauge, contours[part], random);
        // The radius of a wheel grows downwards on the track.
        input.sections[part].orientation = {!isWheel(static_cast<KxInspect::WheelSetPart>(part)), false};
    }
    return measureConicity(input);
}

} // namespace

std::vector<StudiedValue> studyConicity(const Report& report) {
    StudiedValue conicity = {"conicity", "conicity at 3 mm", "", 0.1, 4};
    const kxsim::Contour head = railHead();
    for (int part = 0; part < kParts; ++part) {
        report("conicity: wheel-set " + std::to_string(part + 1));
        kxsim::Random wear({7000, static_cast<std::uint64_t>(part)});
        const kxsim::Contour first = kxsim::makeRimContour(kxsim::randomWear(wear));
        const kxsim::Contour second = kxsim::makeRimContour(kxsim::randomWear(wear));
        const KxInspect::PerWheelSetPart<kxsim::Contour> contours = {first, head, second, head};
        const auto truth = measure(contours, nullptr, wear).shownConicity;
        for (int station = 0; station < kStations; ++station) {
            const Gauge gauge = gaugeOf(station);
            for (int pass = 0; pass < kPasses; ++pass) {
                kxsim::Random random({7001, static_cast<std::uint64_t>(part), static_cast<std::uint64_t>(station),
                                      static_cast<std::uint64_t>(pass)});
                const KxInspect::ConicityResult result = measure(contours, &gauge, random);
                if (truth) {
                    conicity.readings.push_back(
                        {part, station,
                         result.shownConicity ? static_cast<double>(*result.shownConicity) : std::nan(""),
                         static_cast<double>(*truth), result.shownInterval});
                }
            }
        }
    }
    return {std::move(conicity)};
}

} // namespace kxstudy
