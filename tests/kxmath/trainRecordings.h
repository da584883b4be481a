// Small recordings of flat wheels, whose distances are known exactly.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QIODevice>

#include <optional>
#include <vector>

namespace tool_test {

enum class RecordKind { CloudSections, ProfileRecords };

/// One wheel as a sensor sees it: flat, `offset` above the reference line. Without one the sensor misses the wheel.
using SeenWheel = std::optional<float>;

inline constexpr float kReference = 50.0f;
inline constexpr float kBackground = 200.0f; // above the level line at 100

struct Recorder {
    RecordKind kind;
    QByteArray bytes = {};
    int moment = 0;

    void append(int records, int points, float height) {
        QDataStream out(&bytes, QIODevice::Append);
        out.setByteOrder(QDataStream::LittleEndian);
        out.setFloatingPointPrecision(QDataStream::SinglePrecision);
        for (int record = 0; record < records; ++record, ++moment) {
            const bool isProfile = kind == RecordKind::ProfileRecords;
            out << static_cast<quint8>(isProfile ? 5 : 2) << static_cast<quint16>(points);
            if (isProfile) {
                out << static_cast<float>(moment);
            }
            for (int i = 0; i < points; ++i) {
                out << static_cast<float>(i) << height;
            }
        }
    }
};

/// The recording of a train whose wheels follow each other after 30, 50, 30, 50, ... records; a wheel lasts 10 records,
/// and the one in the middle has the most points. Profile records have the number of the moment as z.
/// @param isTriggered nothing is recorded in the middle of the longer gaps; z goes on
inline QByteArray recording(const std::vector<SeenWheel>& wheels, RecordKind kind, int pointsPerProfile = 40,
                            bool isTriggered = false) {
    Recorder recorder{kind};
    recorder.append(20, 20, kBackground);
    for (size_t wheel = 0; wheel < wheels.size(); ++wheel) {
        for (int fromChosen = -4; fromChosen <= 5; ++fromChosen) {
            const int points = wheels[wheel] ? std::max(pointsPerProfile - 3 * std::abs(fromChosen), 4) : 20;
            recorder.append(1, points, wheels[wheel] ? kReference + *wheels[wheel] : kBackground);
        }
        const bool isPaused = isTriggered && wheel % 2 == 1;
        recorder.moment += isPaused ? 30 : 0;
        recorder.append(isPaused ? 10 : wheel % 2 == 0 ? 20 : 40, 20, kBackground);
    }
    return recorder.bytes;
}

/// Settings for the serial numbers 1001 and 1002, with the base distance 1360.
inline QByteArray trainSettings() {
    const QByteArray lines = "level_k=0\nlevel_b=100\nk2=0\nb2=50\nlowlevel_k=0\nlowlevel_b=10\nminPointsIn=5\n";
    return "calibrLines2=1360\nminProfsInWheel=5\n[SENSOR1]\nSN=1001\n" + lines + "[SENSOR2]\nSN=1002\n" + lines;
}

} // namespace tool_test
