// The result of a pass from JSON.
#include "inspect/results/assessmentJson.h"
#include "inspect/results/identityJson.h"
#include "inspect/results/json.h"
#include "inspect/results/keptJson.h"
#include "inspect/results/passWheelsJson.h"
#include "inspect/results/trainJson.h"

#include <KxInspect/PassResult.h>
#include <KxInspect/Recording.h>

namespace KxInspect {

namespace {

using detail::JsonValue;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// A count or a number of something: two of them can be added.
int readCount(const JsonValue& value) {
    constexpr int kMost = 1 << 30;
    return value.wholeNumber(0, kMost);
}

/// The same, 0 for null.
int readCountIfPresent(const JsonValue& value) {
    return value.isNull() ? 0 : readCount(value);
}

std::vector<int> readNumbers(const JsonValue& value) {
    std::vector<int> numbers;
    for (const JsonValue& number : value.list()) {
        numbers.push_back(readCount(number));
    }
    return numbers;
}

std::optional<Line> readLine(const JsonValue& value) {
    return value.isNull() ? std::nullopt : std::optional(value.line());
}

PassSide readSide(const JsonValue& value) {
    PassSide side;
    side.file = value["file"].text();
    side.name = recordingName(side.file).file;
    side.wheelDirectory = value["wheelDirectory"].text();
    side.serial = value["serial"].wholeNumber();
    side.sensor = value["sensor"].wholeNumber();
    side.bytes = value["bytes"].wideWholeNumber();
    side.sha256 = value["sha256"].text();
    side.cloudSections = readCount(value["cloudSections"]);
    side.profileRecords = readCount(value["profileRecords"]);
    side.level = value["level"].line();
    constexpr float kUnknown = std::numeric_limits<float>::quiet_NaN();
    side.reference = value["reference"].isNull() ? Line{kUnknown, kUnknown} : value["reference"].line();
    side.missing = value.has("missing") ? value["missing"].text() : std::string();
    if (value.has("points")) {
        const auto points = value["points"];
        side.points = PointCounts{points["recorded"].wideWholeNumber(),
                                  points["missing"].wideWholeNumber(),
                                  points["removed"].wideWholeNumber(),
                                  points["belowLevel"].wideWholeNumber(),
                                  {}};
        if (points.has("removedAsStraight")) {
            side.points->straight = points["removedAsStraight"].wideWholeNumber();
        }
    }
    return side;
}

std::optional<DefectLimits> readLimits(const JsonValue& value) {
    if (value.isNull()) {
        return std::nullopt;
    }
    const auto bound = [&](const char* key, float none) { return value[key].isNull() ? none : value[key].number(); };
    DefectLimits limits;
    limits.maxDeviation = value["maxDeviation"].number();
    limits.pointsHigher = value["pointsHigher"].wholeNumber();
    limits.minProfiles = value["minimalDefectsProf"].wholeNumber();
    limits.maxRadiusDeviation = value["maxRadiusDeviation"].number();
    limits.radiusProfiles = value["radiusProfiles"].wholeNumber();
    limits.fromX = bound("fromX", -kInfinity);
    limits.toX = bound("toX", kInfinity);
    return limits;
}

std::optional<TreadDefects> readDefects(const JsonValue& value) {
    if (value.isNull()) {
        return std::nullopt;
    }
    TreadDefects defects;
    defects.judged = readCount(value["judgedProfiles"]);
    if (!value["defectiveProfiles"].isNull()) {
        defects.profiles = readNumbers(value["defectiveProfiles"]);
    }
    defects.deviating = readCountIfPresent(value["deviatingPoints"]);
    defects.worstProfile = readCountIfPresent(value["worstProfile"]);
    defects.largest = value["largestDeviation"].number();
    defects.limit = value["limit"].number();
    if (!value["isDefective"].isNull()) {
        defects.isDefective = value["isDefective"].flag();
    }
    return defects;
}

std::optional<Roundness> readRoundness(const JsonValue& value) {
    if (value.isNull()) {
        return std::nullopt;
    }
    Roundness roundness;
    for (const JsonValue& radius : value["radii"].list()) {
        roundness.radii.push_back({readCount(radius["profile"]), radius["fromAxle"].number(),
                                   radius["deviation"].number(), radius["interval"].interval()});
    }
    roundness.flangeRadius = value["flangeRadius"].number();
    roundness.scatter = value["scatter"].number();
    roundness.profiles = readNumbers(value["profilesOff"]);
    roundness.largest = value["largestDeviation"].number();
    roundness.largestInterval = value["largestInterval"].interval();
    roundness.limit = value["limit"].number();
    const std::vector<float> band = value["band"].numbers(2);
    roundness.bandFrom = band[0];
    roundness.bandTo = band[1];
    for (const JsonValue& arc : value["seen"].list()) {
        const std::vector<float> ends = arc.numbers(2);
        roundness.seen.push_back({ends[0], ends[1]});
    }
    roundness.isOut = value["isOutOfRound"].flag();
    roundness.isDirty = value.has("isDirty") && value["isDirty"].flag(); // older results do not say
    return roundness;
}

PassWheel readWheel(const JsonValue& value) {
    PassWheel wheel;
    wheel.number = readCount(value["wheel"]);
    wheel.profiles = readCount(value["profiles"]);
    wheel.firstRecord = readCount(value["firstRecord"]);
    wheel.chosenProfile = readCountIfPresent(value["chosenProfile"]);
    wheel.points = readCount(value["points"]);
    wheel.defects = readDefects(value["defects"]);
    wheel.defectsReason = value["defectsReason"].textOrNull();
    wheel.roundness = readRoundness(value["roundness"]);
    wheel.roundnessReason = value["roundnessReason"].textOrNull();
    return wheel;
}

/// Reads a pair and puts its wheels behind those of the pairs before it.
void readPair(const JsonValue& value, PassResult& result) {
    WheelPair pair;
    const std::vector<JsonValue> wheels = value["sides"].ofSize(result.sides.size());
    for (std::size_t side = 0; side < wheels.size(); ++side) {
        if (!wheels[side].isNull()) {
            pair.wheels[side] = result.sides[side].wheels.size();
            result.sides[side].wheels.push_back(readWheel(wheels[side]));
        }
    }
    pair.distance = value["backToBack"].number();
    pair.deviation = value["deviation"].number();
    if (!value["inTolerance"].isNull()) {
        pair.inTolerance = value["inTolerance"].flag();
    }
    pair.reason = value["reason"].textOrNull();
    pair.interval = value["interval"].interval();
    pair.intervalReason = value["intervalReason"].textOrNull();
    pair.chord = value["chord"].number();
    pair.yaw = value["yaw"].number();
    pair.yawInterval = value["yawInterval"].interval();
    pair.yawReason = value["yawReason"].textOrNull();
    if (!value["place"].isNull()) {
        pair.place = value["place"].wideNumber();
    }
    pair.axle = detail::readAxleNumber(value);
    result.pairs.push_back(pair);
}

TreadMap readTread(const JsonValue& value) {
    TreadMap tread;
    tread.profiles = readCount(value["profiles"]);
    tread.columns = readCount(value["columns"]);
    tread.from = value["from"].number();
    tread.deviations = value["deviations"].numbers();
    value["deviations"].ofSize(static_cast<std::size_t>(tread.profiles) * static_cast<std::size_t>(tread.columns));
    return tread;
}

WheelPicture readWheelPicture(const JsonValue& value, std::size_t sides) {
    WheelPicture wheel;
    wheel.side = static_cast<std::size_t>(value["side"].wholeNumber(1, static_cast<int>(sides))) - 1;
    wheel.overlaid = readCount(value["overlaid"]);
    wheel.profiles = value["profiles"].points();
    wheel.chosen = value["chosen"].points();
    wheel.half = value["half"].points();
    wheel.heights = value["heights"].wideNumbers();
    value["heights"].ofSize(wheel.half.size());
    wheel.fit = readLine(value["fit"]);
    wheel.offset = value["offset"].number();
    wheel.faces = value["faces"].points();
    wheel.hasPlaces = value["hasPlaces"].flag();
    wheel.faceLine = readLine(value["faceLine"]);
    wheel.low = readLine(value["low"]);
    wheel.deviations = value["deviations"].points();
    if (value.has("tread") && !value["tread"].isNull()) {
        wheel.tread = readTread(value["tread"]);
    }
    return wheel;
}

/// A picture of a pair that is there, with the wheels that this pair has.
PairPicture readPicture(const JsonValue& value, const PassResult& result) {
    PairPicture picture;
    picture.pair = value["pair"].wholeNumber(1, static_cast<int>(result.pairs.size()));
    const WheelPair& pair = result.pairs[static_cast<std::size_t>(picture.pair) - 1];
    for (const JsonValue& wheel : value["wheels"].list()) {
        picture.wheels.push_back(readWheelPicture(wheel, result.sides.size()));
        if (result.wheelOf(pair, picture.wheels.back().side) == nullptr) {
            wheel["side"].failAsNo(QStringLiteral("side that saw the pair"));
        }
    }
    return picture;
}

RawPicture readRawPicture(const JsonValue& value, const PassResult& result) {
    RawPicture raw;
    raw.side = static_cast<std::size_t>(value["side"].wholeNumber(1, static_cast<int>(result.sides.size()))) - 1;
    raw.profiles = readCount(value["profiles"]);
    raw.points = value["points"].points();
    raw.below = value["below"].wideWholeNumber();
    raw.all = value["all"].wideWholeNumber();
    raw.low = readLine(value["low"]);
    return raw;
}

std::optional<NominalContour> readContour(const JsonValue& value) {
    if (value.isNull()) {
        return std::nullopt;
    }
    NominalContour contour{value["file"].text(), value["flangeHeight"].number(), {}};
    if (value.has("section")) {
        contour.section = value["section"].points();
    }
    return contour;
}

void readFurther(const JsonValue& value, PassResult& result) {
    constexpr std::size_t kMostSensors = 49;
    constexpr int kMostWheels = 10000; // longer than any train; counts in files are claims
    const std::vector<JsonValue> list = value.list();
    if (list.size() > kMostSensors) {
        value.failAsNo(QStringLiteral("list of at most 49 recordings"));
    }
    for (const JsonValue& side : list) {
        result.further.push_back(readSide(side));
        result.further.back().wheels.resize(static_cast<std::size_t>(side["wheels"].wholeNumber(0, kMostWheels)));
    }
}

} // namespace

PassResult passFromJson(const std::string& json) {
    const JsonValue document = JsonValue::parse(json, "train");
    PassResult result;
    result.identity = detail::readIdentity(document);
    result.mode = document["mode"].wholeNumber();
    result.settings = document["settings"].text();
    for (const JsonValue& side : document["recordings"].ofSize(std::tuple_size_v<decltype(WheelPair::wheels)>)) {
        result.sides.push_back(readSide(side));
    }
    result.baseDistance = document["baseDistance"].number();
    if (!document["baseUncertainty"].isNull()) {
        result.baseUncertainty = document["baseUncertainty"].number();
    }
    result.nominal = document["nominal"].number();
    result.tolerance = document["tolerance"].number();
    result.defectLimits = readLimits(document["defectLimits"]);
    result.train = detail::readTrain(document["train"]);
    for (const JsonValue& pair : document["pairs"].list()) {
        readPair(pair, result);
    }
    if (document.has("wheels")) {
        result.wheels = detail::readWheelMeasures(document["wheels"], result.pairs.size());
    }
    if (document.has("furtherRecordings")) {
        readFurther(document["furtherRecordings"], result);
    }
    result.contour = readContour(document["contour"]);
    result.assessment = detail::readAssessment(document["assessment"]);
    result.kept = detail::readKept(document["kept"]);
    result.warnings = document["warnings"].texts();
    if (document.has("pictures")) {
        for (const JsonValue& picture : document["pictures"].list()) {
            result.pictures.push_back(readPicture(picture, result));
        }
    }
    if (document.has("rawPictures")) {
        for (const JsonValue& raw : document["rawPictures"].list()) {
            result.rawPictures.push_back(readRawPicture(raw, result));
        }
    }
    return result;
}

} // namespace KxInspect
