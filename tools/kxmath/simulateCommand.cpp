// kxmath simulate: writes the recordings of a train that never was.
#include "commands.h"
#include "exitCodes.h"

#include "simulator/simulation.h"

#include <QtCore/QCommandLineParser>

#include <cmath>
#include <cstdio>
#include <type_traits>
#include <unistd.h>

namespace kxtool {

namespace {

using kxsim::Defect;
using kxsim::NumberInfo;
using kxsim::Parameters;

const char* const kDescription =
    "Simulates a train that passes two profile sensors and writes into DIR what they record, the settings that fit,\n"
    "and the truth. The same options give the same bytes.\n\n"
    "Files: PREFIX_SERIAL.bin of both sensors, settings.ini for wheels and distances, defects.ini for defects of the\n"
    "tread, truth.json.";

QString defaultText(const NumberInfo& info) {
    const QString value = QString::number(kxsim::valueOf(Parameters{}, info));
    const QString unit = QLatin1String(info.unit);
    return unit.isEmpty() ? value : value + QLatin1Char(' ') + unit;
}

void addOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(QLatin1String(kDescription));
    parser.addHelpOption();
    parser.addPositionalArgument("DIR", "directory to write, made where it is missing");
    parser.addOptions(
        {{"seed", "start of the random numbers [1]", "N", "1"},
         {"prefix", "first part of the names of the recordings [train]", "NAME", "train"},
         {"records", "kind of the records, profile or cloud [profile]", "KIND", "profile"},
         {"spacing", "points at equal steps of the angle or of the line [angle]", "KIND", "angle"},
         {"flat", "flat on a tread: PAIR:SENSOR:LENGTH[:PHASE], may be given more than once", "FLAT"},
         {"build-up", "metal on a tread: PAIR:SENSOR:HEIGHT[:PHASE], may be given more than once", "SPEC"},
         {"no-rails", "leave out the rails"},
         {"no-background", "leave out what stands beside the track"},
         {"no-objects", "leave out all parts of the train but the wheels"}});
    for (const NumberInfo& info : kxsim::allNumbers()) {
        const QString help = QStringLiteral("%1 [%2]").arg(QLatin1String(info.help), defaultText(info));
        parser.addOption({QLatin1String(info.name), help, QStringLiteral("N")});
    }
}

/// Reads one number. @return what is wrong, empty when nothing is
QString readNumber(const QCommandLineParser& parser, const NumberInfo& info, Parameters& parameters) {
    const QString name = QLatin1String(info.name);
    if (!parser.isSet(name)) {
        return {};
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
    return isNumber ? QString() : QStringLiteral("--%1 '%2' is not a number that fits").arg(name, text);
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

QString readDefects(const QCommandLineParser& parser, Parameters& parameters) {
    for (const auto& [name, kind] : {std::pair{"flat", Defect::Kind::Flat}, {"build-up", Defect::Kind::BuildUp}}) {
        const QStringList texts = parser.values(QLatin1String(name));
        for (const QString& text : texts) {
            Defect defect;
            defect.kind = kind;
            if (!readDefect(text, defect)) {
                return QStringLiteral("--%1 '%2' is not PAIR:SENSOR:SIZE[:PHASE]").arg(QLatin1String(name), text);
            }
            parameters.defects.push_back(defect);
        }
    }
    return {};
}

/// Reads an option with two values. @return what is wrong, empty when nothing is
QString readChoice(const QCommandLineParser& parser, const char* name, const char* first, const char* second,
                   bool& isFirst) {
    const QString text = parser.value(QLatin1String(name));
    isFirst = text == QLatin1String(first);
    if (isFirst || text == QLatin1String(second)) {
        return {};
    }
    return QStringLiteral("--%1 '%2' is neither '%3' nor '%4'").arg(name, text, first, second);
}

/// Reads all options. @return what is wrong, empty when nothing is
QString readParameters(const QCommandLineParser& parser, Parameters& parameters) {
    for (const NumberInfo& info : kxsim::allNumbers()) {
        if (const QString fault = readNumber(parser, info, parameters); !fault.isEmpty()) {
            return fault;
        }
    }
    bool isNumber = false;
    parameters.seed = parser.value("seed").toULongLong(&isNumber);
    if (!isNumber) {
        return QStringLiteral("--seed '%1' is not a whole number from 0 on").arg(parser.value("seed"));
    }
    parameters.prefix = parser.value("prefix").toStdString();
    bool isProfile = true;
    if (const QString fault = readChoice(parser, "records", "profile", "cloud", isProfile); !fault.isEmpty()) {
        return fault;
    }
    parameters.records = isProfile ? kxsim::RecordKind::Profile : kxsim::RecordKind::Cloud;
    if (const QString fault = readChoice(parser, "spacing", "angle", "line", parameters.hasEqualAngles);
        !fault.isEmpty()) {
        return fault;
    }
    parameters.hasRails = !parser.isSet("no-rails");
    parameters.hasBackground = !parser.isSet("no-background");
    parameters.hasObjects = !parser.isSet("no-objects");
    if (const QString fault = readDefects(parser, parameters); !fault.isEmpty()) {
        return fault;
    }
    return QString::fromStdString(kxsim::findFault(parameters));
}

int fail(ExitCode code, const QString& message) {
    std::fprintf(stderr, "kxmath simulate: %s\n", qPrintable(message));
    return code;
}

/// Shows the share of the work in percent, when somebody is there to see it.
kxsim::Progress makeProgress() {
    if (isatty(STDERR_FILENO) == 0) {
        return {};
    }
    return [shown = -1](double share) mutable {
        const int percent = static_cast<int>(100.0 * share);
        if (percent != shown) {
            shown = percent;
            std::fprintf(stderr, "\rsimulating %3d %%%s", percent, percent == 100 ? "\n" : "");
        }
    };
}

} // namespace

int runSimulate(const QStringList& arguments) {
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments)) {
        return fail(WrongUse, parser.errorText());
    }
    if (parser.isSet("help")) {
        std::fputs(qPrintable(parser.helpText().replace(QLatin1String("kxmath ["), QLatin1String("kxmath simulate ["))),
                   stdout);
        return Done;
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.size() != 1) {
        return fail(WrongUse, QStringLiteral("one DIR is needed, see kxmath simulate --help"));
    }
    Parameters parameters;
    if (const QString fault = readParameters(parser, parameters); !fault.isEmpty()) {
        return fail(WrongUse, fault);
    }
    if (const QString fault = kxsim::simulatePass(parameters, positional[0], makeProgress()); !fault.isEmpty()) {
        return fail(OutputFailed, fault);
    }
    return Done;
}

} // namespace kxtool
