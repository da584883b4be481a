// Writes the recording of one sensor.
#include "simulator/recorder.h"

#include "simulator/axles.h"

namespace kxsim {

Recorder::Recorder(const QString& fileName, const Parameters& p)
    : whole_({{}, fileName.toStdString(), {}}), file_(QString::fromStdString(whole_.path())), kind_(p.records),
      idleProfiles_(p.idleProfiles), wheelRecords_(axlesOf(p).size()) {
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        whole_.fail(file_.errorString().toStdString());
    }
}

void Recorder::write(KxMath::KxProfileZ& record) {
    ++written_;
    const bool isWritten = kind_ == RecordKind::Profile ? record.writeToFile(file_)
                                                        : record.KxPointCloud<KxMath::KxPointXY>::writeToFile(file_);
    if (!isWritten) {
        whole_.fail(file_.errorString().toStdString());
    }
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

void Recorder::finish() {
    const qint64 size = file_.pos();
    if (!file_.flush()) {
        whole_.fail(file_.errorString().toStdString());
    }
    file_.close();
    whole_.commit(static_cast<std::uint64_t>(size));
}

} // namespace kxsim
