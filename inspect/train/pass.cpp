// One pass of a train: what was found in the recordings of two facing sensors.
#include "inspect/train/pass.h"

#include "tools/kxmath/console/commandError.h"

#include <KxMath/KxMetro.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxtool {

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

[[noreturn]] void failWheelFile(const QString& file) {
    throw CommandError{OutputFailed,
                       QStringLiteral("cannot write the wheel file '%1' completely: is the disk full?").arg(file)};
}

/// Looks through the files of a wheel as the distance calculation does.
Wheel inspectWheel(const Side& side, int number) {
    Wheel wheel;
    wheel.number = number;
    for (;; ++wheel.profiles) {
        const QString file = wheelFile(side.recording.wheelDirectory, number, wheel.profiles + 1);
        if (!QFile::exists(file)) {
            break;
        }
        KxMath::KxProfile profile;
        if (profile.KxPointCloud::readFromFile(file) < 0) {
            failWheelFile(file);
        }
        profile.removeHighLevel(side.sensor.level);
        if (profile.size() > wheel.pointsBelowLevel) { // the first of equal ones counts
            wheel.pointsBelowLevel = profile.size();
            wheel.chosenProfile = wheel.profiles + 1;
        }
    }
    if (wheel.profiles == 0) {
        failWheelFile(wheelFile(side.recording.wheelDirectory, number, 1));
    }
    return wheel;
}

/// Runs detection. Where the wheels start is told by the variant of it that keeps notes, "starts-N.ini" and
/// "starts-N.csv" in the folder of the pass.
void detectWheels(Side& side, QSettings& settings, int mode) {
    const QString notes = QStringLiteral("starts-%1").arg(side.sensor.number);
    QSettings starts(QDir::current().filePath(notes + QStringLiteral(".ini")), QSettings::IniFormat);
    int count = 0;
    if (!KxMath::METRO_detectWheels_Test(side.recording.linkName, &settings, mode, &count, &starts)) {
        throw CommandError{BadInput, QStringLiteral("recording '%1' cannot be read").arg(side.recording.name)};
    }
    starts.sync();
    if (starts.status() != QSettings::NoError) {
        throw CommandError{OutputFailed, QStringLiteral("cannot write '%1'").arg(starts.fileName())};
    }
    QFile::rename(QStringLiteral("test.csv"), notes + QStringLiteral(".csv"));
    for (int number = 1; number <= count; ++number) {
        Wheel wheel = inspectWheel(side, number);
        wheel.firstRecord = starts.value(QStringLiteral("Wheel_%1/firstProfInWheel").arg(number)).toInt();
        if (wheel.firstRecord < 1 || wheel.lastRecord() > side.recording.records()) {
            throw CommandError{BadInput,
                               QStringLiteral("recording '%1' changed while it was read").arg(side.recording.name)};
        }
        side.wheels.push_back(wheel);
    }
}

/// The middles of the wheels along the pass, as positions where `hasPositions`, else as record numbers.
std::vector<double> places(const Side& side, bool hasPositions) {
    const auto place = [&](int record) {
        return hasPositions ? static_cast<double>(side.recording.positions[static_cast<size_t>(record) - 1])
                            : static_cast<double>(record);
    };
    std::vector<double> result;
    for (const Wheel& wheel : side.wheels) {
        result.push_back((place(wheel.firstRecord) + place(wheel.lastRecord())) / 2);
    }
    return result;
}

/// Pairs the wheels and warns where that is in doubt.
std::vector<WheelPair> pairWheels(Pass& pass) {
    const auto& [first, second] = pass.sides;
    const bool hasPositions = !first.recording.positions.empty() && !second.recording.positions.empty();
    std::vector<WheelPair> byPlace = pairByPlace(places(first, hasPositions), places(second, hasPositions));
    if (first.wheels.size() != second.wheels.size()) {
        pass.warnings.append(QStringLiteral("the recordings hold different numbers of wheels, %1 and %2: wheels were "
                                            "paired by their place along the pass, those without partner have no "
                                            "distance")
                                 .arg(first.wheels.size())
                                 .arg(second.wheels.size()));
        return byPlace;
    }
    std::vector<WheelPair> byNumber = pairByNumber(first.wheels.size(), second.wheels.size());
    if (byPlace != byNumber) {
        pass.warnings.append(QStringLiteral("wheels were paired by number, but their places along the pass do not "
                                            "match: check whether the sensors missed different wheels"));
    }
    return byNumber;
}

void cutAtLevel(const Pass& pass, size_t side, const Wheel& wheel, KxMath::KxProfile& profile) {
    readWheelProfile(pass, side, wheel.number, wheel.chosenProfile, profile);
    profile.removeHighLevel(pass.sides[side].sensor.level);
}

/// The distance of two wheels that the calculation over the whole train does not bring together.
float measureAlone(const Pass& pass, const WheelPair& pair) {
    const Wheel& left = pass.sides[0].wheels[*pair.first];
    const Wheel& right = pass.sides[1].wheels[*pair.second];
    if (left.chosenProfile == 0 || right.chosenProfile == 0) {
        return kNaN;
    }
    KxMath::KxProfile leftProfile;
    KxMath::KxProfile rightProfile;
    cutAtLevel(pass, 0, left, leftProfile);
    cutAtLevel(pass, 1, right, rightProfile);
    return KxMath::METRO_calcWheelsDist(leftProfile, rightProfile, pass.sides[0].sensor.reference,
                                        pass.sides[1].sensor.reference, pass.baseDistance);
}

