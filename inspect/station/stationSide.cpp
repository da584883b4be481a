// What the recordings of one sensor show.
#include "inspect/station/stationSide.h"

#include "inspect/base/paths.h"
#include "inspect/fitting/median.h"
#include "inspect/recordings/recordStream.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace KxInspect::detail {

namespace {

/// Calls use(record number, profile) for each record.
template <typename Use>
void forEachRecord(const std::string& path, const char* step, const Progress& progress, Use use) {
    constexpr int kRecordsPerReport = 256;
    RecordStream stream({"recording", path, {}});
    KxMath::KxProfileZ record;
    while (stream.next(record) != KxMath::KxNoRecord) {
        use(stream.records(), record);
        if (progress && stream.records() % kRecordsPerReport == 0) {
            progress(step + (' ' + shown(path)),
                     static_cast<double>(stream.position()) / static_cast<double>(stream.size()));
        }
    }
}

QString runsText(const std::vector<RecordRun>& runs) {
    constexpr std::size_t kMost = 12;
    QStringList texts;
    for (std::size_t i = 0; i < std::min(runs.size(), kMost); ++i) {
        texts.append(QStringLiteral("%1-%2").arg(runs[i].first).arg(runs[i].last));
    }
    return texts.join(QStringLiteral(", ")) + (runs.size() > kMost ? QStringLiteral(", ...") : QString());
}

QString wrongCount(const SideRecording& recording, const char* what, const std::vector<RecordRun>& runs) {
    return QStringLiteral("recording '%1' shows %2 wheels, but %3 distances were given: %4 are in records %5")
        .arg(toQt(recording.path))
        .arg(runs.size())
        .arg(recording.wheels)
        .arg(QLatin1String(what), runsText(runs));
}

QString findFacesIn(SideRecording& recording) {
    if (recording.parts.empty()) {
        return QStringLiteral("recording '%1': none of its %2 records shows a surface of %3 mm with 5 points: there is "
                              "nothing in view, or its points are too few")
            .arg(toQt(recording.path))
            .arg(recording.records)
            .arg(kPartLength);
    }
    recording.faces = findBackFaces(recording.parts, recording.wheels);
    recording.parts = {};
    if (!recording.faces) {
        return QStringLiteral("recording '%1' shows no wheels: nothing straight comes and goes in its %2 records, "
                              "nearest to the sensor")
            .arg(toQt(recording.path))
            .arg(recording.records);
    }
    const std::vector<RecordRun>& wheels = recording.faces->runs.wheels;
    return wheels.size() == recording.wheels ? QString() : wrongCount(recording, "back faces", wheels);
}

/// The records of each wheel, with half as many before and behind: the flange is in view longer than the face.
std::vector<RecordRun> widened(const std::vector<RecordRun>& runs, int records) {
    std::vector<RecordRun> wide;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const int more = runs[i].length() / 2;
        const int from = i > 0 ? (runs[i - 1].last + runs[i].first) / 2 + 1 : 1;
        const int to = i + 1 < runs.size() ? (runs[i].last + runs[i + 1].first) / 2 : records;
        wide.push_back({std::max(from, runs[i].first - more), std::min(to, runs[i].last + more)});
    }
    return wide;
}

void readWheels(StationSide& side, const SideRecording& recording, const Progress& progress) {
    const std::vector<RecordRun>& faces = recording.faces->runs.wheels;
    const std::vector<RecordRun> wide = widened(faces, recording.records);
    const std::size_t before = side.wheels.size();
    for (std::size_t i = 0; i < faces.size(); ++i) {
        WheelRecords wheel;
        wheel.first = wide[i].first;
        wheel.face = faces[i];
        side.wheels.push_back(std::move(wheel));
    }
    std::size_t at = 0;
    forEachRecord(recording.path, "reading wheels of", progress, [&](int number, KxMath::KxProfileZ& record) {
        while (at < wide.size() && number > wide[at].last) {
            ++at;
        }
        if (at < wide.size() && number >= wide[at].first) {
            side.wheels[before + at].profiles.push_back(std::exchange(record.points, {}));
        }
    });
}

