// kxmath convert: points from one kind of file to another.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/fileKind.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textOptions.h"
#include "tools/kxmath/convert/pointOutput.h"
#include "tools/kxmath/convert/standardStreams.h"

#include <KxInspect/Calibration.h>
#include <KxInspect/Error.h>
#include <KxInspect/HeightMapFile.h>
#include <KxInspect/PointFile.h>
#include <KxInspect/Settings.h>

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

using KxInspect::FileKind;

constexpr const char* kName = "convert";

const char* const kDescription =
    "Converts points and height maps from one kind of file to another. The content of IN, or else the\n"
    "ending of its name, selects its kind, the name of OUT that of OUT; --from and --to override them:\n"
    "\n"
    "  cloud     .bin .cloud          cloud sections: 2-D, 3-D or 3-D with colours, as the points are; all\n"
    "                                 of them; recordings\n"
    "  profiles  .profiles .set       profile records; when written, a profile begins wherever z changes\n"
    "  csv       .csv                 text with 2, 3 or 6 columns; written: one profile, x;y with decimal comma\n"
    "  xyzf      .xyzf                x, y, z and 0 as little-endian floats, nothing else\n"
    "  xyz       .xyz .txt .asc       text with 2, 3 or 6 columns; written: x y z\n"
    "  ply       .ply                 vertices with x, y, z and colours\n"
    "  pcd       .pcd                 points with x, y, z and rgb, not compressed\n"
    "  gauge     .whl .ban .prw .prr  text of contact profile gauges: one profile\n"
    "  table     .table               CSV with a header: x,y[,z][,red,green,blue], 9 digits\n"
    "  npy       .npy                 array of NumPy: points in 2 or 3 columns; of a height map the heights\n"
    "  vtp       .vtp                 points for VTK\n"
    "  stl       .stl                 triangles; written from height maps, read as points\n"
    "  vti       .vti                 height map for VTK\n"
    "  gsf       .gsf                 height map, Gwyddion Simple Field\n"
    "  sdf       .sdf                 height map, text of ISO 25178-71\n"
    "\n"
    "kxmath grid makes a height map of a scan. Of a height map, kinds for points get the cells with a\n"
    "height. What a kind cannot hold is refused; a warning says when xyz, xyzf, csv and profiles leave out\n"
    "colours, and csv and gauge z.\n"
    "\n"
    "--pose puts profiles into the track frame by the pose of a sensor; the position of a profile is\n"
    "taken off x there, as the wheels move along x.\n"
    "\n"
    "IN or OUT may be - for the standard input or output; --from or --to must then name its kind.\n"
    "\n"
    "Exit codes: 0 done, 2 wrong use, 3 the input is unreadable or damaged, 4 the output could not be\n"
    "written or cannot hold the points, 6 not enough memory.";

struct Conversion {
    QString in;
    QString out;
    FileKind from;
    FileKind to;
    KxInspect::TextOptions text;
    std::optional<int> record; ///< the only one that is taken, from 1 on
    std::optional<float> distance; ///< of the profiles, mm
    std::optional<float> pitch; ///< of the heights of an array, mm
    std::optional<KxInspect::SensorPose> pose; ///< of the sensor whose profiles are put into the track frame
};

void declare(Options& options) {
    options.addArgument("IN", QStringLiteral("The file to read."));
    options.addArgument("OUT", QStringLiteral("The file to write, replaced if it exists."));
    options.addOption("from", QStringLiteral("Kind of IN."), "kind");
    options.addOption("to", QStringLiteral("Kind of OUT."), "kind");
    options.addOption("record", QStringLiteral("Takes one section or record of IN, counted from 1."), "N");
    options.addOption("dz", QStringLiteral("Puts the profiles of IN this far apart along z, mm, from 0 on."), "D");
    options.addOption("step", QStringLiteral("Pitch of the heights of an npy, mm, which the file does not hold."), "S");
    options.addOption("pose", QStringLiteral("Puts the profiles into the track frame by a pose of these settings."),
                      "SETTINGS");
    options.addOption("sensor", QStringLiteral("The sensor of --pose: n of its section SENSORn."), "n");
    addTextOptions(options, true);
}

/// The pose that --pose and --sensor name.
std::optional<KxInspect::SensorPose> poseIfSet(const Options& options) {
    if (options.isSet("pose") != options.isSet("sensor")) {
        options.fail(QStringLiteral("--pose and --sensor are given together"));
    }
    if (!options.isSet("pose")) {
        return {};
    }
    const QString file = options.text("pose");
    const int number = options.wholeNumber("sensor", 1);
    for (const KxInspect::SensorSettings& sensor : KxInspect::readStationSettings(toBytes(file)).sensors) {
        if (sensor.number == number && sensor.hasPose()) {
            return KxInspect::SensorPose{sensor.origin->x,     sensor.origin->y,    sensor.origin->z,
                                         sensor.angles->alpha, sensor.angles->beta, sensor.angles->gamma};
        }
    }
    throw CommandError{BadInput, QStringLiteral("'%1' has no pose of a SENSOR%2 (x, y, z, alpha, beta, gamma)")
                                     .arg(printable(file))
                                     .arg(number)};
}

bool isRecording(FileKind kind) {
    return kind == FileKind::Cloud || kind == FileKind::Profiles;
}

