// Which measures of a store are looked at, and their limits.
#include "tools/kxmath/trend/storeMeasures.h"

#include "fleet/store/store.h"
#include "tools/kxmath/console/fileNames.h"

namespace kxtool {

namespace {

QStringList namesOf(const std::vector<KxInspect::MeasureInfo>& measures) {
    QStringList names;
    for (const KxInspect::MeasureInfo& info : measures) {
        names += QString::fromStdString(info.name);
    }
    return names;
}

} // namespace

void addMeasureOption(Options& options) {
    options.addOption("value",
                      QStringLiteral("Measure, may be given more than once: ") +
                          namesOf(kxfleet::storedMeasures(KxInspect::MeasureOf::Wheel)).join(QStringLiteral(", ")) +
                          QStringLiteral(". Default: all of them."),
                      "NAME");
}

std::vector<KxInspect::MeasureInfo> measureOptions(const Options& options) {
    const std::vector<KxInspect::MeasureInfo> all = kxfleet::storedMeasures(KxInspect::MeasureOf::Wheel);
    const QStringList names = namesOf(all);
    std::vector<KxInspect::MeasureInfo> chosen;
    for (const QString& name : options.texts("value")) {
        options.checkChoice(name, QStringLiteral("--value"), names);
        chosen.push_back(all[static_cast<std::size_t>(names.indexOf(name))]);
    }
    return chosen.empty() ? all : chosen;
}

void addLimitsOptionOfStore(Options& options) {
    options.addOption("limits", QStringLiteral("INI file with limits of measures (docs/limits.md)."), "FILE");
}

KxInspect::Limits limitsOption(const Options& options) {
    return options.isSet("limits") ? KxInspect::readLimits(toBytes(options.text("limits"))) : KxInspect::Limits();
}

} // namespace kxtool
