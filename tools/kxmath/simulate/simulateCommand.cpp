// kxmath simulate: writes the recordings of a simulated train.
#include "report/elements/textList.h"
#include "simulator/simulation.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/workFolder.h"
#include "tools/kxmath/simulate/shotOptions.h"

#include <type_traits>

namespace kxtool {

namespace {

using kxsim::Defect;
using kxsim::NumberInfo;
using kxsim::Parameters;

constexpr const char* kName = "simulate";

const char* const kDescription =
    "Simulates a train that passes profile sensors. Writes the recordings, the matching settings\n"
    "and the truth about the train into DIR. The same options give the same bytes.\n"
    "\n"
    "Files: PREFIX_SERIAL.bin of each sensor, settings.ini for wheels and distances, defects.ini for\n"
    "defects of the tread, truth.csv, truth.json. With --calibration: calibration-1.bin and so on, truth.json.\n"
    "\n"
    "The files appear in DIR when all of them are whole; until then they are in a folder incomplete-DIR beside it, or "
    "in it\n"
    "where it is there. Of an older pass files with other names stay. SIGINT and SIGTERM leave nothing behind.\n"
    "\n"
    "Exit codes: 0 done, 2 wrong use, 3 the layout or the list of vehicles is missing or wrong, 4 DIR or a file in it "
    "could not be written, 6 "
    "not enough memory.";

QString defaultText(const NumberInfo& info) {
    const QString value = QString::number(kxsim::valueOf(Parameters{}, info));
    const QString unit = QLatin1String(info.unit);
    return unit.isEmpty() ? value : value + QLatin1Char(' ') + unit;
}

void addOptions(Options& options) {
    options.addArgument("DIR", "directory for the files; it is created if missing");
    options.addOption("seed", "seed of the random numbers [1]", "N", "1");
    options.addOption("prefix", "first part of the names of the recordings [train]", "NAME", "train");
    options.addOption("layout", "which sensors there are, an INI file; two that face each other without it", "FILE");
    options.addOption("consist",
                      "the vehicles from one end of the train to the other, a list as kxmath train takes it, instead "
                      "of equal cars",
                      "FILE");
    options.addFlag("turned", "the last vehicle comes first, and what was on the left is on the right");
    options.addOption("unseen", "a wheel that a sensor does not see: PAIR:SENSOR; may be given more than once",
                      "WHEEL");
    options.addOption("records", "kind of the records, profile or cloud [profile]", "KIND", "profile");
    options.addOption("spacing", "points at equal steps of the angle or of the laser line: angle or line [angle]",
                      "KIND", "angle");
    options.addOption("flat", "wheel flat: PAIR:SENSOR:LENGTH[:PHASE], mm; may be given more than once", "DEFECT");
    options.addOption(
        "flat-shape",
        "flats are equally deep over the width of the tread, or one plane parallel to the axle, deeper where "
        "the tread is farther from it: even or plane [even]",
        "KIND", "even");
    options.addOption(
        "build-up", "metal build-up on a tread: PAIR:SENSOR:HEIGHT[:PHASE], mm; may be given more than once", "DEFECT");
    options.addFlag("no-rails", "leave out the rails");
    options.addFlag("no-background", "leave out objects beside the track");
    options.addFlag("no-objects", "leave out all parts of the train but the wheels");
    for (const NumberInfo& info : kxsim::allNumbers()) {
        const QString help = QStringLiteral("%1 [%2]").arg(QLatin1String(info.help), defaultText(info));
        options.addOption(info.name, help, "N");
    }
    addShotOptions(options);
}

void readNumber(const Options& options, const NumberInfo& info, Parameters& parameters) {
    if (!options.isSet(info.name)) {
        return;
    }
    std::visit(
        [&](auto member) {
            using Value = std::remove_reference_t<decltype(parameters.*member)>;
            if constexpr (std::is_same_v<Value, int>) {
                parameters.*member =
                    options.wholeNumber(info.name, static_cast<int>(info.min), static_cast<int>(info.max));
            } else {
                const QString name = QStringLiteral("--") + QLatin1String(info.name);
                parameters.*member = options.toNumber(options.text(info.name), name, {info.min, info.max});
            }
        },
        info.member);
}

/// Reads PAIR:SENSOR:SIZE[:PHASE]. @return false for a text of another form
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

void readDefects(const Options& options, const char* name, Defect::Kind kind, Parameters& parameters) {
    for (const QString& text : options.texts(name)) {
        Defect defect;
        defect.kind = kind;
        if (!readDefect(text, defect)) {
            options.failNeed(QStringLiteral("--") + QLatin1String(name), QStringLiteral("PAIR:SENSOR:SIZE[:PHASE]"),
                             text);
        }
        parameters.defects.push_back(defect);
    }
}

void readUnseen(const Options& options, Parameters& parameters) {
    for (const QString& text : options.texts("unseen")) {
        const QStringList fields = text.split(QLatin1Char(':'));
        bool isPair = false;
        bool isSensor = false;
        kxsim::Unseen unseen;
        if (fields.size() == 2) {
            unseen = {fields[0].toInt(&isPair), fields[1].toInt(&isSensor)};
        }
        if (!isPair || !isSensor) {
            options.failNeed(QStringLiteral("--unseen"), QStringLiteral("PAIR:SENSOR"), text);
        }
        parameters.unseen.push_back(unseen);
    }
}

/// Reads the vehicles, which stand in the place of the numbers of equal cars.
void readVehicles(const Options& options, Parameters& parameters) {
    if (!options.isSet("consist")) {
        return;
    }
    for (const char* const name : kxsim::kNumbersOfCars) {
        if (options.isSet(name)) {
            options.fail(
                QStringLiteral("--%1 is of equal cars and cannot be given with --consist").arg(QLatin1String(name)));
        }
    }
    parameters.vehicles = KxInspect::readConsist(toBytes(options.text("consist"))).vehicles;
}

Parameters readParameters(const Options& options) {
    Parameters parameters;
    for (const NumberInfo& info : kxsim::allNumbers()) {
        readNumber(options, info, parameters);
    }
    parameters.seed = seedOption(options);
    parameters.prefix = toBytes(options.text("prefix")); // a part of texts, too
    if (!KxInspect::detail::isUtf8(parameters.prefix)) {
        options.failNeed(QStringLiteral("--prefix"), QStringLiteral("UTF-8"), options.text("prefix"));
    }
    const bool areProfiles =
        options.oneOf("records", kxreport::textList({"profile", "cloud"})) == QLatin1String("profile");
    parameters.records = areProfiles ? kxsim::RecordKind::Profile : kxsim::RecordKind::Cloud;
    parameters.hasEqualAngles =
        options.oneOf("spacing", kxreport::textList({"angle", "line"})) == QLatin1String("angle");
    if (options.isSet("layout")) {
        parameters.layout = kxsim::readLayout(toBytes(options.text("layout")));
    }
    readVehicles(options, parameters);
    parameters.isTurned = options.isSet("turned");
    readUnseen(options, parameters);
    parameters.hasRails = !options.isSet("no-rails");
    parameters.hasBackground = !options.isSet("no-background");
    parameters.hasObjects = !options.isSet("no-objects");
    const bool areEven = options.oneOf("flat-shape", kxreport::textList({"even", "plane"})) == QLatin1String("even");
    parameters.flatShape = areEven ? kxsim::FlatShape::Even : kxsim::FlatShape::Plane;
    readDefects(options, "flat", Defect::Kind::Flat, parameters);
    readDefects(options, "build-up", Defect::Kind::BuildUp, parameters);
    if (const std::string fault = kxsim::findFault(parameters); !fault.empty()) {
        options.fail(QString::fromStdString(fault));
    }
    return parameters;
}

int runChecked(const QStringList& arguments) {
    Options options(kName, "DIR [options]", QLatin1String(kDescription));
    addOptions(options);
    if (!options.parse(arguments)) {
        return Done;
    }
    const QString folder = options.arguments("DIR", 1, 1).front();
    if (folder.isEmpty()) {
        options.failNeed(QStringLiteral("DIR"), QStringLiteral("the name of a directory"), folder);
    }
    const auto shots = shotOptions(options);
    const Parameters parameters = shots ? Parameters{} : readParameters(options);
    Progress progress;
    progress.step(QStringLiteral("simulating"));
    const auto show = [&](double share) { progress.part(static_cast<qint64>(1000.0 * share), 1000); };
    WorkFolder work = WorkFolder::forTarget(folder);
    if (shots) {
        kxsim::writeCalibrationShots(*shots, work.qtPath());
    } else {
        kxsim::simulatePass(parameters, work.qtPath(), show);
    }
    work.finishAs(folder, QStringLiteral("truth.json")); // which stands for whole recordings
    return Done;
}

} // namespace

int runSimulate(const QStringList& arguments) {
    return runCommand(kName, [&] { return runChecked(arguments); });
}

} // namespace kxtool
