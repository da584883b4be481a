// kxmath convert: points from one kind of file to another.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/interruption.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/console/textOptions.h"

#include <KxInspect/Error.h>
#include <KxInspect/PointFile.h>

#include <QtCore/QDir>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace kxtool {

namespace {

using KxInspect::FileKind;

constexpr const char* kName = "convert";

const char* const kDescription =
    "Converts points from one kind of file to another. The content of IN, or else the ending of its\n"
    "name, selects its kind, the name of OUT that of OUT; --from and --to override them:\n"
    "\n"
    "  cloud     .bin .cloud          one cloud section: 2-D, 3-D or 3-D with colours, as the points are\n"
    "  profiles  .profiles .set       profile records; when written, a profile begins wherever z changes\n"
    "  csv       .csv                 text with 2, 3 or 6 columns; written: one profile, x;y with decimal comma\n"
    "  xyzf      .xyzf                x, y, z and 0 as little-endian floats, nothing else\n"
    "  xyz       .xyz .txt .asc       text with 2, 3 or 6 columns; written: x y z\n"
    "  ply       .ply                 vertices with x, y, z and colours\n"
    "  pcd       .pcd                 points with x, y, z and rgb, not compressed\n"
    "  gauge     .whl .ban .prw .prr  text of contact profile gauges, only read\n"
    "\n"
    "IN or OUT may be - for the standard input or output; --from or --to must then name its kind.\n"
    "\n"
    "Exit codes: 0 done, 2 wrong use, 3 the input is unreadable or damaged, 4 the output could not be\n"
    "written or cannot hold the points, 6 not enough memory.";

struct Conversion {
    QString in;
    QString out;
    FileKind from;
    FileKind to;
    KxInspect::TextOptions text;
};

bool isStream(const QString& name) {
    return name == QLatin1String("-");
}

/// The kind of a file: the one that the option names, otherwise the one of the content of IN or the file name's ending.
FileKind kindOf(const Options& options, const char* option, const QString& fileName, bool isRead) {
    if (options.isSet(option)) {
        QStringList names;
        for (const FileKind kind : KxInspect::kFileKinds) {
            if (isRead || kind != FileKind::Gauge) {
                names += QString::fromStdString(kindName(kind));
            }
        }
        return KxInspect::kindByName(options.oneOf(option, names).toStdString()).value();
    }
    const std::string path = toBytes(fileName);
    const bool hasContent = isRead && !isStream(fileName);
    if (const auto kind = hasContent ? KxInspect::kindOfFile(path) : KxInspect::kindByFileName(path)) {
        return *kind;
    }
    options.fail(
        QStringLiteral("the ending of '%1' names no kind, give it with --%2").arg(fileName, QLatin1String(option)));
}

std::optional<Conversion> parse(const QStringList& arguments) {
    Options options(kName, "IN OUT [options]", QLatin1String(kDescription));
    options.addArgument("IN", QStringLiteral("The file to read."));
    options.addArgument("OUT", QStringLiteral("The file to write, replaced if it exists."));
    options.addOption("from", QStringLiteral("Kind of IN."), "kind");
    options.addOption("to", QStringLiteral("Kind of OUT."), "kind");
    addTextOptions(options, true);
    if (!options.parse(arguments)) {
        return {};
    }
    const QStringList names = options.arguments("files", 2, 2);
    const Conversion conversion{names[0], names[1], kindOf(options, "from", names[0], true),
                                kindOf(options, "to", names[1], false), textOptions(options, {}, true)};
    if (!isText(conversion.from)) {
        failAsNoText(options, QStringLiteral("IN is read as"), conversion.from);
    }
    const OutputFile out(QStringLiteral("OUT"), names[1]);
    checkOutputs({&out}, isStream(names[0]) ? QStringList() : QStringList(names[0]));
    return conversion;
}

/// A folder for what is read from or written to a stream, and goes with it. Making and removing it take no memory.
class Scratch {
public:
    Scratch() {
        const QByteArray name = QFile::encodeName(QDir::tempPath()) + "/kxmath-XXXXXX";
        if (static_cast<std::size_t>(name.size()) >= folder_.size()) {
            fail(ENAMETOOLONG);
        }
        std::copy(name.cbegin(), name.cend(), folder_.begin());
        if (mkdtemp(folder_.data()) == nullptr) {
            fail(errno);
        }
    }
    ~Scratch() {
        for (const char* const name : {"/in", "/out"}) {
            std::array<char, kLongest + 8> path;
            const int length = std::snprintf(path.data(), path.size(), "%s%s", folder_.data(), name);
            if (length > 0 && static_cast<std::size_t>(length) < path.size()) {
                unlink(path.data());
            }
        }
        rmdir(folder_.data());
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    QString path(const char* name) const { return QFile::decodeName(folder_.data()) + QLatin1Char('/') + name; }

private:
    static constexpr std::size_t kLongest = 1000;

    [[noreturn]] static void fail(int why) {
        throw CommandError{OutputFailed, QStringLiteral("cannot make a temporary folder in '%1': %2")
                                             .arg(QDir::tempPath(), QString::fromLocal8Bit(std::strerror(why)))};
    }

    std::array<char, kLongest> folder_{};
};

/// Copies an open stream or file to its end. @return why that failed, empty when it did not
QString copyAll(QFile& from, QFile& to) {
    constexpr qint64 kBlock = 1 << 16;
    constexpr qint64 kMost = qint64(1) << 30;
    for (qint64 size = 0;;) {
        const QByteArray bytes = from.read(kBlock);
        size += bytes.size();
        if (from.error() != QFileDevice::NoError) {
            return from.errorString();
        }
        if (bytes.isEmpty() ? !to.flush() : to.write(bytes) != bytes.size()) {
            return to.errorString();
        }
        if (bytes.isEmpty()) {
            const bool isWhole = from.isSequential() || from.pos() == from.size();
            return isWhole ? QString() : QStringLiteral("it ends at byte %1 of %2").arg(from.pos()).arg(from.size());
        }
        if (from.isSequential() && size > kMost) {
            return QStringLiteral("it does not end within 1 GiB");
        }
    }
}

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

KxInspect::PointSet readInput(const Conversion& conversion) {
    std::optional<Scratch> scratch;
    QString copy;
    if (isStream(conversion.in)) {
        copy = scratch.emplace().path("in");
        QFile input;
        QFile file(copy);
        const bool isOpen = file.open(QIODevice::WriteOnly) && input.open(stdin, QIODevice::ReadOnly);
        if (const QString why = isOpen ? copyAll(input, file) : file.errorString(); !why.isEmpty()) {
            throw CommandError{BadInput, QStringLiteral("cannot read the standard input: ") + why};
        }
    }
    return onFile(conversion.in, "the standard input", copy, [&](const std::string& path) {
        return KxInspect::readPoints(path, conversion.from, conversion.text);
    });
}

void writeOutput(const Conversion& conversion, const KxInspect::PointSet& points) {
    std::optional<Scratch> scratch;
    const QString copy = isStream(conversion.out) ? scratch.emplace().path("out") : QString();
    onFile(conversion.out, "the standard output", copy,
           [&](const std::string& path) { KxInspect::writePoints(path, conversion.to, points); });
    if (isStream(conversion.out)) {
        QFile file(copy);
        QFile output;
        const bool isOpen = file.open(QIODevice::ReadOnly) && output.open(stdout, QIODevice::WriteOnly);
        if (const QString why = isOpen ? copyAll(file, output) : file.errorString(); !why.isEmpty()) {
            throw CommandError{OutputFailed, QStringLiteral("cannot write to the standard output: ") + why};
        }
    }
}

} // namespace

int runConvert(const QStringList& arguments) {
    return runCommand(kName, [&] {
        if (const std::optional<Conversion> conversion = parse(arguments)) {
            const KxInspect::PointSet points = readInput(*conversion);
            if (const std::string note = points.text ? readingNote(*points.text) : std::string(); !note.empty()) {
                printLine(kName, QStringLiteral("'%1' %2").arg(conversion->in, QString::fromStdString(note)));
            }
            const Interruption untilWritten; // else a signal would leave what is written beside the file
            writeOutput(*conversion, points);
            throwIfInterrupted();
        }
        return Done;
    });
}

} // namespace kxtool