/// The distance of each face in the direction that all have in common.
void placeFaces(StationSide& side) {
    for (WheelRecords& wheel : side.wheels) {
        std::vector<StraightPart> parts;
        for (int record = wheel.face.first; record <= wheel.face.last; ++record) {
            addStraightParts(wheel.profiles[static_cast<std::size_t>(record - wheel.first)], record, parts);
        }
        std::vector<double> distances;
        for (const StraightPart& part : parts) {
            constexpr double kMostTurn = 3.0; // as in the search for faces
            const double distance = side.face.distanceOf(static_cast<double>(part.x), static_cast<double>(part.y));
            if (static_cast<double>(part.deviation) <= side.limit &&
                std::abs(static_cast<double>(part.degrees) - side.face.degrees) <= kMostTurn &&
                std::abs(distance - side.face.away) <= kMostPlay) {
                distances.push_back(distance);
            }
        }
        wheel.away = median(distances, side.face.away);
    }
}

/// The jump between neighbouring points of faces that only one in a hundred exceeds.
double usualJump(const StationSide& side) {
    std::vector<float> jumps;
    for (const WheelRecords& wheel : side.wheels) {
        const auto isOnFace = [&](const KxMath::KxPointXY& p) {
            return std::abs(side.face.distanceOf(static_cast<double>(p.x), static_cast<double>(p.y)) - wheel.away) <=
                   2.0 * side.limit;
        };
        for (const PointList& profile : wheel.profiles) {
            for (qsizetype i = 1; i < profile.size(); ++i) {
                if (isOnFace(profile[i - 1]) && isOnFace(profile[i])) {
                    jumps.push_back(std::abs(profile[i].y - profile[i - 1].y));
                }
            }
        }
    }
    if (jumps.empty()) {
        return 0.0;
    }
    const auto at = jumps.begin() + static_cast<std::ptrdiff_t>(jumps.size() - 1 - jumps.size() / 100);
    std::nth_element(jumps.begin(), at, jumps.end());
    return static_cast<double>(*at);
}

void clean(const WheelDetection& detection, PointList& points) {
    KxMath::KxProfile profile;
    profile.points.swap(points);
    profile.removeNoise(detection.noiseWindow, detection.maxJumps, detection.maxJump, 0.0f);
    points.swap(profile.points);
}

/// Points below the level line in each record.
std::vector<int> countBelow(const StationSide& side, const SideRecording& recording, const Progress& progress) {
    std::vector<int> counts;
    const KxMath::KxLine level = side.lines->level;
    forEachRecord(recording.path, "counting points in", progress, [&](int, KxMath::KxProfileZ& record) {
        clean(side.detection, record.points);
        counts.push_back(static_cast<int>(
            std::count_if(record.points.cbegin(), record.points.cend(),
                          [&](const KxMath::KxPointXY& p) { return level.k * p.x + level.b > p.y; }))); // NaN: false
    });
    return counts;
}

std::vector<RecordRun> runsAbove(const std::vector<int>& counts, int threshold) {
    std::vector<RecordRun> runs; // as the detection has them: one record without the wheel ends it
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const int record = static_cast<int>(i) + 1;
        if (counts[i] <= threshold) {
            continue;
        }
        if (runs.empty() || runs.back().last + 1 < record) {
            runs.push_back({record, record});
        }
        runs.back().last = record;
    }
    return runs;
}

} // namespace

