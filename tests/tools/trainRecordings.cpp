// Small recordings of flat wheels, whose distances are known exactly.
#include "tools/trainRecordings.h"

#include <QtCore/QFile>
#include <QtCore/QtEndian>

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace tool_test {

namespace {

constexpr int kProfilesInWheel = 10;
constexpr int kChosenProfile = 5;
constexpr int kFewestPoints = 4;
constexpr float kReference = 50.0f;
constexpr float kBackground = 200.0f; // above the level line at 100

void appendFloat(QByteArray& bytes, float value) {
    char field[4];
    qToLittleEndian(std::bit_cast<quint32>(value), field);
    bytes.append(field, sizeof(field));
}

struct Recorder {
    RecordKind kind;
    QByteArray bytes = {};
    int moment = 0;

    void append(int points, float height) {
        char count[2];
        qToLittleEndian(static_cast<quint16>(points), count);
        bytes.append(kind == RecordKind::CloudSections ? '\2' : '\5').append(count, sizeof(count));
        if (kind == RecordKind::ProfileRecords) {
            appendFloat(bytes, static_cast<float>(moment));
        }
        for (int i = 0; i < points; ++i) {
            appendFloat(bytes, static_cast<float>(i));
            appendFloat(bytes, height);
        }
        ++moment;
    }

    void appendGap(int records) {
        for (int i = 0; i < records; ++i) {
            append(20, kBackground);
        }
    }
};

} // namespace

QByteArray recording(const std::vector<SeenWheel>& wheels, RecordKind kind, int pointsPerProfile, bool isTriggered) {
    Recorder recorder{kind};
    recorder.appendGap(20);
    for (size_t wheel = 0; wheel < wheels.size(); ++wheel) {
        for (int profile = 1; profile <= kProfilesInWheel; ++profile) {
            if (wheels[wheel]) {
                const int missing = 3 * std::abs(profile - kChosenProfile);
                recorder.append(std::max(pointsPerProfile - missing, kFewestPoints), kReference + *wheels[wheel]);
            } else {
                recorder.appendGap(1);
            }
        }
        if (isTriggered && wheel % 2 == 1) {
            recorder.moment += 30;
            recorder.appendGap(10);
        } else {
            recorder.appendGap(wheel % 2 == 0 ? 20 : 40);
        }
    }
    return recorder.bytes;
}

QByteArray trainSettings() {
    return "calibrLines2=1360\n"
           "minProfsInWheel=5\n"
           "[SENSOR1]\nSN=1001\nlevel_k=0\nlevel_b=100\nk2=0\nb2=50\n"
           "lowlevel_k=0\nlowlevel_b=10\nminPointsIn=5\n"
           "[SENSOR2]\nSN=1002\nlevel_k=0\nlevel_b=100\nk2=0\nb2=50\n"
           "lowlevel_k=0\nlowlevel_b=10\nminPointsIn=5\n";
}

void writeFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        std::abort(); // the test cannot go on
    }
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace tool_test
