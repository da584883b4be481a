// What the headers promise to threads: distinct objects at once, copies that share lists, reading members together on one
// object, and calls of KxInspect. Each gives in four threads what it gives in one. Without GoogleTest, so that it can be
// built with the thread sanitizer together with the libraries alone.
#include <KxInspect/KxInspect.h>
#include <KxInspect/KxMathTypes.h>
#include <KxMath/KxMath.h>

#include <QtCore/QFile>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

using namespace KxMath;
namespace fs = std::filesystem;

/// The bytes of results.
struct Digest {
    std::string bytes;

    template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T>>>
    Digest& operator<<(T value) {
        bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
        return *this;
    }
    template <typename T>
    Digest& operator<<(const QList<T>& list) {
        bytes.append(reinterpret_cast<const char*>(list.constData()),
                     sizeof(T) * static_cast<std::size_t>(list.size()));
        return *this;
    }
    template <typename T>
    Digest& operator<<(const KxPointCloud<T>& cloud) {
        return *this << cloud.points;
    }
};

KxProfile wave(int count) {
    KxProfile profile;
    for (int i = 0; i < count; ++i) {
        const float x = 0.1f * static_cast<float>(i);
        profile.points.append(KxPointXY(x, 30.0f + 3.0f * std::sin(x) + (i % 31 == 0 ? 2.0f : 0.0f)));
    }
    return profile;
}

template <typename Point>
KxPointCloud<Point> layers(int count) {
    KxPointCloud<Point> cloud;
    for (int i = 0; i < count; ++i) {
        const auto f = static_cast<float>(i);
        cloud.points.append(Point(std::fmod(7.3f * f, 50.0f), std::sin(f), static_cast<float>(i % 5)));
    }
    return cloud;
}

/// Objects that all threads read, whose lists copies share.
struct Shared {
    KxProfile profile = wave(400);
    KxProfile copy = profile;
    KxPointCloud<KxPointXYZ> cloud = layers<KxPointXYZ>(500);
    KxPointCloud<KxPointXYZ> copyOfCloud = cloud;
    KxLevelHistogram<KxPointXYZ> histogram;
    KxProfileZSet set;
    QList<KxProfileZ> copyOfProfiles;
    KxMatrixCloud matrix;
    KxMatrixWithHistos blocks;
    KxInterpolant interpolant;

    Shared() {
        histogram.calcFromPointCloud(cloud, 0.1f);
        for (int i = 0; i < 12; ++i) {
            KxProfileZ record(static_cast<float>(i));
            record.points = wave(20 + i).points;
            set.profiles.append(record);
        }
        set.stepZ = 1.0f;
        copyOfProfiles = set.profiles;
        matrix.initMatrix(12, 9, 1, 0, 11, 0, 3, 0, 8);
        for (int i = 0; i < 12 * 9; ++i) {
            matrix.cells[i % matrix.rows][i / matrix.rows % matrix.columns] = static_cast<float>(i % 7);
        }
        blocks.calcFromMatrixCloud(matrix, 2, 0, nullptr, nullptr);
        interpolant.buildFromPointCloud(profile, Akima);
    }
};

using Work = std::function<std::string(const fs::path& folder)>; ///< in a folder of its own

struct Case {
    const char* name;
    Work work;
};

/// The reading members of one profile. Those that KxPointCloud names are among them.
std::string queryProfile(KxProfile& p) {
    Digest d;
    KxLine line;
    KxCircle circle;
    KxPointXY point;
    float a = 0, b = 0, c = 0, e = 0;
    int segment = 0;
    std::array<double, 4> coefficients = {};
    std::array<float, 400> zeros = {};
    QList<int> indices;
    KxPointCloud<KxPointXY> joint;
    d << p.size() << p.isEmpty() << p.size_x() << p.size_y() << p.calcAverageY() << p.caclCenterMassPoint(point);
    d << point.x << p.calcRange(&a, &b, &c, &e) << a << b << c << e << p.getIndexX(3.0f) << p.getIndexY(30.0f);
    d << p.getRangeIndeces(indices, 1, 9, 20, 40) << indices << p.findNearestToX(7.0f, true);
    d << p.findNearestToX(7.0f, point, false) << point.x << p.calcLine(line) << line.k << p.calcCircle(circle);
    d << circle.radius << p.calcCorrelation() << p.calcPolynomCoeffs(3, coefficients.data()) << coefficients[1];
    d << p.derivative() << p.findZeros(zeros.data()) << p.integral(10, 90, true) << p.integral(10, 90, false);
    d << p.calcY(3.3f, 1.0f, &segment) << segment << p.calcCutPoint(5, 0.1f) << p.detectWeld(line, &a);
    d << p.detectCircle(circle) << p.detectJoint(joint);
    KxProfile out;
    d << p.detectCutPoints(out, indices, 5, 0.1f) << out;
    d << p.calcLineSegment(5.0f, 1.0f, 3, out, 0.0f, 99.0f, 0.0f, 99.0f) << out;
    out.points = p.points;
    p.kihFilter20(out, 1.0f);
    d << out;
    p.medFilt(out, 5, 0);
    d << out;
    p.diffFilt(out, 5);
    d << out;
    d << p.splashFilter(out, 1.0f, 1.0f) << out;
    p.addLineSegments(out, 5, 0);
    p.addParallelLine(out, 5, 0, 0.1f);
    return (d << out << p.addLineSegmentsWithMMWindow(out, 1.0f) << out).bytes;
}

