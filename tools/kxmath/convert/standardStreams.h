// The standard input and output as files that are read and written as a whole.
#pragma once

#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/interruption.h"

#include <KxInspect/Error.h>

#include <QtCore/QFile>
#include <QtCore/QString>

#include <array>
#include <optional>

namespace kxtool {

inline bool isStream(const QString& name) {
    return name == QLatin1String("-");
}

/// A folder for what is read from or written to a stream, and goes with it. Making and removing it take no memory.
class Scratch {
public:
    Scratch();
    ~Scratch();
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    QString path(const char* name) const { return QFile::decodeName(folder_.data()) + QLatin1Char('/') + name; }

private:
    static constexpr std::size_t kLongest = 1000;

    std::array<char, kLongest> folder_{};
};

/// Copies the standard input into a file. Throws a CommandError (BadInput) when that fails or takes more than 1 GiB.
void copyStandardInput(const QString& path);

/// Copies a file to the standard output. Throws a CommandError (OutputFailed).
void copyToStandardOutput(const QString& path);

/// Calls `work(path)` with the path of a scratch file instead of "-", about which errors are then.
template <typename Work>
auto onFile(const QString& name, const char* stream, const QString& scratch, Work work) {
    if (!isStream(name)) {
        return work(toBytes(name));
    }
    try {
        return work(toBytes(scratch));
    } catch (const KxInspect::Error& error) {
        throw KxInspect::Error(error.kind(), {stream, {}, {}}, error.reason(), error.place());
    }
}

/// Calls `write(path)` with the path of a file, or of one that is copied to the standard output for "-".
template <typename Write>
void writeFileOrStream(const QString& name, Write write) {
    const Interruption untilWritten; // else a signal would leave what is written beside the file
    std::optional<Scratch> scratch;
    const QString copy = isStream(name) ? scratch.emplace().path("out") : QString();
    onFile(name, "the standard output", copy, write);
    if (isStream(name)) {
        copyToStandardOutput(copy);
    }
    throwIfInterrupted();
}

} // namespace kxtool
