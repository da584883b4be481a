// What pages draw of a wheel pair.
#include "inspect/train/pictures.h"

#include "inspect/base/points.h"
#include "inspect/train/treadDefects.h"
#include "inspect/train/treadPart.h"

#include <KxInspect/KxMathTypes.h>

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

void addProfiles(const FoundWheel& wheel, WheelPicture& picture) {
    constexpr std::size_t kMostOverlaid = 40;
    const std::size_t step = (wheel.profiles.size() + kMostOverlaid - 1) / kMostOverlaid;
    for (std::size_t i = 0; i < wheel.profiles.size(); i += step) {
        const std::vector<Point> points = toVector(wheel.profiles[i]);
        picture.profiles.insert(picture.profiles.end(), points.begin(), points.end());
        ++picture.overlaid;
    }
}

double heightAbove(const KxMath::KxLine& line, const Point& point) {
    const double height = static_cast<double>(line.k) * static_cast<double>(point.x) + static_cast<double>(line.b);
    return static_cast<double>(point.y) - height;
}

void addFit(const FoundWheel& wheel, const ChosenProfile& chosen, const KxMath::KxLine& reference,
            WheelPicture& picture) {
    picture.chosen = toVector(wheel.profiles[static_cast<std::size_t>(chosen.number) - 1]);
    KxMath::KxProfile half;
    half.points = fittedHalf(chosen.points);
    picture.half = toVector(half.points);
    for (const Point& point : picture.half) {
        picture.heights.push_back(heightAbove(reference, point));
    }
    KxMath::KxLine fit;
    if (half.calcLine(fit)) {
        picture.fit = fromKxLine(fit);
        picture.offset = (fit.b - reference.b) * std::cos(std::atan(reference.k));
    }
}

void addFaces(const WheelStand& stand, WheelPicture& picture) {
    picture.hasPlaces = stand.hasPlaces;
    for (const FaceOffset& face : stand.face.offsets) {
        picture.faces.push_back({static_cast<float>(face.place - stand.axle.place), static_cast<float>(face.offset)});
    }
    if (stand.line) {
        picture.faceLine =
            Line{static_cast<float>(stand.line->slope), static_cast<float>(stand.line->at(stand.axle.place))};
    }
}

bool isBeyond(const std::optional<LimitVerdict>& verdict) {
    return verdict == LimitVerdict::Warning || verdict == LimitVerdict::Alarm;
}

bool hasFinding(const PassResult& result, std::size_t index) {
    const WheelPair& pair = result.pairs[index];
    const int number = static_cast<int>(index) + 1;
    bool has = pair.inTolerance == false;
    for (std::size_t side = 0; side < result.sides.size(); ++side) {
        const PassWheel* const wheel = result.wheelOf(pair, side);
        const bool isDefective = wheel != nullptr && wheel->defects && wheel->defects->isDefective == true;
        const bool isOut = wheel != nullptr && wheel->roundness && wheel->roundness->isOut;
        const bool isBad =
            result.assessment && isBeyond(result.assessment->ofWheel(number, static_cast<int>(side) + 1));
        has = has || isDefective || isOut || isBad;
    }
    return has;
}

} // namespace

std::vector<int> shownPairs(const PassResult& result, const PassOptions& options) {
    std::vector<int> shown;
    for (std::size_t i = 0; i < result.pairs.size(); ++i) {
        const int number = static_cast<int>(i) + 1;
        const bool isAsked =
            std::find(options.shownPairs.begin(), options.shownPairs.end(), number) != options.shownPairs.end();
        if (isAsked || (options.areFindingsShown && hasFinding(result, i))) {
            shown.push_back(number);
        }
    }
    return shown;
}

PairPicture pairPicture(const PassResult& result, int number, const std::vector<MeasuredSide>& sides) {
    PairPicture picture{number, {}};
    const WheelPair& pair = result.pairs[static_cast<std::size_t>(number) - 1];
    for (std::size_t side = 0; side < sides.size(); ++side) {
        if (!pair.wheels[side]) {
            continue;
        }
        const std::size_t index = *pair.wheels[side];
        const MeasuredSide& measured = sides[side];
        WheelPicture wheel;
        wheel.side = side;
        addProfiles(measured.found.wheels()[index], wheel);
        addFaces(measured.stands[index], wheel);
        if (measured.chosen[index].number > 0) {
            addFit(measured.found.wheels()[index], measured.chosen[index], measured.input.reference, wheel);
        }
        if (result.mode == KxMath::KxModeWithLowLine) {
            wheel.low = fromKxLine(measured.input.detection.low);
        }
        const std::optional<TreadDefects>& defects = result.wheelOf(pair, side)->defects;
        if (defects && defects->worstProfile > 0) {
            const std::vector<PointList>& profiles = measured.found.wheels()[index].profiles;
            std::vector<PointList> cuts;
            cuts.reserve(profiles.size());
            for (const PointList& profile : profiles) {
                cuts.push_back(cutTread(profile, *measured.input.tread, *result.defectLimits));
            }
            const PointList tread = treadParts(
                profiles, cuts, measured.input.reference)[static_cast<std::size_t>(defects->worstProfile - 1)];
            wheel.deviations = toVector(judgeTread(tread, *result.defectLimits).points);
        }
        if (!measured.treads.empty()) {
            wheel.tread = measured.treads[index];
        }
        picture.wheels.push_back(std::move(wheel));
    }
    return picture;
}

std::vector<RawPicture> rawPictures(const PassResult& result, const std::vector<MeasuredSide>& sides) {
    std::vector<RawPicture> pictures;
    for (std::size_t side = 0; side < sides.size(); ++side) {
        const WheelCollector& found = sides[side].found;
        if (found.wheels().empty() && sides[side].input.missing.empty()) {
            RawPicture raw{side,
                           found.sample().profiles(),
                           found.sample().points(),
                           found.levelCount().below,
                           found.levelCount().points,
                           std::nullopt};
            if (result.mode == KxMath::KxModeWithLowLine) {
                raw.low = fromKxLine(sides[side].input.detection.low);
            }
            pictures.push_back(std::move(raw));
        }
    }
    return pictures;
}

} // namespace KxInspect::detail
