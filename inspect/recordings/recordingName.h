// What the name of a recording says, wherever the file stands.
#pragma once

#include <KxMath/KxRecording.h>

#include <QtCore/QString>

#include <string>

namespace KxInspect::detail {

/// The name of a recording and those of its files in the folder of a pass.
struct RecordingFiles {
    QString file; ///< without its folder; ".bin" is added where it is missing: the wheel folder needs another name
    KxMath::KxRecordingName parts; ///< its serial number and the names of its wheel files

    /// @param path UTF-8
    explicit RecordingFiles(const std::string& path);

    /// The text from the first '_' on, which should be the serial number.
    QString serialText() const;
    /// The file of one profile of one wheel below `folder`, both counted from 1.
    QString wheelFile(const QString& folder, int wheel, int profile) const;
};

} // namespace KxInspect::detail
