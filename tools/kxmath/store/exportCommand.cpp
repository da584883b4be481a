// kxmath store export: a row per wheel as CSV.
#include "fleet/store/store.h"
#include "report/elements/numbers.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/csv.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/store/storeParts.h"

namespace kxtool {

namespace {

using KxInspect::LimitVerdict;

constexpr const char* kName = "store export";

constexpr const char* kDescription =
    R"(Writes a row per wheel as CSV, in the order of time; passes without a time come last. Values are in mm, with their
95 % intervals, the reason where one is missing, and the verdict by limits. A missing value is an empty field.

Exit codes: 0 done; 2 wrong use; 3 the store is missing, unreadable, damaged or unsuitable; 4 the output cannot be
written; 6 not enough memory.)";

/// How a field is written.
enum class Form { Plain, Verdict };

QString fieldText(const kxfleet::Field& field, Form form) {
    if (const auto* const whole = std::get_if<std::int64_t>(&field)) {
        return form == Form::Verdict ? QLatin1String(KxInspect::textOf(static_cast<LimitVerdict>(*whole)))
                                     : QString::number(*whole);
    }
    if (const auto* const real = std::get_if<double>(&field)) {
        return kxreport::shortestText(static_cast<float>(*real));
    }
    const auto* const text = std::get_if<std::string>(&field);
    return text != nullptr ? csvField(QString::fromStdString(*text)) : QString();
}

QString table(kxfleet::Database& database) {
    QStringList titles;
    std::vector<Form> forms;
    std::string columns;
    std::string joins;
    const auto add = [&](const std::string& column, const std::string& title, Form form = Form::Plain) {
        columns += (columns.empty() ? "" : ", ") + column;
        titles += QString::fromStdString(title);
        forms.push_back(form);
    };
    for (const char* const name :
         {"key", "station", "line", "track", "direction", "time", "time_ms", "speed", "vehicle_order", "version"}) {
        add(std::string("p.") + name, name);
    }
    for (const char* const name : {"number", "vehicle", "vehicle_class", "axle", "side"}) {
        add(std::string("w.") + name, name);
    }
    add("w.verdict", "verdict", Form::Verdict);
    for (const KxInspect::MeasureInfo& info : kxfleet::storedMeasures(KxInspect::MeasureOf::Wheel)) {
        const std::string name = kxfleet::columnOf(info.name);
        for (const char* const end : {"", "_low", "_high"}) {
            add("w." + name + end, name + end);
        }
        add("r_" + name + ".text", name + "_reason");
        add("w." + name + "_verdict", name + "_verdict", Form::Verdict);
        joins.append(" LEFT JOIN reason r_").append(name).append(" ON r_").append(name);
        joins.append(".id = w.").append(name).append("_reason");
    }
    QString text = csvLine(titles);
    database.run("SELECT " + columns + " FROM wheel w JOIN pass p ON p.id = w.pass" + joins +
                     " ORDER BY p.time_ms IS NULL, p.time_ms, p.key, w.number, w.side",
                 {}, [&](const kxfleet::Row& row) {
                     QStringList fields;
                     for (std::size_t i = 0; i < row.size(); ++i) {
                         fields += fieldText(row[i], forms[i]);
                     }
                     text += csvLine(fields);
                 });
    return text;
}

int run(const Options& options) {
    const QString name = options.arguments("one store", 1, 1).front();
    const OutputFile out = options.output("out");
    checkOutputs({&out}, {name});
    kxfleet::Store store(toBytes(name), kxfleet::IfMissing::Refuse);
    const QString text = table(store.database());
    if (out.isWanted()) {
        out.write(text);
    } else {
        printOutput(text);
    }
    return Done;
}

} // namespace

int runStoreExport(const QStringList& arguments) {
    return runCommand(kName, [&] {
        Options options(kName, "STORE [options]", QLatin1String(kDescription));
        options.addArgument("STORE", QStringLiteral("The file of SQLite, or postgresql://..."));
        options.addOption("out", QStringLiteral("Writes the rows to a file; - is the standard output, the default."),
                          "FILE");
        return options.parse(arguments) ? run(options) : Done;
    });
}

} // namespace kxtool