/// Measures all pairs. The calculation over the train pairs wheels by number and ends at the first wheel that it
/// cannot measure; what it leaves out is measured pair by pair.
void measurePairs(Pass& pass, QSettings& settings) {
    const size_t common = std::min(pass.sides[0].wheels.size(), pass.sides[1].wheels.size());
    std::vector<float> inTrain(common, kNaN);
    const bool isWhole =
        KxMath::METRO_calcWheelsDistInTrain(pass.sides[0].recording.linkName, pass.sides[1].recording.linkName,
                                            static_cast<int>(common), &settings, inTrain.data());
    for (const WheelPair& wheels : pairWheels(pass)) {
        float distance = kNaN;
        if (wheels.isComplete()) {
            const bool isMeasured = wheels.first == wheels.second && (isWhole || std::isfinite(inTrain[*wheels.first]));
            distance = isMeasured ? inTrain[*wheels.first] : measureAlone(pass, wheels);
        }
        pass.pairs.push_back({wheels, std::isfinite(distance) ? distance : kNaN});
    }
}

template <typename Condition>
int countWheels(const Side& side, Condition condition) {
    return static_cast<int>(std::count_if(side.wheels.begin(), side.wheels.end(), condition));
}

bool isOutOfRound(const Wheel& wheel) {
    return wheel.roundness && wheel.roundness->isOut;
}

/// Where the profiles of a wheel were taken along the pass; empty when the recording does not tell.
std::vector<float> placesOf(const RecordingFile& recording, const Wheel& wheel) {
    if (recording.positions.empty()) {
        return {};
    }
    const auto first = recording.positions.begin() + (wheel.firstRecord - 1);
    return {first, first + wheel.profiles};
}

/// What the recording or the station does to all wheels looks like wheels that are not round.
void warnOfRoundness(Pass& pass, size_t side) {
    const RecordingFile& recording = pass.sides[side].recording;
    const auto isJudged = [](const Wheel& wheel) { return wheel.roundness && wheel.roundness->isJudged(); };
    constexpr int kFewest = 4; // wheels that make a majority
    const int judged = countWheels(pass.sides[side], isJudged);
    const int out = countWheels(pass.sides[side], isOutOfRound);
    if (recording.positions.empty() && !pass.sides[side].wheels.empty()) {
        pass.warnings.append(QStringLiteral("the records of '%1' have no rising z: its wheels were not compared with "
                                            "circles")
                                 .arg(recording.name));
    } else if (judged >= kFewest && 2 * out > judged) {
        pass.warnings.append(QStringLiteral("%1 of %2 wheels in '%3' are out of round: check whether the z of its "
                                            "records are millimetres and its laser plane stands straight across")
                                 .arg(QString::number(out), QString::number(judged), recording.name));
    }
}

} // namespace

bool Tolerance::holds(float distance) const {
    return std::abs(distance - nominal) <= allowed; // NaN: false
}

const Wheel* Pass::wheelOf(const MeasuredPair& pair, size_t side) const {
    const std::optional<size_t>& index = side == 0 ? pair.wheels.first : pair.wheels.second;
    return index ? &sides[side].wheels[*index] : nullptr;
}

int Pass::distances() const {
    return static_cast<int>(
        std::count_if(pairs.begin(), pairs.end(), [](const MeasuredPair& p) { return std::isfinite(p.distance); }));
}

int Pass::defectiveWheels() const {
    const auto isDefective = [](const Wheel& wheel) { return wheel.defects && wheel.defects->isDefective; };
    return countWheels(sides[0], isDefective) + countWheels(sides[1], isDefective);
}

int Pass::wheelsOutOfRound() const {
    return countWheels(sides[0], isOutOfRound) + countWheels(sides[1], isOutOfRound);
}

Pass measurePass(const std::array<RecordingFile, 2>& recordings, TrainSettings& settings, int mode,
                 Progress& progress) {
    Pass pass;
    pass.mode = mode;
    pass.folder = QDir::currentPath();
    pass.baseDistance = settings.baseDistance;
    for (size_t i = 0; i < pass.sides.size(); ++i) {
        Side& side = pass.sides[i];
        side.recording = recordings[i];
        side.sensor = settings.sensors[i];
        progress.step(QStringLiteral("finding wheels in %1").arg(side.recording.name));
        detectWheels(side, *settings.store, mode);
    }
    progress.step(QStringLiteral("measuring distances"));
    measurePairs(pass, *settings.store);
    return pass;
}

void judgeDefects(Pass& pass, const DefectSettings& settings, Progress& progress) {
    pass.defectSettings = settings;
    for (size_t side = 0; side < pass.sides.size(); ++side) {
        progress.step(QStringLiteral("judging treads in %1").arg(pass.sides[side].recording.name));
        for (Wheel& wheel : pass.sides[side].wheels) {
            const auto read = [&](int number) {
                KxMath::KxProfile profile;
                readWheelProfile(pass, side, wheel.number, number, profile);
                return profile;
            };
            wheel.defects = judgeWheel(wheel.profiles, read, settings.lines[side], settings.limits);
            wheel.roundness = judgeRoundness({read, placesOf(pass.sides[side].recording, wheel),
                                              pass.sides[side].sensor.reference, settings.lines[side]},
                                             settings.limits);
            progress.part(wheel.number, static_cast<qint64>(pass.sides[side].wheels.size()));
        }
        warnOfRoundness(pass, side);
    }
}

void readWheelProfile(const Pass& pass, size_t side, int wheel, int profile, KxMath::KxProfile& result) {
    result.clear();
    result.readFromFile(pass.folder + QLatin1Char('/') +
                        wheelFile(pass.sides[side].recording.wheelDirectory, wheel, profile));
}

} // namespace kxtool
