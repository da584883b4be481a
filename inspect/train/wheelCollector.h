// The wheels of a recording as profiles in memory.
#pragma once

#include "inspect/train/rawSample.h"

#include <KxMath/KxProfileZ.h>
#include <KxMath/KxRecording.h>
#include <KxMath/KxWheelDetection.h>

#include <QtCore/QList>

#include <limits>
#include <vector>

namespace KxInspect::detail {

using PointList = QList<KxMath::KxPointXY>;

/// A wheel as detection has found it.
struct FoundWheel {
    int firstRecord = 0; ///< from 1 on
    std::vector<PointList> profiles; ///< cleaned
    std::vector<float> places; ///< z of the profiles

    int lastRecord() const { return firstRecord + static_cast<int>(profiles.size()) - 1; }
};

/// Where a wheel starts; wheels that turned out too short for one included, whose number the next one gets.
struct WheelStart {
    int wheel;
    int record;
};

/// How the points of a recording lie to the level line.
struct LevelCount {
    qint64 recorded = 0; ///< all
    qint64 points = 0; ///< those that are finite
    qint64 withoutNoise = 0; ///< of them left by the filter of noise
    qint64 cleaned = 0; ///< of those left when straight parts were removed, in the mode that does so
    qint64 below = 0; ///< of them below the line
    float lowest = std::numeric_limits<float>::infinity(); ///< y, mm
    float highest = -std::numeric_limits<float>::infinity();
};

/// Finds the wheels in the records of a recording, one after the other, and keeps the profiles of these only.
class WheelCollector {
public:
    WheelCollector(const KxMath::KxWheelDetectionSettings& settings, int mode)
        : detector_(settings, mode), level_(settings.level) {}

    /// Looks at the next record. Its points may be taken.
    void add(KxMath::KxRecordKind kind, KxMath::KxProfileZ& record);

    const std::vector<FoundWheel>& wheels() const { return wheels_; }
    const std::vector<WheelStart>& starts() const { return starts_; }
    int cloudSections() const { return cloudSections_; }
    int profileRecords() const { return profileRecords_; }
    const LevelCount& levelCount() const { return levelCount_; } ///< of the points as they were recorded
    int longestDiscarded() const { return longestDiscarded_; } ///< profiles of the longest run that was too short
    const RawSample& sample() const { return sample_; }

    /// True when the records tell where along the train they were taken: all have a z, none is below the one before,
    /// and the last is above the first.
    bool hasPlaces() const { return cloudSections_ == 0 && isSorted_ && firstPlace_ < lastPlace_; }

private:
    void notePlace(float z);
    void countPoints(const PointList& points);

    KxMath::KxWheelDetector detector_;
    KxMath::KxLine level_;
    LevelCount levelCount_;
    RawSample sample_;
    int longestDiscarded_ = 0;
    std::vector<FoundWheel> wheels_;
    std::vector<WheelStart> starts_;
    int cloudSections_ = 0;
    int profileRecords_ = 0;
    bool isSorted_ = true;
    float firstPlace_ = 0.0f;
    float lastPlace_ = 0.0f;
};

} // namespace KxInspect::detail
