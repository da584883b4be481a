// What tables and pages say of a pass in words.
#include "report/train/passWords.h"

#include "report/elements/numbers.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <array>

namespace kxreport {

using namespace KxInspect;

namespace {

/// What has one reason in common: the numbers of the pairs, in a list for each side where it is about wheels.
struct Unjudged {
    QString reason;
    std::array<std::vector<int>, 2> pairs = {};
};

std::vector<Unjudged> unjudged(const PassResult& pass, PassQuestion question) {
    std::vector<Unjudged> all;
    const size_t lists = question == PassQuestion::Distance ? 1 : pass.sides.size();
    for (size_t pair = 0; pair < pass.pairs.size(); ++pair) {
        for (size_t side = 0; side < lists; ++side) {
            const QString reason = whyNotJudged(pass, question, pair, side);
            if (reason.isEmpty()) {
                continue;
            }
            auto same = std::find_if(all.begin(), all.end(), [&](const Unjudged& u) { return u.reason == reason; });
            if (same == all.end()) {
                same = all.insert(all.end(), {reason});
            }
            same->pairs[side].push_back(static_cast<int>(pair) + 1);
        }
    }
    return all;
}

} // namespace

QString countText(const PassResult& pass, PassQuestion question) {
    const VerdictCount count = pass.count(question);
    const auto text = [&](const char* judged, const char* bad) {
        return QStringLiteral("%1 of %2 ").arg(count.judged).arg(count.asked) + QLatin1String(judged) +
               (count.judged > 0 ? QStringLiteral(", %1 ").arg(count.bad) + QLatin1String(bad) : QString());
    };
    switch (question) {
    case PassQuestion::Tread:
        return text("treads judged", "defective");
    case PassQuestion::Roundness:
        return text("wheels judged for roundness", "out of round");
    case PassQuestion::Distance:
        break;
    }
    return text("distances measured", "out of tolerance");
}

QString whyNotJudged(const PassResult& pass, PassQuestion question, size_t pair, size_t side) {
    if (question == PassQuestion::Distance) {
        return QString::fromStdString(pass.pairs[pair].reason);
    }
    const PassWheel* const wheel = pass.wheelOf(pass.pairs[pair], side);
    if (wheel == nullptr) {
        return QStringLiteral("the sensor did not see the wheel");
    }
    return QString::fromStdString(question == PassQuestion::Tread ? wheel->defectsReason : wheel->roundnessReason);
}

QStringList notJudgedTexts(const PassResult& pass, PassQuestion question) {
    QStringList texts;
    for (const Unjudged& some : unjudged(pass, question)) {
        QStringList which;
        for (size_t side = 0; side < some.pairs.size(); ++side) {
            if (question == PassQuestion::Distance && side == 0) {
                which.append(pairsText(some.pairs[side]));
            } else if (!some.pairs[side].empty()) {
                which.append(QStringLiteral("%1 on side %2").arg(pairsText(some.pairs[side])).arg(side + 1));
            }
        }
        texts.append(which.join(QStringLiteral(", ")) + QStringLiteral(": ") + some.reason);
    }
    return texts;
}

void addCount(const PassResult& pass, PassQuestion question, Page& page) {
    page.paragraph(countText(pass, question) + QLatin1Char('.'));
    for (const QString& text : notJudgedTexts(pass, question)) {
        page.warning(QStringLiteral("not judged, ") + text + QLatin1Char('.'));
    }
}

QString toleranceText(const PassResult& pass) {
    return QStringLiteral("%1 mm, %2 mm to both sides").arg(shortestText(pass.nominal), shortestText(pass.tolerance));
}

QString pairsText(const std::vector<int>& ascending) {
    return (ascending.size() == 1 ? QStringLiteral("pair ") : QStringLiteral("pairs ")) + runsText(ascending);
}

QString runsText(const std::vector<int>& ascending) {
    QStringList runs;
    for (size_t i = 0; i < ascending.size();) {
        size_t last = i;
        while (last + 1 < ascending.size() && ascending[last + 1] == ascending[last] + 1) {
            ++last;
        }
        const QString first = QString::number(ascending[i]);
        runs.append(last == i ? first : first + QLatin1Char('-') + QString::number(ascending[last]));
        i = last + 1;
    }
    return runs.join(QLatin1Char(' '));
}

QString defectLimitsText(const PassResult& pass) {
    const DefectLimits& limits = *pass.defectLimits;
    return QStringLiteral(
               "a profile is defective with more than %1 points farther than %2 mm off its curve, or than four "
               "times their noise, a wheel with more than %3 defective profiles")
        .arg(QString::number(limits.pointsHigher), shortestText(limits.maxDeviation),
             QString::number(limits.minProfiles));
}

QString roundnessLimitsText(const PassResult& pass) {
    const DefectLimits& limits = *pass.defectLimits;
    return QStringLiteral(
               "a wheel is out of round with %1 successive profiles whose tread is more than %2 mm off the "
               "circle to one side, or than five times its standard error, unless dirt of 0.1 mm explains it as "
               "well as a flat (dirty); seen are parts of the "
               "circumference, from the place that stands on the rail before the sensor, nothing is known of "
               "the rest")
        .arg(QString::number(limits.radiusProfiles), shortestText(limits.maxRadiusDeviation));
}

QString shapeText(const KxInspect::Roundness& roundness) {
    return roundness.isOut     ? QStringLiteral("out of round")
           : roundness.isDirty ? QStringLiteral("round, dirty")
                               : QStringLiteral("round");
}

QString arcsText(const std::vector<SeenArc>& arcs) {
    QStringList texts;
    for (const SeenArc& arc : arcs) {
        texts.append(QStringLiteral("from %1 to %2").arg(fixedText(arc.from, 0), fixedText(arc.to, 0)));
    }
    return texts.join(QStringLiteral(", "));
}

} // namespace kxreport