std::string readCloud(KxPointCloud<KxPointXYZ>& cloud, const fs::path& folder) {
    Digest d;
    KxPointXYZ center(0, 0, 0);
    QList<int> indices;
    KxPointCloud<KxPointXYZ> out;
    const QString file = QString::fromStdString(folder / "cloud.bin");
    d << cloud.size() << cloud.size_x() << cloud.size_z() << cloud.calcAverageY();
    d << cloud.caclCenterMassPoint(center) << center.x << cloud.getIndexX(3.0f) << cloud.getIndexY(0.5f);
    d << cloud.getIndexZ(2.0f) << cloud.getRangeIndeces(indices, 0, 20, -1, 1, 0, 3) << indices;
    d << cloud.calcSection(out, 2.0f, 0.5f) << out;
    cloud.extract(out, 0, 20, -1, 1, 0, 3, false);
    d << out << cloud.extractInsulatingTape(out, 5.0f, -1.0f, 1.0f) << out;
    d << cloud.writeToFile(file) << out.readFromFile(file) << out;
    return (d << cloud.compat_writeToXYZFile(file) << static_cast<int>(fs::file_size(folder / "cloud.bin"))).bytes;
}

std::string readSets(Shared& s) {
    Digest d;
    KxPointCloud<KxPointXYZ> out;
    KxPointCloud<KxPointXY> samples;
    KxProfileZSet part;
    d << s.set.size() << s.set.isEmpty() << s.set.getRange(2, 5, part) << part.size() << s.set.calcAverageY();
    d << s.set.toPointCloud(out) << out << s.matrix.toPointCloud(out) << out << s.blocks.toPointCloud(out, 1.0f) << out;
    d << s.histogram.count() << s.histogram.calcMassCenter() << s.interpolant.calcY(4.2f);
    return (d << s.interpolant.generatePointCloud(samples, 0.3f, 1, 30) << samples).bytes;
}

/// Writing members, on copies whose lists are those of the shared objects until they write.
std::string writeCopies(Shared& s) {
    Digest d;
    KxProfile profile;
    profile = s.profile;
    profile.kihFilter20(1.0f);
    profile.rotateEvklid(0.3f);
    profile.removeNoise(5, 1, 0.5f, 0);
    d << profile << profile.removeDuplicates() << profile.interpolate(0.2f, 1, 30, Akima) << profile;
    KxPointCloud<KxPointXYZ> cloud;
    cloud = s.cloud;
    cloud.sort(KxSortAscending, KxSortNone);
    cloud.points[3].x = 5.0f;
    KxLevelHistogram<KxPointXYZ> histogram = s.histogram;
    d << cloud << histogram.calcFromPointCloud(cloud, 0.2f) << histogram.count();
    KxProfileZSet set;
    set.profiles = s.set.profiles;
    set.setZ(3.0f, 0.5f);
    KxMatrixCloud matrix;
    KxMatrixWithHistos blocks;
    QList<KxPointCloud<KxPointXYZ>*> seeds;
    set.stepZ = 0.5f;
    d << set.toMatrixCloud(matrix, 0.5f, 1.0f) << blocks.calcFromMatrixCloud(matrix, 2, 0, nullptr, nullptr);
    d << blocks.extractSeeds(matrix, &seeds, 40, 20, 1, 2, 4, 100) << seeds.size();
    qDeleteAll(seeds);
    return d.bytes;
}

