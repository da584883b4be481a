// --fail-on: verdicts with which a run fails.
#include "tools/kxmath/console/failOn.h"

#include "tools/kxmath/console/console.h"

#include <algorithm>

namespace kxtool {

namespace {

constexpr const char* kOption = "fail-on";

QString nameOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::Out:
        return QStringLiteral("out");
    case Verdict::Defect:
        return QStringLiteral("defect");
    case Verdict::Unconfirmed:
        return QStringLiteral("unconfirmed");
    case Verdict::Warning:
        return QStringLiteral("warning");
    case Verdict::Alarm:
        return QStringLiteral("alarm");
    case Verdict::Shift:
        return QStringLiteral("shift");
    case Verdict::NotMeasured:
        return QStringLiteral("not-measured");
    case Verdict::NotJudged:
        break;
    }
    return QStringLiteral("not-judged");
}

} // namespace

void FailOn::declare(Options& options, const std::vector<PossibleVerdict>& possible) {
    QStringList meanings;
    for (const PossibleVerdict& p : possible) {
        meanings.append(QStringLiteral("%1 (%2)").arg(nameOf(p.verdict), QLatin1String(p.when)));
    }
    options.addOption(
        kOption,
        QStringLiteral("Ends with exit code 5 when one of these verdicts was given, separated by commas: ") +
            meanings.join(QStringLiteral(", ")) + QStringLiteral(". All outputs are written before."),
        "LIST");
}

FailOn::FailOn(const Options& options, const std::vector<PossibleVerdict>& possible) {
    if (!options.isSet(kOption)) {
        return;
    }
    QStringList known;
    for (const PossibleVerdict& p : possible) {
        known.append(nameOf(p.verdict));
    }
    for (const QString& list : options.texts(kOption)) {
        for (const QString& name : list.split(QLatin1Char(','))) {
            options.checkChoice(name.trimmed(), QStringLiteral("--fail-on"), known);
            verdicts_.push_back(possible[static_cast<std::size_t>(known.indexOf(name.trimmed()))].verdict);
        }
    }
}

bool FailOn::holds(Verdict verdict) const {
    return std::find(verdicts_.begin(), verdicts_.end(), verdict) != verdicts_.end();
}

ExitCode FailOn::exitCode(const char* command, ExitCode code, const std::vector<GivenVerdict>& given) const {
    QStringList met;
    for (const GivenVerdict& g : given) {
        if (g.count > 0 && holds(g.verdict)) {
            met.append(QStringLiteral("%1 x %2").arg(QString::number(g.count), nameOf(g.verdict)));
        }
    }
    if (code != Done || met.isEmpty()) {
        return code;
    }
    printLine(command, QStringLiteral("--fail-on: ") + met.join(QStringLiteral(", ")));
    return FailOnMet;
}

} // namespace kxtool
