// Options of the commands that read text files.
#include "tools/kxmath/console/textOptions.h"

#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/printable.h"

#include <QtCore/QFileInfo>

#include <algorithm>
#include <iterator>
#include <utility>

namespace kxtool {

namespace {

using Signs = std::vector<std::pair<const char*, char>>; ///< names and what they stand for

const Signs kSeparators = {{"semicolon", ';'}, {"comma", ','}, {"tab", '\t'}, {"blank", ' '}};
const Signs kDecimalSigns = {{"point", '.'}, {"comma", ','}};

/// The sign that an option names or holds.
std::optional<char> signIfSet(const Options& options, const char* option, const Signs& signs) {
    if (!options.isSet(option)) {
        return {};
    }
    QStringList names;
    for (const auto& [name, sign] : signs) {
        if (options.text(option) == QLatin1Char(sign)) {
            return sign;
        }
        names += QLatin1String(name);
    }
    return signs[static_cast<std::size_t>(names.indexOf(options.oneOf(option, names)))].second;
}

/// The numbers of columns, counted from 0; empty when they are no columns.
std::vector<int> columnsIn(const QString& text) {
    std::vector<int> columns;
    for (const QString& field : text.split(QLatin1Char(','))) {
        const int column = field.toInt(); // 0 when it is no number
        if (column < 1) {
            return {};
        }
        columns.push_back(column - 1);
    }
    return columns;
}

constexpr const char* kOptions[] = {"columns", "separator", "decimal"};

/// Throws a CommandError when an option is set and no file is a text.
void checkFiles(const Options& options, const QStringList& files) {
    std::optional<KxInspect::FileKind> kind;
    const auto isSet = [&](const char* option) { return options.isSet(option); };
    if (std::none_of(std::begin(kOptions), std::end(kOptions), isSet)) {
        return;
    }
    for (const QString& file : files) {
        const QFileInfo info(file); // a pipe is read once, and what is forbidden has no content
        kind = info.isFile() && info.isReadable() ? KxInspect::kindOfFile(toBytes(file)) : std::nullopt;
        if (!kind || isText(*kind)) {
            return;
        }
    }
    if (kind) {
        failAsNoText(options, QStringLiteral("'%1' is read as").arg(printable(files.last())), *kind);
    }
}

} // namespace

bool isText(KxInspect::FileKind kind) {
    return kind == KxInspect::FileKind::Csv || kind == KxInspect::FileKind::Xyz || kind == KxInspect::FileKind::Gauge;
}

void failAsNoText(const Options& options, const QString& what, KxInspect::FileKind kind) {
    for (const char* const option : kOptions) {
        if (options.isSet(option)) {
            options.fail(QStringLiteral("--%1 is for texts, %2 %3")
                             .arg(QLatin1String(option), what, QString::fromStdString(kindName(kind))));
        }
    }
}

void addTextOptions(Options& options, bool hasZ) {
    options.addOption("columns",
                      hasZ ? QStringLiteral("The columns of x, y and perhaps z in text files, counted from 1.")
                           : QStringLiteral("The columns of x and y in text files, counted from 1."),
                      hasZ ? "x,y[,z]" : "x,y");
    options.addOption("separator",
                      QStringLiteral("What stands between the columns of text files: semicolon, comma, tab or blank."),
                      "name");
    options.addOption("decimal", QStringLiteral("The decimal sign in text files: point or comma."), "name");
}

KxInspect::TextOptions textOptions(const Options& options, const QStringList& files, bool hasZ) {
    KxInspect::TextOptions result;
    if (options.isSet("columns")) {
        const QString text = options.text("columns");
        result.columns = columnsIn(text);
        if (result.columns.size() != 2 && !(hasZ && result.columns.size() == 3)) {
            options.failNeed(QStringLiteral("--columns"),
                             hasZ ? QStringLiteral("two or three whole numbers of at least 1 separated by ','")
                                  : QStringLiteral("two whole numbers of at least 1 separated by ','"),
                             text);
        }
    }
    result.separator = signIfSet(options, "separator", kSeparators);
    result.decimalSign = signIfSet(options, "decimal", kDecimalSigns);
    if (result.separator == ',' && result.decimalSign == ',') {
        options.fail(QStringLiteral("--separator and --decimal are both a comma"));
    }
    checkFiles(options, files);
    return result;
}

} // namespace kxtool
