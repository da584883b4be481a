// Writes the recording of one sensor.
#pragma once

#include "simulator/parameters.h"
#include "simulator/sensor.h"

#include <KxMath/KxProfileZ.h>

#include <QtCore/QFile>

#include <deque>
#include <vector>

namespace kxsim {

/// Where a wheel is in a recording, as numbers of records from 1 on.
struct WheelRecords {
    int first = 0; ///< 0 when the wheel is not in the recording
    int last = 0;
};

/// Keeps the profiles that show something of the train, and a bounded number of profiles before and after those: a
/// sensor with a trigger.
class Recorder {
public:
    Recorder(const QString& fileName, const Parameters& parameters);

    bool open();
    void add(KxMath::KxProfile& profile, double z, const View& view);
    /// @return false when the file could not be written completely
    bool close();

    const std::vector<WheelRecords>& wheels() const { return wheelRecords_; }
    int records() const { return written_; }

private:
    void write(KxMath::KxProfileZ& record);

    QFile file_;
    const RecordKind kind_;
    const int idleProfiles_;
    std::deque<KxMath::KxProfileZ> waiting_; ///< profiles without the train, which may turn out to be just before it
    int idleLeft_ = 0; ///< how many of them are still wanted after the train
    int written_ = 0;
    bool isComplete_ = true;
    std::vector<WheelRecords> wheelRecords_; ///< by wheel pair
};

} // namespace kxsim
