// The files of a fuzzer.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <cstdint>

namespace kxfuzz {

/// A file in the folder of this run, which is removed at its end.
inline QString scratchFile(const QString& name) {
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

inline void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        file.write(bytes);
    }
}

/// Writes the bytes of an input to a scratch file. @return its path
inline QString writeScratch(const char* name, const std::uint8_t* data, size_t size) {
    QString path = scratchFile(QLatin1String(name));
    writeFile(path, QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    return path;
}

/// The files that an input holds, divided by "@@@@". Where there are fewer than `count`, the last one comes again.
inline QList<QByteArray> splitFiles(const std::uint8_t* data, size_t size, qsizetype count) {
    QByteArray rest(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QList<QByteArray> files;
    while (files.size() < count) {
        const qsizetype mark = rest.indexOf("@@@@");
        files.append(rest.left(mark));
        if (mark >= 0) {
            rest.remove(0, mark + 4);
        }
    }
    return files;
}

} // namespace kxfuzz
