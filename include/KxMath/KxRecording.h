// Recordings of profile sensors: what their names say, and their records one after the other.
#pragma once

#include "KxMathExport.h"
#include "KxProfileZ.h"

#include <QtCore/QString>

class QFile;

namespace KxMath {

/// The first byte of a record in a file, which names its kind.
enum KxRecordKind : int {
    KxNoRecord = 0, ///< no whole record begins there
    KxSectionXY = 2, ///< a 2-D cloud section
    KxSectionXYZ = 3, ///< a 3-D cloud section
    KxSectionXYZRGB = 4, ///< a 3-D cloud section with colours
    KxProfileRecord = 5, ///< a profile with its position
};

/// Reads the next record of a recording, which may be a profile record or a 2-D cloud section. The points that
/// `profile` held are removed first; a cloud section sets `z` to NaN. The range of `profile` is unknown afterwards.
/// The count in a file is not trusted: memory is allocated only for bytes that are present.
/// @return KxProfileRecord or KxSectionXY, the kind that was read
/// @return KxNoRecord when no whole record of these kinds begins at the position of `file`, also at its end; the
///         position is then that before the call
KXMATH_EXPORT KxRecordKind KxReadRecord(QFile& file, KxProfileZ& profile);

/// A recording as its file name describes it: PREFIX_SERIAL.bin.
struct KXMATH_EXPORT KxRecordingName {
    QString base; ///< the file name without every ".bin" in it
    int serial = 0; ///< serial number of the sensor, from the first '_' on; 0 when no number stands there

    /// @param fileName the name of the recording, without a folder
    explicit KxRecordingName(const QString& fileName);

    /// Where the wheel detection puts the wheel files: a folder beside the recording, relative to the current one.
    QString directory() const;

    /// The file of one profile of one wheel in that folder, both counted from 1: "./BASE/01_01.bin".
    QString wheelFile(int wheel, int profile) const;
};

} // namespace KxMath
