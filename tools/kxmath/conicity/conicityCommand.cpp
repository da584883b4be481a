// kxmath conicity: the equivalent conicity of a wheel-set from four measured profiles.
#include "inspect/conicity/wheelSet.h"
#include "inspect/formats/profileFiles.h"
#include "report/conicity/conicityReport.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/numbers.h"
#include "tools/kxmath/console/profileOptions.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cmath>

namespace kxtool {

namespace {

using KxMath::KxPointXY;
using KxMath::KxProfile;

constexpr const char* kName = "conicity";

const char* const kDescription =
    "Calculates the equivalent conicity of a wheel-set on a track from the cross-sections of two wheels and two "
    "rails.\n"
    "\n"
    "Profiles are 2-D cloud sections, profile records, CSV with semicolons, or the text forms of contact profile "
    "gauges\n"
    "(.whl, .ban, .prw, .prr: header lines, then two or more columns), lengths in mm. x is counted outwards, from the\n"
    "flange back of a wheel and from the gauge side of a rail, and y down; --up and --mirror turn those that stand\n"
    "otherwise. Left and right look alike.\n"
    "\n"
    "The gauge G is the distance of the rails 14 mm below their tops; each rail is cut there on its gauge side.\n"
    "The back-to-back distance B is that of the flange backs:\n"
    "\n"
    "      wheel 1        |<------------ B ------------>|        wheel 2\n"
    "    __________  __   |                             |   __  __________\n"
    "              \\/  \\__|                             |__/  \\/\n"
    "     ______       |                                   |       ______\n"
    "    |      |      |<--------------- G --------------->|      |      |\n"
    "     rail 1                                                   rail 2\n"
    "\n"
    "Exit codes: 0 done, 1 no conicity can be calculated from these profiles, 2 wrong use, 3 a profile is unreadable "
    "or\n"
    "damaged, 4 an output could not be written.";

struct Arguments {
    std::array<QString, RoleCount> files;
    std::array<Orientation, RoleCount> orientations;
    Columns columns;
    float shownAmplitude = 3.0f;
    OutputFile json;
    OutputFile csv;
    OutputFile report;
};

/// Sets a flag of the orientation of the profiles that an option lists: "wheels", "rails", or single ones.
void readRoles(const QCommandLineParser& parser, const QString& option,
               std::array<Orientation, RoleCount>& orientations, bool Orientation::*flag) {
    for (const QString& entry : parser.value(option).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        bool isKnown = false;
        for (size_t role = 0; role < RoleCount; ++role) {
            const QString name = QLatin1String(roleName(role));
            const QString group = isWheel(role) ? QStringLiteral("wheels") : QStringLiteral("rails");
            if (entry == name || entry == group) {
                orientations[role].*flag = true;
                isKnown = true;
            }
        }
        if (!isKnown) {
            failUse(QStringLiteral("--%1 does not know '%2': wheels, rails, wheel1, wheel2, rail1, rail2")
                        .arg(option, entry));
        }
    }
}

void addOptions(QCommandLineParser& parser) {
    const auto add = [&](const char* name, const char* description, const char* value, const char* byDefault = "") {
        parser.addOption(
            {QLatin1String(name), QLatin1String(description), QLatin1String(value), QLatin1String(byDefault)});
    };
    add("wheel1", "Profile of the first wheel.", "file");
    add("wheel2", "Profile of the second wheel, on the side of positive displacements.", "file");
    add("rail1", "Profile of the rail under the first wheel.", "file");
    add("rail2", "Profile of the rail under the second wheel.", "file");
    add("gauge", "Distance of the rails at the gauge depth, mm.", "mm");
    add("back-to-back", "Distance of the flange backs, mm.", "mm");
    add("gauge-depth", "Height below the rail's top at which the gauge is measured; 0: at the end of the profile.",
        "mm", "14");
    add("radius1", "Rolling radius of the first wheel, mm; only the difference to the second one counts.", "mm", "460");
    add("radius2", "Rolling radius of the second wheel, mm.", "mm", "460");
    add("amplitudes", "About how many amplitudes from 1 mm on are calculated.", "count", "100");
    add("edge-margin", "Distance from the turning points at which the integration ends, mm.", "mm", "0.001");
    add("amplitude", "The amplitude whose value is told first, mm.", "mm", "3");
    add("up", "Profiles with y pointing up: wheels, rails, wheel1, ..., separated by commas.", "list");
    add("mirror", "Profiles with x pointing inwards, likewise.", "list");
    addColumnsOption(parser);
    add("json", "Write the results as JSON; - is the standard output.", "file");
    add("csv", "Write the curve as CSV (amplitude;conicity); - is the standard output.", "file");
    add("report", "Write a report with plots, one HTML file.", "file");
}

Arguments readArguments(const QCommandLineParser& parser, WheelSet& set) {
    Arguments a{
        {}, {}, {}, 3.0f, outputOption(parser, "json"), outputOption(parser, "csv"), outputOption(parser, "report")};
    for (size_t role = 0; role < RoleCount; ++role) {
        a.files[role] = parser.value(QLatin1String(roleName(role)));
        if (a.files[role].isEmpty()) {
            failUse(kName, QStringLiteral("--%1 is missing").arg(QLatin1String(roleName(role))));
        }
    }
    for (const char* const name : {"gauge", "back-to-back"}) {
        if (!parser.isSet(QLatin1String(name))) {
            failUse(kName, QStringLiteral("--%1 is missing").arg(QLatin1String(name)));
        }
    }
    if (!parser.positionalArguments().isEmpty()) {
        failUse(QStringLiteral("unexpected argument '%1'").arg(parser.positionalArguments().constFirst()));
    }
    set.gauge = numberOption(parser, QStringLiteral("gauge"), 100.0f, 10000.0f);
    set.backToBack = numberOption(parser, QStringLiteral("back-to-back"), 100.0f, 10000.0f);
    set.gaugeDepth = numberOption(parser, QStringLiteral("gauge-depth"), 0.0f, 100.0f);
    set.radius1 = numberOption(parser, QStringLiteral("radius1"), 10.0f, 10000.0f);
    set.radius2 = numberOption(parser, QStringLiteral("radius2"), 10.0f, 10000.0f);
    set.amplitudes = static_cast<unsigned>(numberOption(parser, QStringLiteral("amplitudes"), 1.0f, 100000.0f));
    set.edgeMargin = numberOption(parser, QStringLiteral("edge-margin"), 0.0f, 1.0f);
    a.shownAmplitude = numberOption(parser, QStringLiteral("amplitude"), 0.0f, 100.0f);
    readRoles(parser, QStringLiteral("up"), a.orientations, &Orientation::isUp);
    readRoles(parser, QStringLiteral("mirror"), a.orientations, &Orientation::isMirrored);
    a.columns = columnsOption(parser);
    return a;
}

/// Reads and prepares the four profiles. @return what a user should know about them
QStringList readProfiles(const Arguments& a, WheelSet& set) {
    QStringList warnings;
    for (size_t role = 0; role < RoleCount; ++role) {
        KxProfile& profile = set.profiles[role];
        const QString error = readProfileFile(a.files[role], a.columns.x, a.columns.y, profile);
        if (!error.isEmpty()) {
            throw CommandError{BadInput,
                               QStringLiteral("%1 '%2' %3").arg(QLatin1String(roleName(role)), a.files[role], error)};
        }
        orient(profile, a.orientations[role]);
        const int dropped = keepRunningSurface(profile, isWheel(role));
        if (dropped > 0) {
            warnings += QStringLiteral("%1: %2 points that are missing or stand behind others were dropped")
                            .arg(QLatin1String(roleName(role)))
                            .arg(dropped);
        }
        if (!isWheel(role) && !cutAtGaugeDepth(profile, set.gaugeDepth)) {
            warnings +=
                QStringLiteral("%1 does not reach down to the gauge depth on its gauge side: its end is taken as "
                               "gauge point")
                    .arg(QLatin1String(roleName(role)));
        }
        if (dropped > 0) {
            straighten(profile);
        }
    }
    return warnings + findContradictions(set);
}

QJsonArray toJson(const KxProfile& curve) {
    QJsonArray array;
    for (const KxPointXY& p : curve.points) {
        array.append(QJsonArray{jsonNumber(p.x), jsonNumber(p.y)});
    }
    return array;
}

QString jsonText(const Arguments& a, const WheelSet& set, const ConicityResult& result, const QStringList& warnings) {
    QJsonObject files;
    for (size_t role = 0; role < RoleCount; ++role) {
        files[QLatin1String(roleName(role))] = a.files[role];
    }
    QJsonObject root;
    root[QStringLiteral("profiles")] = files;
    root[QStringLiteral("gauge")] = jsonNumber(set.gauge);
    root[QStringLiteral("backToBack")] = jsonNumber(set.backToBack);
    root[QStringLiteral("radius1")] = jsonNumber(set.radius1);
    root[QStringLiteral("radius2")] = jsonNumber(set.radius2);
    root[QStringLiteral("edgeMargin")] = jsonNumber(set.edgeMargin);
    root[QStringLiteral("shownAmplitude")] = jsonNumber(a.shownAmplitude);
    root[QStringLiteral("shownConicity")] = jsonNumber(conicityAt(result, a.shownAmplitude));
    root[QStringLiteral("conicity")] = toJson(result.conicity);
    root[QStringLiteral("deltaR")] = toJson(result.deltaR);
    root[QStringLiteral("warnings")] = QJsonArray::fromStringList(warnings);
    return QString::fromUtf8(QJsonDocument(root).toJson());
}

QString csvText(const ConicityResult& result) {
    QString text = QStringLiteral("amplitude;conicity\n");
    for (const KxPointXY& p : result.conicity.points) {
        text += shortestText(p.x) + QLatin1Char(';') + shortestText(p.y) + QLatin1Char('\n');
    }
    return text;
}

QString tableText(const Arguments& a, const ConicityResult& result) {
    QString text = QStringLiteral("equivalent conicity at %1 mm: %2\n\namplitude  conicity\n")
                       .arg(fixedText(a.shownAmplitude, 1), fixedText(conicityAt(result, a.shownAmplitude), 4));
    for (int amplitude = 1; amplitude <= 10; ++amplitude) {
        const float value = conicityAt(result, static_cast<float>(amplitude));
        if (!std::isnan(value)) {
            text += QStringLiteral("%1 mm  %2\n").arg(amplitude, 6).arg(fixedText(value, 4), 8);
        }
    }
    return text;
}

int runChecked(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(kDescription));
    addOptions(parser);
    if (!parseOrHelp(parser, arguments, kName,
                     "--wheel1 FILE --wheel2 FILE --rail1 FILE --rail2 FILE\n"
                     "                       --gauge MM --back-to-back MM [options]")) {
        return Done;
    }
    WheelSet set;
    const Arguments a = readArguments(parser, set);
    checkOutputs({&a.json, &a.csv, &a.report}, QStringList(a.files.begin(), a.files.end()));
    QStringList warnings = readProfiles(a, set);
    ConicityResult result;
    const bool isCalculated = calculate(set, result);
    warnings += findLimits(result, a.shownAmplitude);
    for (const QString& warning : warnings) {
        printLine(kName, QStringLiteral("warning: ") + warning);
    }
    if (!isCalculated) {
        throw CommandError{NoResult, QStringLiteral("no conicity can be calculated from these profiles")};
    }
    if (a.json.isWanted()) {
        a.json.write(jsonText(a, set, result, warnings));
    }
    if (a.csv.isWanted()) {
        a.csv.write(csvText(result));
    }
    if (a.report.isWanted()) {
        QStringList names;
        for (const QString& file : a.files) {
            names += QFileInfo(file).fileName();
        }
        a.report.write(conicityReport(set, result, a.shownAmplitude, names, warnings));
    }
    if (!a.json.isStandardOutput() && !a.csv.isStandardOutput()) {
        printOutput(tableText(a, result));
    }
    return Done;
}

} // namespace

int runConicity(const QStringList& arguments) {
    return runCommand(kName, [&] { return runChecked(arguments); });
}

} // namespace kxtool
