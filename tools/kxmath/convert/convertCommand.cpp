// kxmath convert: points from one kind of file to another.
#include "inspect/formats/pointFile.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>

#include <cstdio>

namespace kxtool {

namespace {

constexpr const char* kName = "convert";

const char* const kDescription =
    "Converts points from one kind of file to another. The kinds are told by the endings of the file names, or named:\n"
    "\n"
    "  cloud     .bin .cloud          one cloud section: 2-D, 3-D or 3-D with colours, whatever the points have\n"
    "  profiles  .profiles .set       profile records; written, a profile begins wherever z changes\n"
    "  csv       .csv                 one profile, x;y with decimal comma\n"
    "  xyzf      .xyzf                x, y, z and 0 as little-endian floats, nothing else\n"
    "  xyz       .xyz .txt .asc       columns x y z as text\n"
    "  ply       .ply                 vertices with x, y, z and colours\n"
    "  pcd       .pcd                 points with x, y, z and rgb, not compressed\n"
    "\n"
    "IN or OUT may be - for the standard input or output; its kind must then be named.\n"
    "\n"
    "Exit codes: 0 done, 2 wrong use, 3 the input is unreadable or damaged, 4 the output could not be written or "
    "cannot\n"
    "hold the points.";

struct Options {
    QString in;
    QString out;
    Format from;
    Format to;
};

/// The kind of a file: named by an option, else told by the file name.
Format kindOf(const QCommandLineParser& parser, const QString& option, const QString& fileName) {
    if (parser.isSet(option)) {
        const std::optional<Format> named = formatByName(parser.value(option));
        if (!named) {
            failUse(kName, QStringLiteral("--%1 does not know '%2'").arg(option, parser.value(option)));
        }
        return *named;
    }
    const std::optional<Format> told = formatByFileName(fileName);
    if (!told) {
        failUse(kName, QStringLiteral("the name '%1' does not tell the kind, name it with --%2").arg(fileName, option));
    }
    return *told;
}

std::optional<Options> parse(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(kDescription));
    parser.addPositionalArgument(QStringLiteral("IN"), QStringLiteral("The file to read."));
    parser.addPositionalArgument(QStringLiteral("OUT"), QStringLiteral("The file to write, replaced if it exists."));
    parser.addOption({QStringLiteral("from"), QStringLiteral("Kind of IN."), QStringLiteral("kind")});
    parser.addOption({QStringLiteral("to"), QStringLiteral("Kind of OUT."), QStringLiteral("kind")});
    if (!parseOrHelp(parser, arguments, kName, "IN OUT [options]")) {
        return {};
    }
    const QStringList names = parser.positionalArguments();
    if (names.size() != 2) {
        failUse(kName, QStringLiteral("two files are needed, not %1").arg(names.size()));
    }
    if (names[0] == names[1] && names[0] != QLatin1String("-")) {
        failUse(kName, QStringLiteral("IN and OUT are the same file"));
    }
    return Options{names[0], names[1], kindOf(parser, QStringLiteral("from"), names[0]),
                   kindOf(parser, QStringLiteral("to"), names[1])};
}

bool isStream(const QString& name) {
    return name == QLatin1String("-");
}

/// Copies between an open stream and a file.
bool copyAll(QFile& from, QFile& to) {
    constexpr qint64 kChunk = 1 << 16;
    for (;;) {
        const QByteArray bytes = from.read(kChunk);
        if (bytes.isEmpty()) {
            return from.error() == QFileDevice::NoError && to.flush();
        }
        if (to.write(bytes) != bytes.size()) {
            return false;
        }
    }
}

PointData readInput(const Options& options, const QTemporaryDir& scratch) {
    QString path = options.in;
    if (isStream(options.in)) {
        path = scratch.filePath(QStringLiteral("in"));
        QFile input;
        QFile file(path);
        if (!input.open(stdin, QIODevice::ReadOnly) || !file.open(QIODevice::WriteOnly) || !copyAll(input, file)) {
            throw CommandError{BadInput, QStringLiteral("the standard input cannot be read")};
        }
    }
    try {
        return readPointFile(path, options.from);
    } catch (const FormatError& error) {
        throw CommandError{BadInput, QStringLiteral("'%1' %2").arg(options.in, error.message)};
    }
}

void writeOutput(const Options& options, const PointData& data, const QTemporaryDir& scratch) {
    const QString path = isStream(options.out) ? scratch.filePath(QStringLiteral("out")) : options.out;
    try {
        writePointFile(path, options.to, data);
    } catch (const FormatError& error) {
        throw CommandError{OutputFailed, QStringLiteral("'%1' %2").arg(options.out, error.message)};
    }
    if (isStream(options.out)) {
        QFile file(path);
        QFile output;
        if (!file.open(QIODevice::ReadOnly) || !output.open(stdout, QIODevice::WriteOnly) || !copyAll(file, output)) {
            throw CommandError{OutputFailed, QStringLiteral("the standard output cannot be written")};
        }
    }
}

} // namespace

int runConvert(const QStringList& arguments) {
    return runCommand(kName, [&] {
        if (const std::optional<Options> options = parse(arguments)) {
            const QTemporaryDir scratch;
            writeOutput(*options, readInput(*options, scratch), scratch);
        }
        return Done;
    });
}

} // namespace kxtool
