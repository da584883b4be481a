// The height map of a scan and its patches as JSON.
#include "inspect/base/error.h"
#include "inspect/results/json.h"

#include <KxInspect/Grid.h>
#include <KxMath/KxMathVersion.h>

#include <algorithm>
#include <cmath>

namespace KxInspect {

namespace {

using detail::jsonList;
using detail::jsonNumber;
using detail::JsonValue;

constexpr const char* kCommand = "grid";

QJsonArray rangeArray(const Range& range) {
    return {jsonNumber(range.min), jsonNumber(range.max)};
}

QJsonValue textOrNull(const std::string& text) {
    return text.empty() ? QJsonValue() : QJsonValue(QString::fromStdString(text));
}

QJsonObject patchObject(const GridResult& result, std::size_t index) {
    const Patch& patch = result.found.patches[index];
    QJsonObject reasons;
    if (std::isnan(patch.deviation)) {
        reasons[QStringLiteral("deviation")] = QStringLiteral("one cell has no spread");
    }
    return {{QStringLiteral("seed"), static_cast<qint64>(index + 1)},
            {QStringLiteral("cells"), static_cast<qint64>(patch.cells)},
            {QStringLiteral("area"), jsonNumber(patch.area)},
            {QStringLiteral("mean"), jsonNumber(patch.mean)},
            {QStringLiteral("deviation"), jsonNumber(patch.deviation)},
            {QStringLiteral("reasons"), reasons},
            {QStringLiteral("x"), rangeArray(patch.x)},
            {QStringLiteral("y"), rangeArray(patch.y)},
            {QStringLiteral("z"), rangeArray(patch.z)},
            {QStringLiteral("file"), textOrNull(index < result.files.size() ? result.files[index] : std::string())}};
}

QJsonObject searchObject(const PatchSearch& search) {
    return {{QStringLiteral("start"), jsonNumber(search.start)},
            {QStringLiteral("end"), jsonNumber(search.end)},
            {QStringLiteral("step"), jsonNumber(search.step)},
            {QStringLiteral("tolerance"), jsonNumber(search.tolerance)},
            {QStringLiteral("minCount"), search.minCount},
            {QStringLiteral("maxDrop"), jsonNumber(search.maxDrop)}};
}

/// Why members are null.
QJsonObject reasonsObject(const GridResult& result) {
    QJsonObject reasons;
    if (result.found.meanRange.isEmpty()) {
        for (const char* const member : {"meanRange", "search"}) {
            reasons[QLatin1String(member)] = QStringLiteral("no block has a height");
        }
    }
    return reasons;
}

QJsonValue edgeCutValue(const PatchResult& found) {
    if (!found.edgeCut) {
        return QJsonValue();
    }
    return QJsonObject{{QStringLiteral("threshold"), jsonNumber(*found.edgeCut)},
                       {QStringLiteral("count"), found.cutCount},
                       {QStringLiteral("cells"), static_cast<qint64>(found.cutCells)}};
}

QJsonObject picturesObject(const GridResult& result) {
    std::vector<double> centreX;
    std::vector<double> centreZ;
    for (const Patch& patch : result.found.patches) {
        centreX.push_back(patch.centreX);
        centreZ.push_back(patch.centreZ);
    }
    return {{QStringLiteral("heights"), jsonList(result.map.heights)},
            {QStringLiteral("means"), jsonList(result.found.means)},
            {QStringLiteral("owners"), jsonList(result.found.owners)},
            {QStringLiteral("centreX"), jsonList(centreX)},
            {QStringLiteral("centreZ"), jsonList(centreZ)}};
}

// Reading

/// Throws an Error unless a value can be.
void require(bool holds, const char* key, const char* reason) {
    if (!holds) {
        detail::fail(ErrorKind::Unsuitable, {"result", {}, key}, QLatin1String(reason));
    }
}

Range readRange(const JsonValue& json, const char* key) {
    const std::vector<float> bounds = json[key].numbers();
    require(bounds.size() == 2, key, "holds a range that is not two numbers");
    return {bounds[0], bounds[1]};
}

Patch readPatch(const JsonValue& json) {
    Patch patch;
    patch.cells = json["cells"].wideWholeNumber();
    patch.area = json["area"].number();
    patch.mean = json["mean"].number();
    patch.deviation = json["deviation"].number();
    patch.x = readRange(json, "x");
    patch.y = readRange(json, "y");
    patch.z = readRange(json, "z");
    return patch;
}

PatchSearch readSearch(const JsonValue& json) {
    return {json["start"].number(),     json["end"].number(),           json["step"].number(),
            json["tolerance"].number(), json["minCount"].wholeNumber(), json["maxDrop"].number()};
}

void readFound(const JsonValue& json, GridResult& result) {
    PatchResult& found = result.found;
    found.blockSize = json["blockSize"].wholeNumber();
    found.meanRange = readRange(json, "meanRange");
    if (const JsonValue cut = json["edgeCut"]; !cut.isNull()) {
        found.edgeCut = cut["threshold"].number();
        found.cutCount = cut["count"].wholeNumber();
        found.cutCells = cut["cells"].wideWholeNumber();
    }
    found.search = readSearch(json["search"]);
    for (const JsonValue& seed : json["seeds"].list()) {
        found.patches.push_back(readPatch(seed));
        if (const std::string file = seed["file"].textOrNull(); !file.empty()) {
            result.files.push_back(file);
        }
    }
    require(result.files.empty() || result.files.size() == found.patches.size(), "seeds", "holds seeds without a file");
}

HeightMap readMap(const JsonValue& json) {
    HeightMap map;
    map.rows = json["rows"].wholeNumber();
    map.columns = json["columns"].wholeNumber();
    map.pitch = json["step"].number();
    map.gap = json["gap"].number();
    map.interpolatedRows = json["interpolatedRows"].wholeNumber(0);
    map.originX = json["originX"].number();
    map.originZ = json["originZ"].number();
    require(map.rows > 0 && map.columns > 0, "rows", "holds a map without cells");
    require(map.pitch > 0.0f, "step", "holds a pitch that is not above 0");
    return map;
}

void readPictures(const JsonValue& json, GridResult& result) {
    PatchResult& found = result.found;
    result.map.heights = json["heights"].numbers();
    found.means = json["means"].numbers();
    found.owners = json["owners"].wholeNumbers();
    const std::size_t cells = result.map.position(result.map.rows, 0);
    require(result.map.heights.size() == cells && found.means.size() == cells && found.owners.size() == cells,
            "pictures", "holds other numbers of cells than its rows and columns say");
    const auto isOwner = [&](int owner) { return owner >= CutAway && owner <= static_cast<int>(found.patches.size()); };
    require(std::all_of(found.owners.begin(), found.owners.end(), isOwner), "pictures.owners",
            "holds numbers of patches that are not there");
    const std::vector<double> x = json["centreX"].wideNumbers();
    const std::vector<double> z = json["centreZ"].wideNumbers();
    require(x.size() == found.patches.size() && z.size() == x.size(), "pictures.centreX",
            "holds other numbers of centres than of patches");
    for (std::size_t i = 0; i < x.size(); ++i) {
        found.patches[i].centreX = x[i];
        found.patches[i].centreZ = z[i];
    }
}

} // namespace

std::string toJson(const GridResult& result, Pictures pictures) {
    QJsonArray patches;
    for (std::size_t i = 0; i < result.found.patches.size(); ++i) {
        patches.append(patchObject(result, i));
    }
    const HeightMap& map = result.map;
    QJsonObject document = {{QStringLiteral("command"), QLatin1String(kCommand)},
                            {QStringLiteral("version"), QLatin1String(KxMath_GetVersionString())},
                            {QStringLiteral("set"), QString::fromStdString(result.scan)},
                            {QStringLiteral("records"), result.records},
                            {QStringLiteral("emptyRecords"), result.emptyRecords},
                            {QStringLiteral("step"), jsonNumber(map.pitch)},
                            {QStringLiteral("gap"), jsonNumber(map.gap)},
                            {QStringLiteral("rows"), map.rows},
                            {QStringLiteral("columns"), map.columns},
                            {QStringLiteral("interpolatedRows"), map.interpolatedRows},
                            {QStringLiteral("originX"), jsonNumber(map.originX)},
                            {QStringLiteral("originZ"), jsonNumber(map.originZ)},
                            {QStringLiteral("heights"), static_cast<qint64>(result.heights)},
                            {QStringLiteral("heightRange"), rangeArray(result.heightRange)},
                            {QStringLiteral("blockSize"), result.found.blockSize},
                            {QStringLiteral("meanRange"), rangeArray(result.found.meanRange)},
                            {QStringLiteral("edgeCut"), edgeCutValue(result.found)},
                            {QStringLiteral("reasons"), reasonsObject(result)},
                            {QStringLiteral("search"), searchObject(result.found.search)},
                            {QStringLiteral("folder"), textOrNull(result.folder)},
                            {QStringLiteral("seeds"), patches},
                            {QStringLiteral("warnings"), jsonList(result.warnings)}};
    if (pictures == Pictures::Included) {
        document.insert(QStringLiteral("pictures"), picturesObject(result));
    }
    return detail::jsonText(document);
}

GridResult gridFromJson(const std::string& text) {
    const JsonValue json = JsonValue::parse(text, kCommand);
    GridResult result;
    result.scan = json["set"].text();
    result.records = json["records"].wholeNumber();
    result.emptyRecords = json["emptyRecords"].wholeNumber();
    result.map = readMap(json);
    result.heights = json["heights"].wideWholeNumber();
    result.heightRange = readRange(json, "heightRange");
    readFound(json, result);
    result.folder = json["folder"].textOrNull();
    result.warnings = json["warnings"].texts();
    if (json.has("pictures")) {
        readPictures(json["pictures"], result);
    }
    return result;
}

} // namespace KxInspect