QString findFaces(StationSide& side, const Progress& progress) {
    std::vector<StraightPart> all;
    for (SideRecording& recording : side.recordings) {
        forEachRecord(recording.path, "looking for wheels in", progress, [&](int number, KxMath::KxProfileZ& record) {
            side.sample.add(record.points);
            addStraightParts(record.points, number, recording.parts);
            recording.records = number;
        });
        all.insert(all.end(), recording.parts.begin(), recording.parts.end());
    }
    std::vector<double> degrees;
    std::vector<double> away;
    for (SideRecording& recording : side.recordings) {
        if (QString fault = findFacesIn(recording); !fault.isEmpty()) {
            return fault;
        }
        const BackFaces& faces = *recording.faces;
        degrees.insert(degrees.end(), faces.degrees.begin(), faces.degrees.end());
        away.insert(away.end(), faces.away.begin(), faces.away.end());
    }
    side.face = {median(degrees), median(away)};
    side.limit = straightLimit(all, side.face.degrees);
    for (const SideRecording& recording : side.recordings) {
        const FaceLine& line = recording.faces->line;
        if (std::abs(line.degrees - side.face.degrees) > 3.0 || std::abs(line.away - side.face.away) > kMostPlay) {
            return QStringLiteral("recording '%1' shows back faces at %2 degrees, %3 mm from the sensor, others of the "
                                  "same sensor at %4 degrees, %5 mm: the sensor was moved between them")
                .arg(toQt(recording.path), QString::number(line.degrees, 'f', 1), QString::number(line.away, 'f', 1),
                     QString::number(side.face.degrees, 'f', 1), QString::number(side.face.away, 'f', 1));
        }
    }
    return {};
}

QString findSensorLines(StationSide& side, const Progress& progress) {
    for (const SideRecording& recording : side.recordings) {
        readWheels(side, recording, progress);
    }
    placeFaces(side);
    // Twice the usual jump lets a window pass in which two jumps add up.
    const double jump = 2.0 * usualJump(side);
    side.detection.maxJump = std::max(side.detection.maxJump, static_cast<float>(std::ceil(10.0 * jump) / 10.0));
    for (WheelRecords& wheel : side.wheels) {
        if (!fitFace(side.face, 2.0 * side.limit, wheel)) {
            return QStringLiteral("the wheel in records %1 to %2 of the sensor %3 has fewer than 10 points on its back "
                                  "face")
                .arg(wheel.face.first)
                .arg(wheel.face.last)
                .arg(side.serial);
        }
        for (PointList& profile : wheel.profiles) {
            clean(side.detection, profile);
        }
    }
    side.lines = findLines(side.face, side.wheels);
    return side.lines ? QString()
                      : QStringLiteral("sensor %1: no level line keeps the first half of the points, which a pass is "
                                       "measured with, on the back faces of all wheels: the sensor sees too little of "
                                       "them, or in another order")
                            .arg(side.serial);
}

QString findThresholds(StationSide& side, const Progress& progress) {
    std::vector<std::vector<int>> counts;
    int fewest = 0; // points of the profile with the most, of all wheels the least
    for (const SideRecording& recording : side.recordings) {
        counts.push_back(countBelow(side, recording, progress));
        for (const RecordRun& run : recording.faces->runs.wheels) {
            const auto begin = counts.back().begin();
            const int most = *std::max_element(begin + run.first - 1, begin + run.last);
            fewest = fewest == 0 ? most : std::min(fewest, most);
        }
    }
    // Halfway between a single stray point and the fullest profile of a wheel, as quotients go.
    side.detection.minPoints = static_cast<int>(std::lround(std::sqrt(static_cast<double>(fewest))));
    for (std::size_t i = 0; i < side.recordings.size(); ++i) {
        const RunDivision runs = divideRuns(runsAbove(counts[i], side.detection.minPoints), side.recordings[i].wheels);
        if (runs.wheels.size() != side.recordings[i].wheels) {
            return wrongCount(side.recordings[i], "points below the level line", runs.wheels);
        }
        side.shortestWheel =
            side.shortestWheel == 0 ? runs.shortestWheel : std::min(side.shortestWheel, runs.shortestWheel);
        side.longestOther = std::max(side.longestOther, runs.longestOther);
    }
    return {};
}

} // namespace KxInspect::detail
