// Profiles in files: records with a position and sections without one.
#pragma once

#include "KxMath/KxProfileZ.h"
#include "KxMath/KxRecording.h"

#include "io/binaryIo.h"

#include <array>
#include <bit>

namespace KxMath::detail {

inline constexpr char kSectionMarker = KxSectionXY;
inline constexpr char kRecordMarker = KxProfileRecord;
inline constexpr qint64 kSectionHeadSize = 3; // marker and count
inline constexpr qint64 kRecordHeadSize = 7; // marker, count and position

using RecordHead = std::array<char, kRecordHeadSize>;

inline quint16 countIn(const RecordHead& head) {
    return qFromLittleEndian<quint16>(head.data() + 1);
}

inline RecordHead headOf(const KxProfileZ& profile) {
    RecordHead head{kRecordMarker};
    qToLittleEndian(static_cast<quint16>(profile.points.size()), head.data() + 1); // deliberately modulo 65536
    qToLittleEndian(std::bit_cast<quint32>(profile.z), head.data() + kSectionHeadSize);
    return head;
}

/// Writes a record to a file or to blocks of one. @return false when a write was short; what was written stays
template <typename Target>
bool writeRecord(Target& target, const KxProfileZ& profile) {
    const RecordHead head = headOf(profile);
    return writeBytes(target, head.data(), kRecordHeadSize) && writeRecords(target, profile.points);
}

} // namespace KxMath::detail
