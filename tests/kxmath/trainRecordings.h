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

/// The lines of a sensor, unequal on both sides. Cloud sections are recorded by the left sensor, 1001, profile records by
/// the right one, 1002.
struct SensorHeights {
    float reference, level, low, background;
};
inline constexpr SensorHeights kLeft = {50.0f, 100.0f, 10.0f, 200.0f};
inline constexpr SensorHeights kRight = {62.0f, 125.0f, 16.0f, 180.0f};

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
    const SensorHeights& heights = kind == RecordKind::CloudSections ? kLeft : kRight;
    recorder.append(20, 20, heights.background);
    for (size_t wheel = 0; wheel < wheels.size(); ++wheel) {
        for (int fromChosen = -4; fromChosen <= 5; ++fromChosen) {
            const int points = wheels[wheel] ? std::max(pointsPerProfile - 3 * std::abs(fromChosen), 4) : 20;
            recorder.append(1, points, wheels[wheel] ? heights.reference + *wheels[wheel] : heights.background);
        }
        const bool isPaused = isTriggered && wheel % 2 == 1;
        recorder.moment += isPaused ? 30 : 0;
        recorder.append(isPaused ? 10 : wheel % 2 == 0 ? 20 : 40, 20, heights.background);
    }
    return recorder.bytes;
}

/// Settings for the serial numbers 1001 and 1002, with the base distance 1360.
inline QByteArray trainSettings() {
    const auto lines = [](const SensorHeights& heights, int minPoints) {
        return "level_k=0\nlevel_b=" + QByteArray::number(double(heights.level)) +
               "\nk2=0\nb2=" + QByteArray::number(double(heights.reference)) +
               "\nlowlevel_k=0\nlowlevel_b=" + QByteArray::number(double(heights.low)) +
               "\nminPointsIn=" + QByteArray::number(minPoints) + '\n';
    };
    return "calibrLines2=1360\nminProfsInWheel=5\n[SENSOR1]\nSN=1001\n" + lines(kLeft, 5) + "[SENSOR2]\nSN=1002\n" +
           lines(kRight, 6);
}

} // namespace tool_test
