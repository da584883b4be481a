// kxmath wheel: the measures of wheel profiles.
#include "inspect/wheel/wheelMeasurement.h"
#include "report/wheel/wheelReport.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/numbers.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

constexpr const char* kName = "wheel";

const char* const kDescription =
    "Measures the profiles of wheels. With heights counted from the tip of the flange towards the axle:\n"
    "\n"
    "  heightAt70        flange height h: the height 70 mm from the flange back, on the tape circle\n"
    "  xAtLevel18        distance of the flank at the height 18 from the flange back\n"
    "  widthLevel2ToH13  distance on the flank, across the wheel, from the height 2 to the height h - 13\n"
    "  heightExcess      h - 30 when h is 29 or more, h - 28 when it is below\n"
    "\n"
    "Files are 2-D cloud sections, profile records, CSV with semicolons, or the text forms of contact profile gauges\n"
    "(.whl, .prw: header lines, then two or more columns), lengths in mm, x outwards from the flange back and y down;\n"
    "--up and --mirror turn what stands otherwise. 3-D cloud sections hold the cross-section of a rim: y is the "
    "height,\n"
    "and x and z are turned about --centre until the section lies along x, its outer end at the flange back.\n"
    "\n"
    "Exit codes: 0 done, 1 a wheel has no flange or tread to measure, 2 wrong use, 3 a file is unreadable or damaged,\n"
    "4 an output could not be written. Limits do not change the exit code.";

struct Arguments {
    QStringList files;
    WheelOptions options;
    OutputFile json;
    OutputFile csv;
    OutputFile report;
};

void addOptions(QCommandLineParser& parser) {
    const auto add = [&](const QString& name, const QString& description, const char* value,
                         const char* byDefault = "") {
        parser.addOption({name, description, QLatin1String(value), QLatin1String(byDefault)});
    };
    parser.addPositionalArgument(QStringLiteral("FILE..."), QStringLiteral("The wheels to measure."));
    parser.addOption({QStringLiteral("up"), QStringLiteral("y of the profiles points up.")});
    parser.addOption({QStringLiteral("mirror"), QStringLiteral("x of the profiles points inwards.")});
    addColumnsOption(parser);
    add(QStringLiteral("flange-back"),
        QStringLiteral("x of the flange back in profiles, which begin there, by default at their end."), "mm");
    add(QStringLiteral("spacing"),
        QStringLiteral("Put points so far apart on the lines between those of profiles, 0.01 to 1 mm; without, the "
                       "points are measured as they are."),
        "mm");
    add(QStringLiteral("centre"), QStringLiteral("Centre of the wheel in 3-D cloud sections."), "x,z", "0,0");
    for (const WheelMeasure& measure : kWheelMeasures) {
        for (const QString& bound : {QStringLiteral("min"), QStringLiteral("max")}) {
            add(bound + QLatin1Char('-') + QLatin1String(measure.option),
                QStringLiteral("%1 %2 that is allowed.")
                    .arg(bound == QLatin1String("min") ? QStringLiteral("Smallest") : QStringLiteral("Largest"),
                         QLatin1String(measure.key)),
                "mm");
        }
    }
    add(QStringLiteral("json"), QStringLiteral("Write the measures as JSON; - is the standard output."), "file");
    add(QStringLiteral("csv"), QStringLiteral("Write the measures as CSV; - is the standard output."), "file");
    add(QStringLiteral("report"), QStringLiteral("Write a report with drawings, one HTML file."), "file");
}

Limits limitsOption(const QCommandLineParser& parser) {
    constexpr float kLargest = 1000.0f;
    Limits limits;
    for (size_t i = 0; i < limits.size(); ++i) {
        const auto read = [&](const char* bound, float& limit) {
            const QString name = QLatin1String(bound) + QLatin1String(kWheelMeasures[i].option);
            if (parser.isSet(name)) {
                limit = numberOption(parser, name, -kLargest, kLargest);
            }
        };
        read("min-", limits[i].min);
        read("max-", limits[i].max);
        if (limits[i].min > limits[i].max) {
            failUse(QStringLiteral("--min-%1 is larger than --max-%1").arg(QLatin1String(kWheelMeasures[i].option)));
        }
    }
    return limits;
}

