// Profiles that carry their position along the scan axis.
#pragma once

#include "KxMathExport.h"
#include "KxProfile.h"

namespace KxMath {

/// A profile with the position `z` at which it was taken.
///
/// **Assignment appends**: both operators add the points of the other profile to those already here and return nothing.
/// Empty the target with clear() first where a copy is wanted; copy construction is a plain copy.
///
/// In a QList<KxProfileZ> the calls that assign elements are therefore forbidden: `swapItemsAt`, `removeIf`, `move`,
/// `replace`, `fill`, and sorting. `append`, `insert`, `removeAt` and element access are safe.
class KXMATH_EXPORT KxProfileZ : public KxProfile {
public:
    float z; ///< position along the scan axis, NaN when none is set

    /// An empty profile without a position.
    KxProfileZ();
    /// An empty profile at `z`.
    KxProfileZ(float z);
    /// A profile at `z` with the `count` points of a sensor buffer, see KxProfile::copyFromXYPointsBuffer().
    KxProfileZ(float z, float* buffer, unsigned short count);
    KxProfileZ(const KxProfileZ& other);
    /// The points of `other`, without a position.
    KxProfileZ(const KxProfile& other);
    ~KxProfileZ();

    /// Deliberately appends the points of `other` to those here, then takes its `z`.
    void operator=(const KxProfileZ& other);
    /// Deliberately appends the points of `other` to those here, then sets `z` to NaN.
    void operator=(const KxProfile& other);

    /// Drops the points and sets `z` to NaN. The range is not touched.
    void clear();

    /// Writes one profile record at the position of `file`: the marker 5, the count in 2 bytes, `z`, then x and y of
    /// each point, all little-endian. The count is deliberately written modulo 65536, while every point is written.
    /// Does not open, flush or close the file.
    /// @return false when a write was short; what was written stays
    bool writeToFile(QFile& file);
    /// Writes a file with one record, replacing an existing one.
    /// @return false when the file could not be opened or when not all data reached it
    bool writeToFile(QString fileName);

    /// Reads one profile record at the position of `file`. The points are dropped and `z` set to NaN first; the range
    /// is not touched. Memory follows the bytes that are there.
    /// @return the number of points read
    /// @return -1 for another marker or a record cut short; the position is then that before the call, and what was
    ///         read before the cut stays in the profile
    int readFromFile(QFile& file);
    /// Reads the first record of a file.
    /// @return as above, also -1 when the file could not be opened
    int readFromFile(QString fileName);
};

} // namespace KxMath

// Without this QList would move elements by assignment, which appends.
Q_DECLARE_TYPEINFO(KxMath::KxProfileZ, Q_RELOCATABLE_TYPE);
