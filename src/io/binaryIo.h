// Little-endian fields and records over QFile.
#pragma once

#include "lists/checked.h"
#include "lists/unfilledList.h"

#include <QtCore/QFile>
#include <QtCore/QList>
#include <QtCore/QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace KxMath::detail {

/// Reads up to `size` bytes and returns how many arrived; only the end of the data or an error makes them fewer.
qint64 readBytes(QFile& file, char* data, qint64 size);

/// Writes `size` bytes. @return true when all were taken
bool writeBytes(QFile& file, const char* data, qint64 size);

/// Opens a file for reading. Like all functions here it makes Qt print nothing, whatever the device or its name.
/// @return true when it is open
bool openForReading(QFile& file);

/// Opens a file for writing, replacing an existing one. @return true when it is open
bool openForWriting(QFile& file);

/// Closes a file that was written. @return true when no data were lost, those buffered until now included
bool closeWritten(QFile& file);

/// Calls the reader with the position remembered: on -1 the device is put back to that position.
template <typename Read>
int readOrRewind(QFile& file, Read read) {
    const qint64 start = file.pos();
    const int result = read();
    if (result < 0 && file.isOpen() && !file.isSequential()) {
        file.seek(start);
    }
    return result;
}

/// Reads one unsigned integer. @return false when bytes were missing
template <typename Unsigned>
bool readUnsigned(QFile& file, Unsigned& value) {
    std::array<char, sizeof(Unsigned)> bytes;
    if (readBytes(file, bytes.data(), sizeof(Unsigned)) != static_cast<qint64>(sizeof(Unsigned))) {
        return false;
    }
    value = qFromLittleEndian<Unsigned>(bytes.data());
    return true;
}

template <typename Unsigned>
bool writeUnsigned(QFile& file, Unsigned value) {
    std::array<char, sizeof(Unsigned)> bytes;
    qToLittleEndian(value, bytes.data());
    return writeBytes(file, bytes.data(), sizeof(Unsigned));
}

/// Turns records of 32-bit fields between little-endian and the host's order, in place.
inline void swapFieldsUnlessLittleEndian([[maybe_unused]] char* data, [[maybe_unused]] qint64 size) {
    if constexpr (Q_BYTE_ORDER != Q_LITTLE_ENDIAN) {
        for (qint64 at = 0; at + 4 <= size; at += 4) {
            std::swap(data[at], data[at + 3]);
            std::swap(data[at + 1], data[at + 2]);
        }
    }
}

/// Reads `claimed` records of 32-bit fields into `records`, calling `visit` with the first record and the number of
/// each block that arrives; what the list held before is lost. Memory follows the bytes that are there, whatever is
/// claimed. Only below kFewRecords it follows the claim, since asking for the size takes longer than reading them.
/// @return true when all claimed records were complete
template <typename Source, typename Record, typename Visit>
bool readRecords(Source& file, quint32 claimed, QList<Record>& records, Visit visit) {
    constexpr qint64 kRecordSize = sizeof(Record);
    constexpr qint64 kBlock = 262144 / kRecordSize; // stays in the cache until it is visited
    constexpr qint64 kFewRecords = 16384 / kRecordSize;
    const auto available = [&] { return claimed <= kFewRecords ? kFewRecords : file.bytesAvailable() / kRecordSize; };
    records = QList<Record>(); // releases its memory before as much is taken again
    UnfilledList<Record> list(std::min<qint64>(claimed, available() + 1)); // one more: to notice the end
    qint64 missing = claimed;
    for (bool isShort = false; missing > 0 && !isShort;) {
        const qint64 wanted = std::min({missing, kBlock, std::max<qint64>(available(), 1)});
        Record* const first = list.extend(wanted);
        char* const data = reinterpret_cast<char*>(first);
        const qint64 arrived = readBytes(file, data, wanted * kRecordSize) / kRecordSize;
        list.drop(wanted - arrived);
        swapFieldsUnlessLittleEndian(data, arrived * kRecordSize);
        visit(static_cast<const Record*>(first), arrived);
        missing -= arrived;
        isShort = arrived < wanted;
    }
    records = list.take();
    if (missing > 0 && claimed <= kFewRecords) {
        records = copyOf(records.constData(),
                         records.size()); // in the other case the capacity follows the bytes that are there
    }
    return missing == 0;
}

/// Writes all records of 32-bit fields. @return false when a write was short; what was written stays
template <typename Target, typename Record>
bool writeRecords(Target& file, const QList<Record>& records) {
    constexpr qint64 kRecordSize = sizeof(Record);
    const char* const data = reinterpret_cast<const char*>(records.constData());
    const qint64 size = records.size() * kRecordSize;
    if constexpr (Q_BYTE_ORDER == Q_LITTLE_ENDIAN) {
        return size == 0 || writeBytes(file, data, size);
    } else {
        QByteArray swapped(data, size);
        swapFieldsUnlessLittleEndian(swapped.data(), size);
        return size == 0 || writeBytes(file, swapped.constData(), size);
    }
}

} // namespace KxMath::detail
