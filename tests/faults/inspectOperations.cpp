#include "states.h"

#include "shapes/crossSections.h"
#include "support/tempFiles.h"

#include <KxInspect/KxInspect.h>

namespace faults {

namespace {

using namespace KxInspect;

/// The points of a profile as KxInspect takes them.
Profile profileOf(const QList<KxPointXY>& points) {
    Profile profile;
    for (const KxPointXY& p : points) {
        profile.points.push_back({p.x, p.y});
    }
    return profile;
}

CrossSection section(void (*append)(KxProfile&)) {
    KxProfile whole;
    append(whole);
    CrossSection result;
    result.profile = Profile();
    for (qsizetype i = 0; i < whole.points.size(); i += 4) {
        result.profile->points.push_back({whole.points[i].x, whole.points[i].y});
    }
    return result;
}

/// Inputs, and a result as text.
struct InspectState {
    bool isShared = false;
    Profile profile;
    PointSet points;
    CrossSection wheel, rail;
    Scan scan;
    std::string text;

    void prepare() {
        profile = profileOf(wave(120));
        points = {};
        for (const KxPointXYZ& p : layers(60, 3)) {
            points.points.push_back({p.x, p.y, p.z});
        }
        points.hasZ = true;
        wheel = section([](KxProfile& p) { kxtool::appendConicalWheel(p, 0.05f); });
        rail = section([](KxProfile& p) { kxtool::appendRoundRail(p, 80); });
        scan = {};
        scan.distance = 1;
        for (int i = 0; i < 12; ++i) {
            scan.profiles.push_back(profileOf(wave(50)));
            scan.profiles.back().z = static_cast<float>(i);
        }
        text.clear();
    }

    void addTo(Digest& digest) const { digest.add(text); }
};

/// A file of the temporary folder, made before by `prepareFiles()`.
std::string path(const char* name) {
    static const testing_support::TempFiles folder;
    return folder.path(QString::fromLatin1(name)).toStdString();
}

/// Files of every kind that is read, once.
void prepareFiles() {
    static const bool isMade = [] {
        InspectState s;
        s.prepare();
        for (const auto& [name, kind] : {std::pair("in.ply", FileKind::Ply),
                                         {"in.pcd", FileKind::Pcd},
                                         {"in.xyz", FileKind::Xyz},
                                         {"in.bin", FileKind::Cloud}}) {
            writePoints(path(name), kind, s.points);
        }
        KxProfile profile;
        profile.points = wave(80);
        profile.writeToCSVFile(QString::fromStdString(path("in.csv")));
        KxProfileZSet set;
        for (int i = 0; i < 6; ++i) {
            set.profiles.append(KxProfileZ(profile));
        }
        set.writeToFile(QString::fromStdString(path("scan_7.bin")));
        return true;
    }();
    static_cast<void>(isMade);
}

template <typename Act>
Operation on(const char* name, Act act) {
    return operation<InspectState>(name, act);
}

std::string describe(const PointSet& set) {
    std::string text;
    for (const Point3& p : set.points) {
        text += shortestText(p.x) + ' ' + shortestText(p.y) + ' ' + shortestText(p.z) + '\n';
    }
    return text;
}

std::string describe(const std::vector<Point>& points) {
    std::string text;
    for (const Point& p : points) {
        text += shortestText(p.x) + ' ' + shortestText(p.y) + '\n';
    }
    return text;
}

Operation readingPoints(const char* name, const char* file, FileKind kind) {
    return on(name, [=](InspectState& s) { s.text = describe(readPoints(path(file), kind)); });
}

Operation writingPoints(const char* name, FileKind kind) {
    return on(name, [=](InspectState& s) { writePoints(path("out"), kind, s.points); });
}

} // namespace

std::vector<Operation> inspectOperations() {
    prepareFiles();
    using S = InspectState;
    return {
        readingPoints("InspectReadPly", "in.ply", FileKind::Ply),
        readingPoints("InspectReadPcd", "in.pcd", FileKind::Pcd),
        readingPoints("InspectReadXyz", "in.xyz", FileKind::Xyz),
        readingPoints("InspectReadCloud", "in.bin", FileKind::Cloud),
        writingPoints("InspectWritePly", FileKind::Ply),
        writingPoints("InspectWritePcd", FileKind::Pcd),
        writingPoints("InspectWriteXyz", FileKind::Xyz),
        writingPoints("InspectWriteCloud", FileKind::Cloud),
        on("InspectReadCsv", [](S& s) { s.text = describe(readProfile(path("in.csv")).points); }),
        on("InspectFileContents",
           [](S& s) {
               const FileContents contents = readFileContents(path("scan_7.bin"));
               s.text = std::to_string(contents.points);
               return !contents.damage;
           }),
        on("InspectRecording",
           [](S& s) {
               RecordingReader reader(path("scan_7.bin"));
               Record record;
               while (reader.next(record)) {
                   s.text += std::to_string(record.profile.points.size()) + ' ';
               }
           }),
        on("InspectWheel", [](S& s) { s.text = describe(measureWheel(s.wheel).measured); }),
        on("InspectConicity",
           [](S& s) {
               ConicityInput input;
               input.sections = {s.wheel, s.rail, s.wheel, s.rail};
               input.amplitudes = 4;
               s.text = describe(measureConicity(input).conicity);
           }),
        on("InspectPose",
           [](S& s) {
               CalibrationTask task;
               task.side = SensorSide::LargerY;
               s.text = measurePoses({{"wave", s.profile}}, task).profiles[0].fault;
           }),
        on("InspectScan",
           [](S& s) {
               s.text = std::to_string(readScan(path("scan_7.bin"), {1, 2}).profiles.size());
           }),
        on("InspectPatches",
           [](S& s) {
               const HeightMap map = makeHeightMap(s.scan, {});
               const PatchResult found = findPatches(map);
               s.text = std::to_string(map.columns) + ' ' + std::to_string(found.patches.size());
           }),
        on("InspectGrid", [](S& s) { s.text = std::to_string(measureGrid(path("scan_7.bin"), {}).heights); }),
    };
}

} // namespace faults
