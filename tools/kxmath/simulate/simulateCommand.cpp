// kxmath simulate: writes the recordings of a train that never was.
#include "simulator/simulation.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/simulate/shotOptions.h"

#include <type_traits>

namespace kxtool {

namespace {

using kxsim::Defect;
using kxsim::NumberInfo;
using kxsim::Parameters;

constexpr const char* kName = "simulate";

const char* const kDescription =
    "Simulates a train that passes two profile sensors, and writes into DIR what they record, the settings that fit,\n"
    "and the truth. The same options give the same bytes.\n"
    "\n"
    "Files: PREFIX_SERIAL.bin of both sensors, settings.ini for wheels and distances, defects.ini for defects of the\n"
    "tread, truth.json. With --calibration: calibration-1.bin and so on, truth.json.\n"
    "\n"
    "Exit codes: 0 done, 2 wrong use, 4 DIR or a file in it could not be written.";

QString defaultText(const NumberInfo& info) {
    const QString value = QString::number(kxsim::valueOf(Parameters{}, info));
    const QString unit = QLatin1String(info.unit);
    return unit.isEmpty() ? value : value + QLatin1Char(' ') + unit;
}

void addOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(QLatin1String(kDescription));
    parser.addPositionalArgument("DIR", "directory to write, made where it is missing");
    parser.addOptions(
        {{"seed", "start of the random numbers [1]", "N", "1"},
         {"prefix", "first part of the names of the recordings [train]", "NAME", "train"},
         {"records", "kind of the records, profile or cloud [profile]", "KIND", "profile"},
         {"spacing", "points at equal steps of the angle or of the line [angle]", "KIND", "angle"},
         {"flat", "flat on a tread: PAIR:SENSOR:LENGTH[:PHASE], may be given more than once", "DEFECT"},
         {"build-up", "metal on a tread: PAIR:SENSOR:HEIGHT[:PHASE], may be given more than once", "DEFECT"},
         {"no-rails", "leave out the rails"},
         {"no-background", "leave out what stands beside the track"},
         {"no-objects", "leave out all parts of the train but the wheels"}});
    for (const NumberInfo& info : kxsim::allNumbers()) {
        const QString help = QStringLiteral("%1 [%2]").arg(QLatin1String(info.help), defaultText(info));
        parser.addOption({QLatin1String(info.name), help, QStringLiteral("N")});
    }
    addShotOptions(parser);
}

void readNumber(const QCommandLineParser& parser, const NumberInfo& info, Parameters& parameters) {
    const QString name = QLatin1String(info.name);
    if (!parser.isSet(name)) {
        return;
    }
    const QString text = parser.value(name);
    bool isNumber = false;
    std::visit(
        [&](auto member) {
            using Value = std::remove_reference_t<decltype(parameters.*member)>;
            if constexpr (std::is_same_v<Value, int>) {
                parameters.*member = text.toInt(&isNumber);
            } else {
                parameters.*member = text.toDouble(&isNumber);
            }
        },
        info.member);
    if (!isNumber) {
        const bool isInt = std::holds_alternative<int Parameters::*>(info.member);
        failUse(
            QStringLiteral("--%1 '%2' is no %3number").arg(name, text, isInt ? QStringLiteral("whole ") : QString()));
    }
}

/// Reads PAIR:SENSOR:SIZE[:PHASE]. @return false when the text is something else
bool readDefect(const QString& text, Defect& defect) {
    const QStringList fields = text.split(QLatin1Char(':'));
    if (fields.size() < 3 || fields.size() > 4) {
        return false;
    }
    bool areNumbers[4] = {false, false, false, true};
    defect.pair = fields[0].toInt(&areNumbers[0]);
    defect.sensor = fields[1].toInt(&areNumbers[1]);
    defect.size = fields[2].toDouble(&areNumbers[2]);
    if (fields.size() == 4) {
        defect.phase = fields[3].toDouble(&areNumbers[3]);
    }
    return areNumbers[0] && areNumbers[1] && areNumbers[2] && areNumbers[3];
}

void readDefects(const QCommandLineParser& parser, const char* option, Defect::Kind kind, Parameters& parameters) {
    const QStringList texts = parser.values(QLatin1String(option));
    for (const QString& text : texts) {
        Defect defect;
        defect.kind = kind;
        if (!readDefect(text, defect)) {
            failUse(QStringLiteral("--%1 '%2' is not PAIR:SENSOR:SIZE[:PHASE]").arg(QLatin1String(option), text));
        }
        parameters.defects.push_back(defect);
    }
}

/// Reads an option with two values. @return true for the first one
bool readChoice(const QCommandLineParser& parser, const char* option, const char* first, const char* second) {
    const QString text = parser.value(QLatin1String(option));
    if (text != QLatin1String(first) && text != QLatin1String(second)) {
        failUse(QStringLiteral("--%1 '%2' is neither '%3' nor '%4'")
                    .arg(QLatin1String(option), text, QLatin1String(first), QLatin1String(second)));
    }
    return text == QLatin1String(first);
}

Parameters readParameters(const QCommandLineParser& parser) {
    Parameters parameters;
    for (const NumberInfo& info : kxsim::allNumbers()) {
        readNumber(parser, info, parameters);
    }
    parameters.seed = seedOption(parser);
    parameters.prefix = parser.value("prefix").toStdString();
    const bool areProfiles = readChoice(parser, "records", "profile", "cloud");
    parameters.records = areProfiles ? kxsim::RecordKind::Profile : kxsim::RecordKind::Cloud;
    parameters.hasEqualAngles = readChoice(parser, "spacing", "angle", "line");
    parameters.hasRails = !parser.isSet("no-rails");
    parameters.hasBackground = !parser.isSet("no-background");
    parameters.hasObjects = !parser.isSet("no-objects");
    readDefects(parser, "flat", Defect::Kind::Flat, parameters);
    readDefects(parser, "build-up", Defect::Kind::BuildUp, parameters);
    if (const std::string fault = kxsim::findFault(parameters); !fault.empty()) {
        failUse(QString::fromStdString(fault));
    }
    return parameters;
}

int runChecked(const QStringList& arguments) {
    QCommandLineParser parser;
    addOptions(parser);
    if (!parseOrHelp(parser, arguments, kName, "DIR [options]")) {
        return Done;
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.size() != 1 || positional[0].isEmpty()) {
        failUse(kName, QStringLiteral("one DIR is needed"));
    }
    const auto shots = shotOptions(parser);
    const Parameters parameters = shots ? Parameters{} : readParameters(parser);
    Progress progress;
    progress.step(QStringLiteral("simulating"));
    const auto show = [&](double share) { progress.part(static_cast<qint64>(1000.0 * share), 1000); };
    const QString fault = shots ? kxsim::writeCalibrationShots(*shots, positional[0])
                                : kxsim::simulatePass(parameters, positional[0], show);
    progress.wipe();
    if (!fault.isEmpty()) {
        throw CommandError{OutputFailed, fault};
    }
    return Done;
}

} // namespace

int runSimulate(const QStringList& arguments) {
    return runCommand(kName, [&] { return runChecked(arguments); });
}

} // namespace kxtool
