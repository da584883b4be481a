// From the recordings of a pass to its result.
#include "inspect/base/paths.h"
#include "inspect/base/tasks.h"
#include "inspect/identity/fileIdentity.h"
#include "inspect/limits/assessPass.h"
#include "inspect/train/keptProfiles.h"
#include "inspect/train/measuredSide.h"
#include "inspect/train/noDistance.h"
#include "inspect/train/pairDistance.h"
#include "inspect/train/passIdentity.h"
#include "inspect/train/passTrain.h"
#include "inspect/train/passWarnings.h"
#include "inspect/train/passWheels.h"
#include "inspect/train/pictures.h"
#include "inspect/train/severalInputs.h"
#include "inspect/train/treadDefects.h"
#include "inspect/train/treadPart.h"
#include "inspect/train/wheelFiles.h"
#include "inspect/train/wheelPairs.h"
#include "inspect/train/wheelRoundness.h"
#include "inspect/wheelset/contourDeviation.h"

#include <KxInspect/KxMathTypes.h>
#include <KxInspect/Train.h>

#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace KxInspect {

namespace {

using namespace detail;

void report(const Progress& progress, const char* step, const std::string& file, double part) {
    if (progress) {
        progress(file.empty() ? std::string(step) : step + (' ' + shown(file)), part);
    }
}

WheelCollector findWheels(const SideInput& side, int mode, const Progress& progress) {
    constexpr int kRecordsPerReport = 256;
    WheelCollector found(side.detection, mode);
    KxMath::KxProfileZ record;
    for (;;) {
        const KxMath::KxRecordKind kind = side.stream->next(record);
        if (kind == KxMath::KxNoRecord) {
            return found;
        }
        found.add(kind, record);
        if (side.stream->records() % kRecordsPerReport == 0) {
            report(progress, "finding wheels in", side.path,
                   static_cast<double>(side.stream->position()) / static_cast<double>(side.stream->size()));
        }
    }
}

/// The size and the hash of a recording that could not be measured, as far as it can be read.
void identifyFailed(const std::string& path, PassSide& side) {
    try {
        const InputFile file = identifyFile(path);
        side.bytes = file.bytes;
        side.sha256 = file.sha256;
    } catch (const Error&) { // it stays without them
        side.bytes = 0;
    }
}

PassSide describeSide(const MeasuredSide& measured) {
    const SideInput& input = measured.input;
    PassSide side;
    side.file = bareName(input.path);
    side.name = input.name.file.toStdString();
    side.wheelDirectory = input.name.parts.base.toStdString();
    side.serial = input.name.parts.serial;
    side.sensor = input.sensor;
    side.missing = input.missing;
    if (input.missing.empty()) {
        side.bytes = input.stream->size();
        side.sha256 = input.stream->sha256();
    } else if (!input.path.empty()) {
        identifyFailed(input.path, side);
    }
    side.cloudSections = measured.found.cloudSections();
    side.profileRecords = measured.found.profileRecords();
    if (input.missing.empty()) {
        const LevelCount& count = measured.found.levelCount();
        side.points = PointCounts{count.recorded, count.recorded - count.points, count.points - count.cleaned,
                                  count.below, count.withoutNoise - count.cleaned};
    }
    side.level = fromKxLine(input.detection.level);
    side.reference = fromKxLine(input.reference);
    for (std::size_t i = 0; i < measured.found.wheels().size(); ++i) {
        const FoundWheel& found = measured.found.wheels()[i];
        const ChosenProfile& chosen = measured.chosen[i];
        PassWheel wheel;
        wheel.number = static_cast<int>(i) + 1;
        wheel.profiles = static_cast<int>(found.profiles.size());
        wheel.firstRecord = found.firstRecord;
        wheel.chosenProfile = chosen.number;
        wheel.points = static_cast<int>(chosen.points.size());
        side.wheels.push_back(wheel);
    }
    return side;
}

/// The wheels of a recording. Of several recordings one that is damaged is left out, and says why.
WheelCollector wheelsOf(SideInput& input, bool mayFail, const PassOptions& options, const Progress& progress) {
    if (!input.missing.empty()) {
        return {input.detection, options.mode};
    }
    report(progress, "finding wheels in", input.path, 0.0);
    try {
        WheelCollector found = findWheels(input, options.mode, progress);
        if (options.wheelFolder.empty()) {
            return found;
        }
        report(progress, "writing wheels of", input.path, 0.0);
        const QtPath folder(options.wheelFolder);
        writeWheelFiles(folder.text(), input.name, input.sensor, found);
        return found;
    } catch (const Error& error) {
        if (!mayFail || error.source().role != "recording") {
            throw;
        }
        input.missing = failureOf(input, error.reason());
        return {input.detection, options.mode};
    }
}

/// The wheels of all recordings: those of the two sides that face each other, and of further sensors.
struct AllWheels {
    std::vector<MeasuredSide> sides;
    std::vector<MeasuredSide> further;
};

MeasuredSide findSide(SideInput& input, bool isFurther, bool mayFail, const PassOptions& options,
                      const Progress& progress) {
    WheelCollector found = wheelsOf(input, mayFail, options, progress);
    std::vector<ChosenProfile> chosen(isFurther ? found.wheels().size() : 0);
    std::vector<WheelStand> stands;
    for (std::size_t i = 0; i < found.wheels().size() && !isFurther; ++i) {
        const FoundWheel& wheel = found.wheels()[i];
        chosen.push_back(chooseProfile(wheel, input.detection.level));
        stands.push_back(findStand(wheel, found.hasPlaces(), input.detection.level, input.reference, input.plane));
    }
    return {std::move(input), std::move(found), std::move(chosen), std::move(stands)};
}

AllWheels findAllWheels(PassInputs& inputs, const PassOptions& options, const Progress& progress) {
    const std::size_t sides = inputs.sides.size();
    std::vector<std::optional<MeasuredSide>> found(sides + inputs.further.size());
    runTasks(options.runner, progress, found.size(), [&](std::size_t i, const Progress& ofSide) {
        const bool isFurther = i >= sides;
        SideInput& input = isFurther ? inputs.further[i - sides] : inputs.sides[i];
        found[i] = findSide(input, isFurther, isFurther || inputs.isOfSeveral, options, ofSide);
    });
    AllWheels all;
    for (std::size_t i = 0; i < found.size(); ++i) {
        (i < sides ? all.sides : all.further).push_back(std::move(*found[i]));
    }
    return all;
}

WheelPair measurePair(const PairedWheels& paired, const std::string& doubt, const std::vector<MeasuredSide>& sides,
                      const PassResult& result) {
    WheelPair pair;
    const auto& wheels = paired.wheels;
    pair.wheels = wheels;
    if (paired.isDoubtful) {
        pair.reason = pair.yawReason = doubt;
        return pair;
    }
    std::array<PairSide, 2> stands;
    for (std::size_t side = 0; side < stands.size(); ++side) {
        stands[side] = {wheels[side] ? &sides[side].stands[*wheels[side]] : nullptr, sides[side].input.sensor};
    }
    measureYaw(stands, pair);
    if (pair.isComplete() &&
        !measureDistance(stands, static_cast<double>(result.baseDistance), result.baseUncertainty, pair)) {
        pair.distance = distanceOf(sides[0].chosen[*wheels[0]], sides[1].chosen[*wheels[1]], sides[0].input.reference,
                                   sides[1].input.reference, result.baseDistance);
        pair.intervalReason = std::isnan(pair.distance) ? "" : "too few profiles show both back faces";
    }
    if (std::isnan(pair.distance)) {
        pair.reason = whyNoDistance(result, pair);
        return pair;
    }
    pair.deviation = pair.distance - result.nominal;
    pair.inTolerance = std::abs(pair.deviation) <= result.tolerance;
    return pair;
}

/// The parts of all profiles of the wheels of a side that lie between the lines.
std::vector<std::vector<PointList>> cutTreads(const DefectLimits& limits, const MeasuredSide& measured) {
    std::vector<std::vector<PointList>> treads;
    for (const FoundWheel& found : measured.found.wheels()) {
        treads.emplace_back();
        for (const PointList& profile : found.profiles) {
            treads.back().push_back(cutTread(profile, *measured.input.tread, limits));
        }
    }
    return treads;
}

void judgeShapes(const DefectLimits& limits, MeasuredSide& measured, const std::vector<std::vector<PointList>>& treads,
                 PassSide& side) {
    std::vector<WheelView> views;
    for (std::size_t i = 0; i < treads.size() && measured.found.hasPlaces(); ++i) {
        const FoundWheel& found = measured.found.wheels()[i];
        views.push_back({found.profiles, treads[i], found.places, measured.input.reference, measured.stands[i].askew,
                         measured.stands[i].face.lean, measured.input.plane});
    }
    std::vector<RoundnessVerdict> shapes = judgeRoundness(views, limits);
    for (std::size_t i = 0; i < side.wheels.size(); ++i) {
        PassWheel& wheel = side.wheels[i];
        if (shapes.empty()) {
            wheel.roundnessReason = "the records of the pass have no rising z";
        } else {
            wheel.roundness = std::move(shapes[i].roundness);
            wheel.roundnessReason = std::move(shapes[i].reason);
            measured.treads.push_back(std::move(shapes[i].map));
        }
    }
}

/// @return what the lines cut out of the wheels
CutOut judgeSide(const DefectLimits& limits, MeasuredSide& measured, PassSide& side, const Progress& progress) {
    CutOut cutOut;
    const std::vector<std::vector<PointList>> cuts = cutTreads(limits, measured);
    for (std::size_t i = 0; i < side.wheels.size(); ++i) {
        PassWheel& wheel = side.wheels[i];
        const std::vector<PointList> treads =
            treadParts(measured.found.wheels()[i].profiles, cuts[i], measured.input.reference);
        TreadVerdict tread = judgeTreads(cuts[i], treads, measured.input.reference, limits);
        wheel.defects = std::move(tread.defects);
        wheel.defectsReason = std::move(tread.reason);
        cutOut.include(tread.cutOut);
        report(progress, "judging treads in", side.file,
               static_cast<double>(i + 1) / static_cast<double>(side.wheels.size()));
    }
    judgeShapes(limits, measured, cuts, side);
    return cutOut;
}

void judgeTreadsOfPass(const PassOptions& options, std::vector<MeasuredSide>& sides, PassResult& result,
                       const Progress& progress) {
    result.defectLimits = options.defects->limits;
    warnOfEqualLevels(sides, result);
    std::vector<CutOut> cutOut(sides.size());
    runTasks(options.runner, progress, sides.size(), [&](std::size_t i, const Progress& ofSide) {
        report(ofSide, "judging treads in", result.sides[i].file, 0.0);
        cutOut[i] = judgeSide(*result.defectLimits, sides[i], result.sides[i], ofSide);
    });
    for (std::size_t i = 0; i < sides.size(); ++i) {
        warnOfTreadLines(result.sides[i], cutOut[i], result);
        warnOfShapes(result.sides[i], sides[i].found.hasPlaces(), sides[i].input.plane.isKnown, result);
    }
}

/// The sensors of the station that have a side, with their recordings.
std::vector<SensorWheels> sensorsOf(const StationSettings& settings, const std::vector<MeasuredSide>& sides,
                                    const std::vector<MeasuredSide>& further) {
    std::vector<SensorWheels> sensors;
    for (const SensorSettings& sensor : settings.sensors) {
        if (!sensor.side) {
            continue;
        }
        SensorWheels wheels{&sensor, nullptr, kNotGiven};
        for (const auto* const list : {&sides, &further}) {
            for (const MeasuredSide& side : *list) {
                if (side.input.sensor == sensor.number) {
                    wheels.missing = side.input.missing;
                    wheels.found = wheels.missing.empty() ? &side.found : nullptr;
                }
            }
        }
        sensors.push_back(wheels);
    }
    return sensors;
}

/// Compares the sections of all wheels with the nominal contour.
void compareWithContour(const NominalContour& contour, PassResult& result) {
    for (PassWheelMeasures& wheel : result.wheels) {
        if (const std::optional<float>& height = wheel[PassMeasure::FlangeHeight].value) {
            wheel.deviations = deviationsFrom(contour, wheel.section, *height);
        }
    }
    result.contour = contour;
}

} // namespace

