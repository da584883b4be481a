// What a pass was measured with: files, limits, settings.
#include "report/train/measuredWith.h"

#include "report/train/columnHeads.h"
#include "report/train/vehicleTable.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace kxreport {

using namespace KxInspect;

namespace {

/// The recordings that were read, those of further sensors too.
std::vector<PassSide> wholeRecordings(const PassResult& pass) {
    std::vector<PassSide> recordings = pass.sides;
    recordings.insert(recordings.end(), pass.further.begin(), pass.further.end());
    std::erase_if(recordings, [](const PassSide& side) { return !side.missing.empty(); });
    return recordings;
}

QString orderText(ConsistOrder order) {
    switch (order) {
    case ConsistOrder::Listed:
        return QStringLiteral("it was said that its first vehicle passed first");
    case ConsistOrder::Turned:
        return QStringLiteral("it was said that its last vehicle passed first");
    case ConsistOrder::Found:
        break;
    }
    return QStringLiteral("which of its ends passed first was found from the gaps between the axles");
}

/// What the result says of its origin: a row for each file.
void addIdentity(const PassResult& pass, Page& page) {
    page.heading(QStringLiteral("Identity"));
    const QString said = identityText(pass);
    page.paragraph(said.isEmpty() ? QStringLiteral("Nothing was said of where and when the pass was.") : said);
    std::vector<std::vector<Cell>> rows;
    const auto add = [&](const char* what, const InputFile& file) {
        rows.push_back({{QLatin1String(what)},
                        {QString::fromStdString(file.name)},
                        {QString::fromStdString(file.sha256)},
                        {QString::number(file.bytes)}});
    };
    for (const PassSide& side : wholeRecordings(pass)) {
        add("recording", {side.file, side.bytes, side.sha256});
    }
    const std::pair<const char*, const std::optional<InputFile>*> files[] = {
        {"settings", &pass.identity.settings.file},
        {"defects", pass.identity.defects ? &pass.identity.defects->file : nullptr},
        {"consist", &pass.identity.consist},
        {"limits", &pass.identity.limits},
        {"contour", &pass.identity.contour}};
    for (const auto& [what, file] : files) {
        if (file != nullptr && *file) {
            add(what, **file);
        }
    }
    constexpr int kTextColumns = 3;
    page.table({QStringLiteral("File"), QStringLiteral("Name"), QStringLiteral("SHA-256"), QStringLiteral("Bytes")},
               rows, kTextColumns);
    if (const auto& order = pass.identity.consistOrder) {
        page.paragraph(QStringLiteral("The consist is the list of vehicles; %1.").arg(orderText(*order)));
    }
    page.paragraph(QStringLiteral("Measured by version %1.").arg(QString::fromStdString(pass.identity.version)));
}

/// The class of vehicles that limits are for.
QString classText(const PassAssessment& assessment, const MeasureLimits& limits) {
    if (!limits.vehicleClass.empty()) {
        return QString::fromStdString(limits.vehicleClass);
    }
    const auto isOfClass = [&](const MeasureLimits& other) {
        return other.measure == limits.measure && !other.vehicleClass.empty();
    };
    return std::any_of(assessment.limits.begin(), assessment.limits.end(), isOfClass) ? QStringLiteral("all others")
                                                                                      : QStringLiteral("all");
}

/// The limits that were given, also those that no value of the pass has.
void addLimits(const PassAssessment& assessment, Page& page) {
    std::vector<std::vector<Cell>> rows;
    for (const MeasureLimits& limits : assessment.limits) {
        std::vector<Cell> row = {{headOfMeasure(limits.measure)}, {classText(assessment, limits)}};
        const LimitBounds& bounds = limits.bounds;
        for (const auto& bound : {bounds.alarmLow, bounds.warningLow, bounds.warningHigh, bounds.alarmHigh}) {
            row.push_back({bound ? QString::number(*bound) : QStringLiteral("-")});
        }
        rows.push_back(row);
    }
    page.heading(QStringLiteral("Limits that were judged by"));
    constexpr int kTextColumns = 2;
    page.table({QStringLiteral("measure, unit of its limits"), QStringLiteral("class of vehicles"),
                QStringLiteral("alarm below"), QStringLiteral("warning below"), QStringLiteral("warning above"),
                QStringLiteral("alarm above")},
               rows, kTextColumns);
}

/// All values that were in force, also those that no file gives.
void addSettings(const PassResult& pass, Page& page) {
    std::vector<std::vector<Cell>> rows;
    const auto add = [&](const char* of, const SettingsIdentity& settings) {
        std::vector<SettingValue> values = settings.values;
        std::sort(values.begin(), values.end(), [](const auto& a, const auto& b) { return a.key < b.key; });
        for (const SettingValue& setting : values) {
            const auto* const number = std::get_if<double>(&setting.value);
            rows.push_back({{QLatin1String(of)},
                            {QString::fromStdString(setting.key)},
                            {number != nullptr ? QString::number(*number, 'g', 9)
                                               : QString::fromStdString(std::get<std::string>(setting.value))}});
        }
    };
    add("station", pass.identity.settings);
    if (pass.identity.defects) {
        add("defects", *pass.identity.defects);
    }
    if (rows.empty()) {
        return;
    }
    page.heading(QStringLiteral("Settings that were measured with"));
    constexpr int kTextColumns = 2;
    page.table({QStringLiteral("of"), QStringLiteral("key"), QStringLiteral("value")}, rows, kTextColumns);
}

} // namespace

void addMeasuredWith(const PassResult& pass, Page& page) {
    addIdentity(pass, page);
    if (pass.assessment) {
        addLimits(*pass.assessment, page);
    }
    addSettings(pass, page);
}

} // namespace kxreport