KxMath::KxCircle centreOption(const QCommandLineParser& parser) {
    const QStringList numbers = parser.value(QStringLiteral("centre")).split(QLatin1Char(','));
    bool isX = false;
    bool isZ = false;
    KxMath::KxCircle circle;
    circle.x = numbers.value(0).toFloat(&isX);
    circle.y = numbers.value(1).toFloat(&isZ);
    if (numbers.size() != 2 || !isX || !isZ || !std::isfinite(circle.x) || !std::isfinite(circle.y)) {
        failUse(QStringLiteral("--centre needs two numbers, like 0,0"));
    }
    return circle;
}

Arguments readArguments(const QCommandLineParser& parser) {
    Arguments a{parser.positionalArguments(),
                {},
                outputOption(parser, "json"),
                outputOption(parser, "csv"),
                outputOption(parser, "report")};
    if (a.files.isEmpty()) {
        failUse(kName, QStringLiteral("no file was named"));
    }
    WheelOptions& options = a.options;
    options.orientation = {parser.isSet(QStringLiteral("up")), parser.isSet(QStringLiteral("mirror"))};
    options.columns = columnsOption(parser);
    options.circle = centreOption(parser);
    options.limits = limitsOption(parser);
    if (parser.isSet(QStringLiteral("flange-back"))) {
        options.flangeBack = numberOption(parser, QStringLiteral("flange-back"), -10000.0f, 10000.0f);
    }
    if (parser.isSet(QStringLiteral("spacing"))) {
        options.spacing = numberOption(parser, QStringLiteral("spacing"), 0.01f, 1.0f);
    }
    return a;
}

/// Measures all files and tells what is wrong with them.
std::vector<WheelResult> measureAll(const Arguments& a, ExitCode& code) {
    std::vector<WheelResult> results;
    Progress progress;
    for (const QString& file : a.files) {
        progress.step(QStringLiteral("measuring %1").arg(file));
        WheelResult result = measureWheel(file, a.options);
        progress.wipe();
        if (!result.error.isEmpty()) {
            printLine(kName, QStringLiteral("'%1' %2").arg(file, result.error));
            code = std::max(code, BadInput);
        } else {
            for (const QString& warning : std::as_const(result.warnings)) {
                printLine(kName, QStringLiteral("warning: '%1' %2").arg(file, warning));
            }
            if (!result.isMeasured()) {
                printLine(kName, QStringLiteral("'%1' has no flange or tread to measure").arg(file));
                code = std::max(code, NoResult);
            }
        }
        results.push_back(std::move(result));
    }
    return results;
}

QJsonObject toJson(const WheelResult& result, const Limits& limits) {
    QJsonObject wheel;
    wheel[QStringLiteral("file")] = result.file;
    if (!result.error.isEmpty()) {
        wheel[QStringLiteral("error")] = result.error;
        return wheel;
    }
    for (const WheelMeasure& measure : kWheelMeasures) {
        wheel[QLatin1String(measure.key)] = jsonNumber(result.values.*measure.value);
    }
    const QString verdict = verdictText(verdictOf(result, limits));
    wheel[QStringLiteral("verdict")] = verdict.isEmpty() ? QJsonValue() : QJsonValue(verdict);
    wheel[QStringLiteral("warnings")] = QJsonArray::fromStringList(result.warnings);
    return wheel;
}

