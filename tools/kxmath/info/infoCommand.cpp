// kxmath info: what is in a file.
#include "inspect/fitting/median.h"
#include "inspect/formats/pointFile.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"

#include <KxMath/KxPointCloud.h>
#include <KxMath/KxProfileZ.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace kxtool {

namespace {

constexpr const char* kName = "info";

const char* const kDescription =
    "Tells what files hold: cloud sections of each kind, profile records, CSV and the other kinds that kxmath convert\n"
    "reads; the number of points, their ranges, how many are not numbers, their spacing, and the first byte of a "
    "damaged\n"
    "file that cannot be read.\n"
    "\n"
    "Exit codes: 0 done, 1 a file is empty, 2 wrong use, 3 a file is unreadable or damaged.";

/// What is known of the points of one file.
struct Statistics {
    qint64 points = 0;
    qint64 notNumbers = 0; ///< points with a coordinate that is NaN
    std::array<float, 3> min;
    std::array<float, 3> max;
    std::vector<float> gaps; ///< between neighbours in x

    Statistics() {
        min.fill(std::numeric_limits<float>::infinity());
        max.fill(-std::numeric_limits<float>::infinity());
    }

    void add(const std::array<float, 3>& p, bool hasZ) {
        ++points;
        notNumbers += std::isnan(p[0]) || std::isnan(p[1]) || (hasZ && std::isnan(p[2])) ? 1 : 0;
        for (size_t axis = 0; axis < 3; ++axis) {
            min[axis] = std::min(min[axis], p[axis]); // NaN: stays
            max[axis] = std::max(max[axis], p[axis]); // NaN: stays
        }
    }
};

/// What a file holds, in the order in which it was met.
struct Contents {
    Statistics statistics;
    std::vector<std::pair<QString, qint64>> parts; ///< kind and how many of it
    QString damage; ///< empty when all was read
};

void count(Contents& contents, const QString& kind) {
    const auto found = std::find_if(contents.parts.begin(), contents.parts.end(),
                                    [&](const auto& part) { return part.first == kind; });
    if (found == contents.parts.end()) {
        contents.parts.emplace_back(kind, 1);
    } else {
        ++found->second;
    }
}

template <typename Points>
void addGaps(Statistics& statistics, const Points& points) {
    for (qsizetype i = 0; i + 1 < points.size(); ++i) {
        const float gap = std::abs(points[i + 1].x - points[i].x);
        if (std::isfinite(gap) && gap > 0.0f) {
            statistics.gaps.push_back(gap);
        }
    }
}

/// Reads one cloud section where the file stands. @return false when there is none of that kind
template <typename Point>
bool readSection(QFile& file, const char* kind, Contents& contents) {
    KxMath::KxPointCloud<Point> cloud;
    if (cloud.readFromFile(file) < 0) {
        return false;
    }
    count(contents, QLatin1String(kind));
    constexpr bool kHasZ = sizeof(Point) > sizeof(KxMath::KxPointXY);
    for (const Point& p : std::as_const(cloud.points)) {
        if constexpr (kHasZ) {
            contents.statistics.add({p.x, p.y, p.z}, true);
        } else {
            contents.statistics.add({p.x, p.y, std::numeric_limits<float>::quiet_NaN()}, false);
        }
    }
    addGaps(contents.statistics, std::as_const(cloud.points));
    return true;
}

bool readRecord(QFile& file, Contents& contents) {
    KxMath::KxProfileZ profile;
    if (profile.readFromFile(file) < 0) {
        return false;
    }
    count(contents, QStringLiteral("profile record"));
    for (const KxMath::KxPointXY& p : std::as_const(profile.points)) {
        contents.statistics.add({p.x, p.y, profile.z}, false);
    }
    addGaps(contents.statistics, std::as_const(profile.points));
    return true;
}

/// Reads sections and records of any kind, one after the other, to the end or the first byte that begins none.
void readBinary(QFile& file, Contents& contents) {
    Progress progress;
    progress.step(QStringLiteral("reading %1").arg(file.fileName()));
    while (!file.atEnd()) {
        const bool isRead = readSection<KxMath::KxPointXY>(file, "2-D cloud section", contents) ||
                            readSection<KxMath::KxPointXYZ>(file, "3-D cloud section", contents) ||
                            readSection<KxMath::KxPointXYZRGB>(file, "cloud section with colours", contents) ||
                            readRecord(file, contents);
        if (!isRead) {
            contents.damage = QStringLiteral("is damaged at byte %1 of %2: no whole section or record begins there")
                                  .arg(file.pos())
                                  .arg(file.size());
            return;
        }
        progress.part(file.pos(), file.size());
    }
}

void readOther(const QString& name, Format format, Contents& contents) {
    try {
        const PointData data = readPointFile(name, format);
        count(contents, formatName(format) + QStringLiteral(" file"));
        for (const KxMath::KxPointXYZRGB& p : data.points) {
            contents.statistics.add({p.x, p.y, p.z}, data.hasZ);
        }
        addGaps(contents.statistics, data.points);
    } catch (const FormatError& error) {
        contents.damage = error.message;
    }
}

Contents readContents(const QString& name) {
    QFile file(name);
    if (QFileInfo(name).isDir() || !file.open(QIODevice::ReadOnly)) {
        throw CommandError{
            BadInput, QStringLiteral("'%1' cannot be read: %2")
                          .arg(name, QFileInfo(name).isDir() ? QStringLiteral("it is a folder") : file.errorString())};
    }
    Contents contents;
    const std::optional<Format> format = formatByFileName(name);
    const bool isText = format && *format != Format::Cloud && *format != Format::Profiles;
    if (isText) {
        file.close();
        readOther(name, *format, contents);
    } else {
        readBinary(file, contents);
    }
    return contents;
}

void print(const QString& name, const Contents& contents) {
    const Statistics& s = contents.statistics;
    QString text = name + QStringLiteral(":\n");
    for (const auto& [kind, times] : contents.parts) {
        text += QStringLiteral("  %1 x %2\n").arg(times).arg(kind);
    }
    text += QStringLiteral("  %1 points, %2 of them not numbers\n").arg(s.points).arg(s.notNumbers);
    for (size_t axis = 0; axis < 3; ++axis) {
        if (s.min[axis] <= s.max[axis]) {
            text += QStringLiteral("  %1 from %2 to %3\n")
                        .arg(QLatin1Char("xyz"[axis]))
                        .arg(static_cast<double>(s.min[axis]))
                        .arg(static_cast<double>(s.max[axis]));
        }
    }
    if (!s.gaps.empty()) {
        text += QStringLiteral("  spacing in x %1 (median)\n").arg(static_cast<double>(median(s.gaps, 0.0f)));
    }
    if (!contents.damage.isEmpty()) {
        text += QStringLiteral("  ") + contents.damage + QLatin1Char('\n');
    }
    printOutput(text);
}

/// Tells about one file. @return the exit code that it asks for
int inform(const QString& name) {
    const Contents contents = readContents(name);
    print(name, contents);
    if (!contents.damage.isEmpty()) {
        throw CommandError{BadInput, QStringLiteral("'%1' %2").arg(name, contents.damage)};
    }
    return contents.parts.empty() ? NoResult : Done;
}

int runChecked(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(kDescription));
    parser.addPositionalArgument(QStringLiteral("FILE..."), QStringLiteral("The files to look into."));
    if (!parseOrHelp(parser, arguments, kName, "FILE...")) {
        return Done;
    }
    if (parser.positionalArguments().isEmpty()) {
        failUse(kName, QStringLiteral("no file was named"));
    }
    int worst = Done;
    for (const QString& name : parser.positionalArguments()) {
        worst = std::max(worst, runCommand(kName, [&] { return inform(name); }));
    }
    return worst;
}

} // namespace

int runInfo(const QStringList& arguments) {
    return runCommand(kName, [&] { return runChecked(arguments); });
}

} // namespace kxtool