/// Whether IN is a height map as such; an array is one when its pitch is given.
bool isMap(const Conversion& conversion) {
    return holdsHeightMap(conversion.from) && (conversion.from != FileKind::Npy || conversion.pitch);
}

/// Throws a CommandError when an option does not fit IN.
void checkUse(const Options& options, const Conversion& conversion) {
    const QString kind = QString::fromStdString(kindName(conversion.from));
    if (conversion.record && !isRecording(conversion.from)) {
        options.fail(QStringLiteral("--record is for cloud and profiles, IN is read as %1").arg(kind));
    }
    if (conversion.pitch && conversion.from != FileKind::Npy) {
        options.fail(QStringLiteral("--step is for npy, IN is read as %1").arg(kind));
    }
    if (isMap(conversion) && (conversion.distance || conversion.pose)) {
        options.fail(QStringLiteral("--dz and --pose are for profiles, IN is a height map"));
    }
}

std::optional<Conversion> parse(const QStringList& arguments) {
    Options options(kName, "IN OUT [options]", QLatin1String(kDescription));
    declare(options);
    if (!options.parse(arguments)) {
        return {};
    }
    const QStringList names = options.arguments("files", 2, 2);
    const Conversion conversion{names[0],
                                names[1],
                                kindOfFile(options, "from", names[0], !isStream(names[0])),
                                kindOfFile(options, "to", names[1], false),
                                textOptions(options, {}, true),
                                options.isSet("record") ? std::optional(options.wholeNumber("record", 1))
                                                        : std::nullopt,
                                options.numberIfSet("dz", kAbove0),
                                options.numberIfSet("step", kAbove0),
                                poseIfSet(options)};
    if (!isText(conversion.from)) {
        failAsNoText(options, QStringLiteral("IN is read as"), conversion.from);
    }
    checkUse(options, conversion);
    const OutputFile out(QStringLiteral("OUT"), names[1]);
    QStringList inputs;
    if (!isStream(names[0])) {
        inputs += names[0];
    }
    if (options.isSet("pose")) {
        inputs += options.text("pose");
    }
    checkOutputs({&out}, inputs);
    return conversion;
}

/// What IN holds: points, or a height map.
struct Content {
    KxInspect::PointSet points;
    std::optional<KxInspect::HeightMap> map;
};

Content readFile(const std::string& path, const Conversion& conversion) {
    if (isMap(conversion)) {
        return {{}, KxInspect::readHeightMap(path, conversion.from, conversion.pitch)};
    }
    return {conversion.record ? KxInspect::readRecord(path, *conversion.record)
                              : KxInspect::readPoints(path, conversion.from, conversion.text),
            {}};
}

Content readInput(const Conversion& conversion) {
    std::optional<Scratch> scratch;
    QString copy;
    if (isStream(conversion.in)) {
        copy = scratch.emplace().path("in");
        copyStandardInput(copy);
    }
    return onFile(conversion.in, "the standard input", copy,
                  [&](const std::string& path) { return readFile(path, conversion); });
}

/// Puts the profiles `distance` apart.
void placeProfiles(KxInspect::PointSet& set, float distance) {
    std::size_t profile = 0;
    for (std::size_t i = 0; i < set.points.size(); ++i) {
        while (profile < set.profileStarts.size() && set.profileStarts[profile] <= i) {
            ++profile;
        }
        set.points[i].z = static_cast<float>(static_cast<double>(distance) *
                                             static_cast<double>(std::max<std::size_t>(profile, 1) - 1));
    }
    set.hasZ = true;
}

/// Puts the points of profiles into the track frame, the travel of the train, which their z is, taken off.
void putIntoTrack(KxInspect::PointSet& set, const KxInspect::SensorPose& pose) {
    KxInspect::Profile profile;
    profile.points.reserve(set.points.size());
    for (const KxInspect::Point3& p : set.points) {
        profile.points.push_back({p.x, p.y});
    }
    const std::vector<KxInspect::Point3> placed = toTrack(profile, pose);
    for (std::size_t i = 0; i < placed.size(); ++i) {
        const float travel = set.hasZ && !std::isnan(set.points[i].z) ? set.points[i].z : 0.0f;
        set.points[i] = {placed[i].x - travel, placed[i].y, placed[i].z};
    }
    set.hasZ = true;
}

void writeOutput(const Conversion& conversion, const Content& content) {
    if (content.map) {
        writeFileOrStream(conversion.out, [&](const std::string& path) {
            KxInspect::writeHeightMap(path, conversion.to, *content.map);
        });
    } else {
        writePointOutput(kName, conversion.out, conversion.to, content.points);
    }
}

void convert(const Conversion& conversion) {
    Content content = readInput(conversion);
    KxInspect::PointSet& points = content.points;
    if (const std::string note = points.text ? readingNote(*points.text) : std::string(); !note.empty()) {
        printLine(kName, QStringLiteral("'%1' %2").arg(conversion.in, QString::fromStdString(note)));
    }
    if (conversion.distance) {
        placeProfiles(points, *conversion.distance);
    }
    if (conversion.pose) {
        putIntoTrack(points, *conversion.pose);
    }
    writeOutput(conversion, content);
}

} // namespace

int runConvert(const QStringList& arguments) {
    return runCommand(kName, [&] {
        if (const std::optional<Conversion> conversion = parse(arguments)) {
            convert(*conversion);
        }
        return Done;
    });
}

} // namespace kxtool
