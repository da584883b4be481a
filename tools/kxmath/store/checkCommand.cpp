// kxmath store check, kxmath store info: whether a store is sound, and what it holds.
#include "fleet/store/store.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/store/storeParts.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace kxtool {

namespace {

constexpr const char* kCheck = "store check";
constexpr const char* kInfo = "store info";

constexpr const char* kCheckDescription =
    R"(Says what is wrong with a store: what the engine itself finds, rows without their pass, axle or reason, a schema that
this program does not know.

Exit codes: 0 nothing was found; 2 wrong use; 3 something was found, or the store is missing or unreadable;
6 not enough memory.)";

constexpr const char* kInfoDescription =
    R"(Counts what a store holds.

JSON fields: command, schemaVersion, passes, passesWithoutTime, wheels, axles, firstTime, lastTime (UTC), versions. A
missing value is null.

Exit codes: 0 done; 2 wrong use; 3 the store is missing, unreadable, damaged or unsuitable; 4 the output cannot be
written; 6 not enough memory.)";

int runCheck(const Options& options) {
    const QString name = options.arguments("one store", 1, 1).front();
    kxfleet::Store store(toBytes(name), kxfleet::IfMissing::Refuse);
    const std::vector<std::string> faults = store.faults();
    for (const std::string& fault : faults) {
        printOutput(printable(fromBytes(fault)) + QLatin1Char('\n'));
    }
    if (!faults.empty()) {
        throw CommandError{
            BadInput,
            QStringLiteral("store '%1' is damaged, see above").arg(fromBytes(kxfleet::shownName(toBytes(name))))};
    }
    printOutput(QStringLiteral("Nothing is wrong.\n"));
    return Done;
}

QString timeText(const std::optional<std::int64_t>& milliseconds) {
    return milliseconds ? QDateTime::fromMSecsSinceEpoch(*milliseconds, Qt::UTC).toString(Qt::ISODateWithMs)
                        : QString();
}

QJsonValue timeJson(const std::optional<std::int64_t>& milliseconds) {
    return milliseconds ? QJsonValue(timeText(milliseconds)) : QJsonValue();
}

QString infoText(const kxfleet::StoreInfo& info) {
    QString text = QStringLiteral("schema version %1\n%2 passes, %3 of them without a time\n%4 wheels, %5 axles\n")
                       .arg(info.schemaVersion)
                       .arg(info.passes)
                       .arg(info.withoutTime)
                       .arg(info.wheels)
                       .arg(info.axles);
    if (info.first) {
        text += QStringLiteral("from %1 to %2\n").arg(timeText(info.first), timeText(info.last));
    }
    for (const std::string& version : info.versions) {
        text += QStringLiteral("measured by version ") + printable(fromBytes(version)) + QLatin1Char('\n');
    }
    return text;
}

QString storeJson(const kxfleet::StoreInfo& info) {
    QJsonArray versions;
    for (const std::string& version : info.versions) {
        versions.append(QString::fromStdString(version));
    }
    const QJsonObject root{{QStringLiteral("command"), QStringLiteral("store info")},
                           {QStringLiteral("schemaVersion"), QJsonValue(qint64{info.schemaVersion})},
                           {QStringLiteral("passes"), QJsonValue(qint64{info.passes})},
                           {QStringLiteral("passesWithoutTime"), QJsonValue(qint64{info.withoutTime})},
                           {QStringLiteral("wheels"), QJsonValue(qint64{info.wheels})},
                           {QStringLiteral("axles"), QJsonValue(qint64{info.axles})},
                           {QStringLiteral("firstTime"), timeJson(info.first)},
                           {QStringLiteral("lastTime"), timeJson(info.last)},
                           {QStringLiteral("versions"), versions}};
    return QString::fromUtf8(QJsonDocument(root).toJson());
}

int runInfoOf(const Options& options) {
    const QString name = options.arguments("one store", 1, 1).front();
    const OutputFile json = options.output("json");
    checkOutputs({&json}, {name});
    kxfleet::Store store(toBytes(name), kxfleet::IfMissing::Refuse);
    const kxfleet::StoreInfo info = store.info();
    if (!json.isStandardOutput()) {
        printOutput(infoText(info));
    }
    if (json.isWanted()) {
        json.write(storeJson(info));
    }
    return Done;
}

} // namespace

int runStoreCheck(const QStringList& arguments) {
    return runCommand(kCheck, [&] {
        Options options(kCheck, "STORE", QLatin1String(kCheckDescription));
        options.addArgument("STORE", QStringLiteral("The file of SQLite, or postgresql://..."));
        return options.parse(arguments) ? runCheck(options) : Done;
    });
}

int runStoreInfo(const QStringList& arguments) {
    return runCommand(kInfo, [&] {
        Options options(kInfo, "STORE [options]", QLatin1String(kInfoDescription));
        options.addArgument("STORE", QStringLiteral("The file of SQLite, or postgresql://..."));
        options.addOption("json", QStringLiteral("Writes the counts as JSON; - is the standard output."), "FILE");
        return options.parse(arguments) ? runInfoOf(options) : Done;
    });
}

} // namespace kxtool
