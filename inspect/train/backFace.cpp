// The back face of a wheel in its profiles.
#include "inspect/train/backFace.h"

#include "inspect/base/points.h"
#include "inspect/fitting/median.h"
#include "inspect/train/flangeCircle.h"

#include <KxMath/KxProfile.h>

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr double kNormal = 1.4826; // from the median deviation to the standard deviation of normal noise
constexpr std::size_t kFewestPoints = 5;

/// The points of one profile that should be on the face.
struct FacePoints {
    int profile;
    std::vector<SectionPoint> points;
    double down = 0.0; ///< mean of the points
    double lean = 0.0; ///< slope of their line against the reference line
    double across = 0.0; ///< median of the points, when `lean` of the wheel is taken off
};

/// The finite points of a profile below the level line.
PointList belowLevel(const PointList& points, const KxMath::KxLine& level) {
    KxMath::KxProfile profile;
    profile.points = copyOf(points, points.size());
    profile.removeHighLevel(level);
    return profile.points;
}

void fitLean(FacePoints& face) {
    double mean = 0.0;
    for (const SectionPoint& p : face.points) {
        face.down += p.down / static_cast<double>(face.points.size());
        mean += p.across / static_cast<double>(face.points.size());
    }
    double squares = 0.0;
    double products = 0.0;
    for (const SectionPoint& p : face.points) {
        squares += (p.down - face.down) * (p.down - face.down);
        products += (p.down - face.down) * (p.across - mean);
    }
    face.lean = squares > 0.0 ? products / squares : 0.0;
}

std::vector<FacePoints> facesOf(const std::vector<PointList>& profiles, const KxMath::KxLine& level,
                                const KxMath::KxLine& reference) {
    std::vector<std::vector<SectionPoint>> below;
    std::size_t most = 0;
    for (const PointList& points : profiles) {
        below.push_back(sectionOf(belowLevel(points, level), reference, 1.0));
        most = std::max(most, below.back().size());
    }
    const double least = kLeastShare * static_cast<double>(most);
    const auto used = static_cast<std::size_t>(least / 2.0);
    std::vector<FacePoints> faces;
    for (std::size_t i = 0; i < below.size() && used >= kFewestPoints; ++i) {
        if (static_cast<double>(below[i].size()) >= least) {
            below[i].resize(used);
            faces.push_back({static_cast<int>(i) + 1, std::move(below[i])});
            fitLean(faces.back());
        }
    }
    return faces;
}

/// What is left of a point's offset when the lean of the wheel is taken off.
double upright(const SectionPoint& p, double lean, double middle) {
    return p.across - lean * (p.down - middle);
}

/// The noise of the points about the face, from the median of their deviations in each profile.
double noiseOf(std::vector<FacePoints>& faces, double lean, double middle) {
    std::vector<double> noises;
    for (FacePoints& face : faces) {
        std::vector<double> values;
        for (const SectionPoint& p : face.points) {
            values.push_back(upright(p, lean, middle));
        }
        face.across = median(values);
        for (double& value : values) {
            value = std::abs(value - face.across);
        }
        noises.push_back(kNormal * median(values));
    }
    return median(noises, 0.0);
}

} // namespace

BackFace findBackFace(const std::vector<PointList>& profiles, const std::vector<double>& places,
                      const KxMath::KxLine& level, const KxMath::KxLine& reference) {
    // Wider than noise: what deviates farther is off the face. What data without noise deviate by is rounding.
    constexpr double kFar = 4.0;
    constexpr double kLeastFar = 0.02; // mm
    constexpr double kMostOff = 0.2; // of the points; with more the profile does not show the face where others do
    std::vector<FacePoints> faces = facesOf(profiles, level, reference);
    std::vector<double> leans;
    std::vector<double> middles;
    for (const FacePoints& face : faces) {
        leans.push_back(face.lean);
        middles.push_back(face.down);
    }
    const double lean = median(leans, 0.0);
    const double middle = median(middles, 0.0);
    BackFace result;
    result.lean = lean;
    result.shown = static_cast<int>(faces.size());
    result.noise = noiseOf(faces, lean, middle);
    const double far = std::max(kFar * result.noise, kLeastFar);
    for (const FacePoints& face : faces) {
        double sum = 0.0;
        int count = 0;
        for (const SectionPoint& p : face.points) {
            const double across = upright(p, lean, middle);
            if (std::abs(across - face.across) <= far) {
                sum += across;
                ++count;
            }
        }
        if (count >= (1.0 - kMostOff) * static_cast<double>(face.points.size())) {
            result.offsets.push_back({face.profile, places[static_cast<std::size_t>(face.profile) - 1], sum / count});
        }
    }
    return result;
}

} // namespace KxInspect::detail
