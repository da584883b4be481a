// Writes the recording of one sensor.
#pragma once

#include "simulator/parameters.h"
#include "simulator/sensor.h"

#include <KxInspect/AtomicFile.h>
#include <KxMath/KxProfileZ.h>

#include <QtCore/QFile>

#include <deque>
#include <vector>

namespace kxsim {

/// The records of a wheel in a recording, counted from 1.
struct WheelRecords {
    int first = 0; ///< 0 when the wheel is not in the recording
    int last = 0;
};

/// Keeps the profiles that show part of the train, and a bounded number of profiles before and after them, as a
/// triggered sensor does.
class Recorder {
public:
    /// All but the queries throw a KxInspect::Error when the file cannot be written.
    Recorder(const QString& fileName, const Parameters& parameters);

    void add(KxMath::KxProfile& profile, double z, const View& view);
    /// Puts the recording in place, which is not there before.
    void finish();

    const std::vector<WheelRecords>& wheels() const { return wheelRecords_; }
    int records() const { return written_; }

private:
    void write(KxMath::KxProfileZ& record);

    KxInspect::AtomicFile whole_;
    QFile file_;
    const RecordKind kind_;
    const int idleProfiles_;
    std::deque<KxMath::KxProfileZ> waiting_; ///< profiles without the train, which may turn out to be just before it
    int idleLeft_ = 0; ///< how many of them are still to be recorded after the train
    int written_ = 0;
    std::vector<WheelRecords> wheelRecords_; ///< by wheel pair
};

} // namespace kxsim