QString jsonText(const std::vector<WheelResult>& results, const Limits& limits) {
    QJsonArray wheels;
    for (const WheelResult& result : results) {
        wheels.append(toJson(result, limits));
    }
    QJsonObject allowed;
    for (size_t i = 0; i < limits.size(); ++i) {
        allowed[QLatin1String(kWheelMeasures[i].key)] = QJsonObject{{QStringLiteral("min"), jsonNumber(limits[i].min)},
                                                                    {QStringLiteral("max"), jsonNumber(limits[i].max)}};
    }
    const QJsonObject root{{QStringLiteral("wheels"), wheels}, {QStringLiteral("limits"), allowed}};
    return QString::fromUtf8(QJsonDocument(root).toJson());
}

/// A text as a field of CSV, in quotes where it needs them.
QString csvField(QString text) {
    if (!text.contains(QLatin1Char(';')) && !text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char('\n'))) {
        return text;
    }
    return QLatin1Char('"') + text.replace(QLatin1String("\""), QLatin1String("\"\"")) + QLatin1Char('"');
}

QString csvText(const std::vector<WheelResult>& results, const Limits& limits) {
    QString text = QStringLiteral("file");
    for (const WheelMeasure& measure : kWheelMeasures) {
        text += QLatin1Char(';') + QLatin1String(measure.key);
    }
    text += QStringLiteral(";verdict\n");
    for (const WheelResult& result : results) {
        text += csvField(result.file);
        for (const WheelMeasure& measure : kWheelMeasures) {
            text += QLatin1Char(';') + shortestText(result.values.*measure.value);
        }
        text += QLatin1Char(';') + verdictText(verdictOf(result, limits)) + QLatin1Char('\n');
    }
    return text;
}

QString tableText(const std::vector<WheelResult>& results, const Limits& limits) {
    qsizetype nameWidth = 4;
    for (const WheelResult& result : results) {
        nameWidth = std::max(nameWidth, QFileInfo(result.file).fileName().size());
    }
    QString text = QStringLiteral("file").leftJustified(nameWidth);
    for (const WheelMeasure& measure : kWheelMeasures) {
        text += QStringLiteral("  ") + QLatin1String(measure.key);
    }
    text += QStringLiteral("  verdict\n");
    for (const WheelResult& result : results) {
        if (!result.error.isEmpty()) {
            continue; // told on stderr
        }
        text += QFileInfo(result.file).fileName().leftJustified(nameWidth);
        for (const WheelMeasure& measure : kWheelMeasures) {
            text +=
                QStringLiteral("  ") +
                fixedText(result.values.*measure.value, 2).rightJustified(static_cast<qsizetype>(qstrlen(measure.key)));
        }
        const QString verdict = verdictText(verdictOf(result, limits));
        text += QStringLiteral("  ") + (verdict.isEmpty() ? QStringLiteral("-") : verdict) + QLatin1Char('\n');
    }
    return text;
}

int runChecked(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(kDescription));
    addOptions(parser);
    if (!parseOrHelp(parser, arguments, kName, "FILE... [options]")) {
        return Done;
    }
    const Arguments a = readArguments(parser);
    checkOutputs({&a.json, &a.csv, &a.report}, a.files);
    ExitCode code = Done;
    const std::vector<WheelResult> results = measureAll(a, code);
    const Limits& limits = a.options.limits;
    if (a.json.isWanted()) {
        a.json.write(jsonText(results, limits));
    }
    if (a.csv.isWanted()) {
        a.csv.write(csvText(results, limits));
    }
    if (a.report.isWanted()) {
        a.report.write(wheelReport(results, limits));
    }
    const bool isAnyRead =
        std::any_of(results.begin(), results.end(), [](const WheelResult& r) { return r.error.isEmpty(); });
    if (isAnyRead && !a.json.isStandardOutput() && !a.csv.isStandardOutput()) {
        printOutput(tableText(results, limits));
    }
    return code;
}

} // namespace

int runWheel(const QStringList& arguments) {
    return runCommand(kName, [&] { return runChecked(arguments); });
}

} // namespace kxtool