PassResult measurePass(const std::vector<std::string>& recordings, const StationSettings& settings,
                       const PassOptions& options, const Progress& progress) {
    PassInputs inputs = openPass(recordings, settings, options);
    const auto contour = options.contour ? std::optional(nominalContour(*options.contour)) : std::nullopt;
    PassResult result;
    result.mode = options.mode;
    result.identity = identityOf(settings, options);
    result.settings = bareName(settings.file);
    result.folder = shown(options.wheelFolder);
    result.baseDistance = inputs.baseDistance;
    result.baseUncertainty = settings.baseUncertainty;
    result.nominal = options.nominal.value_or(inputs.baseDistance);
    result.tolerance = options.tolerance;
    for (const std::string& warning : settings.warnings) {
        result.warnings.push_back(withBareName(warning, settings.file));
    }
    if (options.defects) {
        warnOfDefectSettings(*options.defects, result);
    }
    AllWheels all = findAllWheels(inputs, options, progress);
    std::vector<MeasuredSide>& sides = all.sides;
    const std::vector<MeasuredSide>& further = all.further;
    for (const MeasuredSide& side : sides) {
        result.sides.push_back(describeSide(side));
        warnOfLines(side, result);
    }
    for (const MeasuredSide& side : further) {
        result.further.push_back(describeSide(side));
        warnOfLines(side, result);
    }
    report(progress, "measuring distances", {}, 0.0);
    const Pairing pairing = pairWheels(sides, result);
    for (const PairedWheels& paired : pairing.pairs) {
        result.pairs.push_back(measurePair(paired, pairing.doubt, sides, result));
    }
    numberPairs(sides, options, result);
    measureWheels(sensorsOf(settings, sides, further), {&sides[0].found, &sides[1].found}, settings, options.runner,
                  progress, result);
    if (contour) {
        compareWithContour(*contour, result);
    }
    if (options.defects) {
        judgeTreadsOfPass(options, sides, result, progress);
    }
    if (options.limits) {
        result.assessment = assessPass(result, *options.limits);
    }
    for (const int pair : shownPairs(result, options)) {
        result.pictures.push_back(pairPicture(result, pair, sides));
    }
    result.rawPictures = rawPictures(result, sides);
    result.kept.keep = !options.wheelFolder.empty()   ? PassKeep::All
                       : !options.profileFile.empty() ? PassKeep::Chosen
                                                      : PassKeep::None;
    if (!options.profileFile.empty()) {
        report(progress, "writing profiles", {}, 0.0);
        result.kept.profiles = writeKeptProfiles(options.profileFile, sides, result);
    }
    return result;
}

} // namespace KxInspect
