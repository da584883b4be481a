// Tasks F1 to F10: files and buffers.
#include "tasks.h"

#include <QtCore/QFile>

using namespace KxMath;

namespace {

// F1. Read a recording record by record, and notice damage.
bool readRecording(const QString& name, QList<KxProfileZ>& profiles) {
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    while (!file.atEnd()) {
        KxProfileZ profile;
        if (KxReadRecord(file, profile) == KxNoRecord) {
            return false; // file.pos() is the first byte of the damaged record
        }
        profiles.append(profile); // a 2-D cloud section has no position: z is NaN
    }
    return true;
}

// F2. Read a scan from a file that may be damaged.
bool readScan(const QString& name, float step, KxProfileZSet& scan) {
    QList<KxProfileZ> records;
    const bool isWhole = readRecording(name, records); // F1: a set alone does not say why it is short
    scan.readFromFile(name);
    scan.setZ(0.0f, step);
    scan.calcRange();
    return isWhole;
}

// F3. Read a scan and keep the positions in the file.
bool readScanWithPositions(const QString& name, KxProfileZSet& scan) {
    QList<KxProfileZ> records;
    const bool isWhole = readRecording(name, records); // F1
    scan.profiles = records;
    scan.calcRange();
    return isWhole;
}

// F4. Store a cloud and read it again.
bool storeAndRead(KxPointCloud<KxPointXYZ>& cloud, const QString& name, KxPointCloud<KxPointXYZ>& again) {
    return cloud.writeToFile(name) && again.readFromFile(name) >= 0;
}

// F5. Append a section to a file of several clouds.
bool appendSection(const QString& name, KxProfile& profile) {
    QFile file(name);
    return profile.size() <= 65535 && file.open(QIODevice::Append) && profile.writeToFile(file);
}

// F6. Read two columns of a CSV file.
bool readCsv(const QString& name, KxProfile& profile) {
    profile.clear(); // what cannot be opened leaves the profile as it was
    return profile.readFromCSVFile(name, 0, 1) > 0;
}

// F7. Make a profile of a sensor's buffer: x, y, x, y, ...
KxProfile fromBuffer(float* buffer, unsigned short count) {
    KxProfile profile(buffer, count);
    profile.calcRange();
    return profile;
}

// F8. Export a cloud as plain floats for NumPy and viewers.
bool exportFloats(KxPointCloud<KxPointXYZ>& cloud, const QString& name) {
    return cloud.compat_writeToXYZFile(name); // np.fromfile(name, '<f4').reshape(-1, 4)[:, :3]
}

// F9. Write a profile as text.
bool writeCsv(KxProfile& profile, const QString& name) {
    return profile.writeToCSVFile(name) && QFile(name).size() > 0; // a full disk is not reported
}

// F10. Write a scan.
bool writeScan(KxProfileZSet& scan, const QString& name) {
    return scan.writeToFile(name); // with the positions, which only F3 reads
}

void writeText(const char* name, const QByteArray& text) {
    QFile file(QString::fromLatin1(name));
    expect(file.open(QIODevice::WriteOnly) && file.write(text) == text.size(), "the file is written");
}

/// Records at 1.5 and 4 and a 2-D cloud between them, 23 bytes cut off when it is to be damaged.
void tryRecordings() {
    KxProfileZ first(1.5f), last(4.0f);
    first.points = {{0, 1}, {1, 2}, {2, 4}};
    last.points = {{0, 3}, {1, 5}};
    KxProfile section;
    section.points = {{7, 8}};
    QFile file("scan.bin");
    expect(file.open(QIODevice::WriteOnly) && first.writeToFile(file) && section.writeToFile(file) &&
               last.writeToFile(file),
           "a recording is written");
    file.close();

    QList<KxProfileZ> profiles;
    expect(readRecording("scan.bin", profiles) && profiles.size() == 3, "F1: all records of a whole file");
    expect(profiles[0].z == 1.5f && std::isnan(profiles[1].z) && profiles[1].size() == 1, "F1: both kinds of record");
    profiles.clear();
    expect(file.resize(file.size() - 3) && !readRecording("scan.bin", profiles) && profiles.size() == 2, "F1: damage");

    KxProfileZSet scan;
    scan.profiles = {first, last};
    expect(writeScan(scan, "set.bin") && QFile("set.bin").size() == 2 * 7 + 5 * 8, "F10");
    expect(readScan("set.bin", 0.5f, scan) && scan.size() == 2 && scan.profiles[1].z == 0.5f && scan.maxY == 5, "F2");
    expect(readScanWithPositions("set.bin", scan) && scan.profiles[1].z == 4 && scan.maxZ == 4, "F3");
    expect(QFile::resize("set.bin", 20) && !readScan("set.bin", 0.5f, scan) && scan.isEmpty(), "F2: damage");
}

} // namespace

void tryFiles() {
    tryRecordings();

    KxPointCloud<KxPointXYZ> cloud, again;
    cloud.points = {{1, 2, 3}, {4, 5, 6}};
    expect(storeAndRead(cloud, "cloud.bin", again) && again.size() == 2 && again.points[1].z == 6, "F4");
    expect(exportFloats(cloud, "cloud.xyzf") && QFile("cloud.xyzf").size() == 32, "F8");

    KxProfile profile = sampled(3, 1.0f, [](float x) { return 2 * x; });
    expect(appendSection("sections.bin", profile) && appendSection("sections.bin", profile), "F5: sections");
    expect(QFile("sections.bin").size() == qint64{2} * (3 + 3 * 8), "F5: one after the other");

    writeText("profile.csv", "1,5;2\n2.5;3\n");
    expect(readCsv("profile.csv", profile) && profile.size() == 2 && profile.points[1].x == 2.5f, "F6");
    expect(!readCsv("missing.csv", profile) && profile.isEmpty(), "F6: no file");

    profile.points = {{1.5f, 2}};
    expect(writeCsv(profile, "written.csv") && readCsv("written.csv", profile) && profile.points[0].x == 1.5f, "F9");
    expect(!writeCsv(profile, "missing/written.csv"), "F9: no folder");

    float buffer[] = {0, 5, 1, 7};
    expect(fromBuffer(buffer, 2).maxY == 7, "F7");
}
