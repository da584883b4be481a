// Writes the recording of one sensor.
#include "simulator/recorder.h"

namespace kxsim {

Recorder::Recorder(const QString& fileName, const Parameters& p)
    : file(fileName), kind(p.records), idleProfiles(p.idleProfiles),
      wheelRecords(static_cast<std::size_t>(p.cars * p.bogies * p.axles)) {}

bool Recorder::open() {
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate);
}

void Recorder::write(KxMath::KxProfileZ& record) {
    ++written;
    const bool isWritten = kind == RecordKind::Profile ? record.writeToFile(file)
                                                       : record.KxPointCloud<KxMath::KxPointXY>::writeToFile(file);
    isComplete = isComplete && isWritten;
}

void Recorder::add(KxMath::KxProfile& profile, double z, const View& view) {
    KxMath::KxProfileZ record(profile);
    record.z = static_cast<float>(z);
    if (view.hasTrain) {
        for (KxMath::KxProfileZ& before : waiting) {
            write(before);
        }
        waiting.clear();
        idleLeft = idleProfiles;
        write(record);
        if (view.pair > 0) {
            WheelRecords& wheel = wheelRecords[static_cast<std::size_t>(view.pair - 1)];
            wheel.first = wheel.first == 0 ? written : wheel.first;
            wheel.last = written;
        }
    } else if (idleLeft > 0) {
        --idleLeft;
        write(record);
    } else {
        waiting.push_back(record);
        if (waiting.size() > static_cast<std::size_t>(idleProfiles)) {
            waiting.pop_front();
        }
    }
}

bool Recorder::close() {
    const bool isFlushed = file.flush();
    file.close();
    return isComplete && isFlushed && file.error() == QFileDevice::NoError;
}

} // namespace kxsim
