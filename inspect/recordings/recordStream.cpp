// The records of a recording, one after the other, as profiles of KxMath.
#include "inspect/recordings/recordStream.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/recordings/brokenRecord.h"

#include <QtCore/QFileInfo>

namespace KxInspect::detail {

RecordStream::RecordStream(const ErrorSource& source) : source_(source) {
    const QtPath where(source.file);
    const QFileInfo info(where.text());
    file_.setFileName(where.text());
    if (!info.exists()) {
        fail(ErrorKind::NotFound, source_, QStringLiteral("does not exist"));
    }
    if (!info.isFile()) {
        fail(ErrorKind::Unsuitable, source_, QStringLiteral("is not a file"));
    }
    if (!file_.open(QIODevice::ReadOnly)) {
        fail(ErrorKind::Unreadable, source_, QStringLiteral("cannot be read: ") + file_.errorString());
    }
    size_ = file_.size();
    if (size_ == 0) {
        fail(ErrorKind::Unsuitable, source_, QStringLiteral("is empty"));
    }
}

KxMath::KxRecordKind RecordStream::next(KxMath::KxProfileZ& profile) {
    if (file_.pos() >= size_) {
        return KxMath::KxNoRecord;
    }
    const KxMath::KxRecordKind kind = KxMath::KxReadRecord(file_, profile);
    if (kind == KxMath::KxNoRecord) {
        throw brokenRecord(file_, source_, records_, "\2\5");
    }
    ++records_;
    return kind;
}

} // namespace KxInspect::detail
