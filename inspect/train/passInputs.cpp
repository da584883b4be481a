// The recordings and settings of a pass, checked against each other before anything is read.
#include "inspect/train/passInputs.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/identity/passLabels.h"
#include "inspect/train/sensorLookUp.h"
#include "inspect/train/severalInputs.h"

namespace KxInspect::detail {

namespace {

[[noreturn]] void failArgument(const QString& reason) {
    fail(ErrorKind::BadArgument, {}, reason);
}

void checkOptions(const PassOptions& options) {
    checkLabels(options.labels);
    if (!(options.tolerance >= 0.0f)) {
        failArgument(
            QStringLiteral("the tolerance must not be negative, it is %1").arg(static_cast<double>(options.tolerance)));
    }
    for (const int pair : options.shownPairs) {
        if (pair < 1) {
            failArgument(QStringLiteral("wheel pairs are counted from 1, there is no pair %1").arg(pair));
        }
    }
}

} // namespace

SideInput openSide(const std::string& path) {
    SideInput side{path, RecordingFiles(path), nullptr, 0, {}, {}, {}};
    const ErrorSource source{"recording", path, {}};
    side.stream = std::make_unique<RecordStream>(source);
    if (side.name.parts.serial == 0) { // 0 is also what a missing key reads as
        fail(ErrorKind::Unsuitable, source,
             QStringLiteral("has no serial number after the first '_' of its name: '%1'").arg(side.name.serialText()));
    }
    return side;
}

void checkSidesDiffer(const SideInput& first, const SideInput& second) {
    if (first.name.file == second.name.file) {
        failArgument(
            QStringLiteral("both recordings are named '%1', so that their wheel files would mix").arg(first.name.file));
    }
    if (first.name.parts.serial == second.name.parts.serial) {
        failArgument(
            QStringLiteral("both recordings are of the sensor with the serial number %1").arg(first.name.parts.serial));
    }
}

SideInput openSide(const std::string& path, const StationSettings& settings, int mode) {
    SideInput side = openSide(path);
    requireOwnSerials(settings);
    const bool isFurther = isOnFieldSide(sensorOf(settings, side), settings);
    lookUpSensor(settings, mode, isFurther ? SensorRole::Further : SensorRole::Facing, side);
    return side;
}

namespace {

PassInputs openFacing(const std::vector<std::string>& recordings, const StationSettings& settings, int mode) {
    PassInputs inputs;
    for (const std::string& path : recordings) {
        inputs.sides.push_back(openSide(path));
        inputs.sides.back().stream->startHash();
    }
    checkSidesDiffer(inputs.sides[0], inputs.sides[1]);
    requireOwnSerials(settings);
    for (SideInput& side : inputs.sides) {
        lookUpSensor(settings, mode, SensorRole::Facing, side);
    }
    return inputs;
}

} // namespace

PassInputs openPass(const std::vector<std::string>& recordings, const StationSettings& settings,
                    const PassOptions& options) {
    checkOptions(options);
    if (recordings.size() < 2) {
        failArgument(QStringLiteral("a pass needs two recordings, not %1").arg(recordings.size()));
    }
    PassInputs inputs = isOfSeveralSensors(recordings, settings) ? openSeveral(recordings, settings, options.mode)
                                                                 : openFacing(recordings, settings, options.mode);
    inputs.baseDistance = requireBaseDistance(settings);
    if (options.defects) {
        requireGoodDefects(*options.defects);
    }
    for (SideInput& side : inputs.sides) {
        side.tread = options.defects ? std::optional(lookUpTread(*options.defects, side)) : std::nullopt;
    }
    return inputs;
}

} // namespace KxInspect::detail

namespace KxInspect {

void checkPass(const std::vector<std::string>& recordings, const StationSettings& settings,
               const PassOptions& options) {
    detail::openPass(recordings, settings, options);
}

} // namespace KxInspect
