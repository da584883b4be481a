// The records of a recording, one after the other, as profiles of KxMath.
#include "inspect/recordings/recordStream.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"

#include <QtCore/QFileInfo>

namespace KxInspect::detail {

namespace {

/// Says what is wrong where no whole record begins.
[[noreturn]] void failAtRecord(QFile& file, const ErrorSource& source, int recordsBefore) {
    const qint64 at = file.pos();
    const ErrorPlace place{at, recordsBefore + 1, {}, {}};
    const QString where = QStringLiteral("is damaged at byte %1, after %2 whole records: ").arg(at).arg(recordsBefore);
    char first = 0;
    if (!file.getChar(&first)) {
        fail(ErrorKind::Unreadable, source, where + file.errorString(), place);
    }
    if (first == KxMath::KxSectionXY || first == KxMath::KxProfileRecord) {
        const QString what =
            QStringLiteral("the record that begins there is cut short by the end of the file at byte %1");
        fail(ErrorKind::Damaged, source, where + what.arg(file.size()), place);
    }
    const QString what = QStringLiteral("no record begins with 0x%1 (2 or 5 does)");
    fail(ErrorKind::Damaged, source, where + what.arg(static_cast<unsigned char>(first), 2, 16, QLatin1Char('0')),
         place);
}

} // namespace

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
        failAtRecord(file_, source_, records_);
    }
    ++records_;
    return kind;
}

} // namespace KxInspect::detail
