// Writes the recording of one sensor.
#include "simulator/recorder.h"

namespace kxsim {

Recorder::Recorder(const QString& fileName, const Parameters& p)
    : file_(fileName), kind_(p.records), idleProfiles_(p.idleProfiles),
      wheelRecords_(static_cast<std::size_t>(p.cars * p.bogies * p.axles)) {}

bool Recorder::open() {
    return file_.open(QIODevice::WriteOnly | QIODevice::Truncate);
}

void Recorder::write(KxMath::KxProfileZ& record) {
    ++written_;
    const bool isWritten = kind_ == RecordKind::Profile ? record.writeToFile(file_)
                                                        : record.KxPointCloud<KxMath::KxPointXY>::writeToFile(file_);
    isComplete_ = isComplete_ && isWritten;
}

void Recorder::add(KxMath::KxProfile& profile, double z, const View& view) {
    KxMath::KxProfileZ record(profile);
    record.z = static_cast<float>(z);
    if (view.hasTrain) {
        for (KxMath::KxProfileZ& before : waiting_) {
            write(before);
        }
        waiting_.clear();
        idleLeft_ = idleProfiles_;
        write(record);
        if (view.pair > 0) {
            WheelRecords& wheel = wheelRecords_[static_cast<std::size_t>(view.pair - 1)];
            wheel.first = wheel.first == 0 ? written_ : wheel.first;
            wheel.last = written_;
        }
    } else if (idleLeft_ > 0) {
        --idleLeft_;
        write(record);
    } else {
        waiting_.push_back(record);
        if (waiting_.size() > static_cast<std::size_t>(idleProfiles_)) {
            waiting_.pop_front();
        }
    }
}

bool Recorder::close() {
    const bool isFlushed = file_.flush();
    file_.close();
    return isComplete_ && isFlushed && file_.error() == QFileDevice::NoError;
}

} // namespace kxsim