std::string conicity() {
    KxProfile wheel, rail;
    for (int i = 0; i <= 260; ++i) {
        const float x = 0.5f * static_cast<float>(i);
        const float flange = x < 27.0f ? 28.0f - (x - 14.0f) * (x - 14.0f) / 14.0f : 16.0f - 2.2f * (x - 27.0f);
        wheel.points.append(KxPointXY(x, std::max(flange, (70.0f - x) / 20.0f)));
        if (x <= 72.0f) {
            rail.points.append(KxPointXY(x, 80.0f - std::sqrt(80.0f * 80.0f - (x - 36.0f) * (x - 36.0f))));
        }
    }
    KxInspect::ConicityInput input;
    for (const auto part : {KxInspect::Wheel1, KxInspect::Wheel2, KxInspect::Rail1, KxInspect::Rail2}) {
        input.sections[part].profile = KxInspect::fromKxProfile(isWheel(part) ? wheel : rail);
    }
    input.gauge = 1435;
    input.backToBack = 1360;
    input.gaugeDepth = 0;
    const KxInspect::ConicityResult result = measureConicity(input);
    return result.isCalculated() ? toJson(result, KxInspect::Pictures::Included) : std::string();
}

std::string inspectFiles(const fs::path& folder) {
    using namespace KxInspect;
    PointSet points;
    for (int z = 0; z < 20; ++z) {
        for (int i = 0; i < 30; ++i) {
            points.points.push_back(
                {0.5f * static_cast<float>(i), static_cast<float>(i % 7), 0.5f * static_cast<float>(z)});
        }
    }
    points.hasZ = true;
    std::string text;
    for (const FileKind kind : {FileKind::Profiles, FileKind::Ply, FileKind::Pcd, FileKind::Xyz, FileKind::Xyzf}) {
        const std::string file = folder / ("points." + kindName(kind));
        writePoints(file, kind, points);
        const FileContents contents = readFileContents(file);
        text += kindName(kind) + std::to_string(contents.points) + std::to_string(readPoints(file, kind).points.size());
    }
    GridOptions options;
    options.map.pitch = 0.5f;
    GridResult grid = measureGrid(folder / "points.profiles", options);
    grid.scan.clear();
    std::vector<CrossSection> wheels(1);
    wheels[0].profile = readProfile(folder / "points.xyzf");
    text += toJson(grid, Pictures::Included) + toJson(measureWheels(wheels));
    CalibrationTask task;
    task.placement = 2;
    task.side = SensorSide::SmallerY;
    return text + toJson(measurePoses({{"a", readProfiles(folder / "points.profiles")[0]}}, task));
}

/// Runs the work in four threads at once, each in a folder of its own, then alone: what the first call would leave in
/// the shared objects is then written while the others read.
bool isSame(const Case& c, const fs::path& parent) {
    constexpr std::size_t kThreads = 4;
    const auto run = [&](std::size_t number) {
        const fs::path folder = parent / std::to_string(number);
        fs::create_directories(folder);
        return c.work(folder);
    };
    std::array<std::string, kThreads> found;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] { found[i] = run(i) == run(i) ? run(i) : std::string("changes"); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::string expected = run(kThreads);
    for (const std::string& result : found) {
        if (result != expected || expected.empty()) {
            std::fprintf(stderr, "%s: %zu and %zu bytes\n", c.name, expected.size(), result.size());
            return false;
        }
    }
    return true;
}

} // namespace

int main() {
    const fs::path folder = fs::temp_directory_path() / ("kxmath-threads-" + std::to_string(std::random_device()()));
    Shared shared;
    const Case cases[] = {
        {"one profile read by all", [&](const fs::path&) { return queryProfile(shared.profile); }},
        {"one cloud read by all", [&](const fs::path& f) { return readCloud(shared.cloud, f); }},
        {"one set, map, blocks, histogram and interpolant read by all",
         [&](const fs::path&) { return readSets(shared); }},
        {"copies that share lists", [&](const fs::path&) { return writeCopies(shared); }},
        {"conicity", [](const fs::path&) { return conicity(); }},
        {"files of KxInspect", [](const fs::path& f) { return inspectFiles(f); }},
    };
    bool isGood = true;
    for (const Case& c : cases) {
        isGood = isSame(c, folder) && isGood;
    }
    fs::remove_all(folder);
    return isGood ? 0 : 1;
}
