// The recording of one sensor: its name, its check, and the wheel files made from it.
#pragma once

#include "tools/kxmath/console/console.h"

#include <QtCore/QString>

#include <vector>

namespace kxtool {

/// A recording and what its name tells. Detection takes the serial number from the bare name and makes the wheel
/// directory beside the recording, which therefore is linked into the folder of the pass.
struct RecordingFile {
    QString name; ///< as the user gave it
    QString path; ///< absolute
    QString linkName; ///< the name in the folder of the pass
    QString wheelDirectory; ///< relative to the folder of the pass
    int serial = 0;
    qint64 bytes = 0;
    int cloudSections = 0;
    int profileRecords = 0;
    /// Where along the train each record was taken: the z of the records, when all have one and it rises. Else empty.
    std::vector<float> positions;

    int records() const { return cloudSections + profileRecords; }
};

/// A recording that can be opened. Throws a CommandError when it cannot, is empty, or has no serial number in its name.
RecordingFile openRecording(const QString& name);

/// Reads all records, counts them and notes their positions. Throws a CommandError with the first bad byte of a damaged
/// recording, at which detection would end in silence.
void checkRecords(RecordingFile& recording, Progress& progress);

/// The file of one profile of one wheel.
QString wheelFile(const QString& wheelDirectory, int wheel, int profile);

} // namespace kxtool
