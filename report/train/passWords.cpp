// What tables and pages say of a pass in words.
#include "report/train/passWords.h"

#include "report/elements/numbers.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <string>

namespace kxreport {

using namespace KxInspect;

namespace {

/// What has one reason in common: the numbers of pairs, or those of the wheels of each side.
struct Unjudged {
    std::string reason;
    std::vector<std::vector<int>> numbers;
};

void addNumber(const std::string& reason, size_t list, int number, std::vector<Unjudged>& all) {
    if (reason.empty()) {
        return;
    }
    auto same = std::find_if(all.begin(), all.end(), [&](const Unjudged& u) { return u.reason == reason; });
    if (same == all.end()) {
        same = all.insert(all.end(), {reason, {}});
    }
    same->numbers.resize(std::max(same->numbers.size(), list + 1));
    same->numbers[list].push_back(number);
}

std::vector<Unjudged> unjudgedPairs(const PassResult& pass) {
    std::vector<Unjudged> all;
    for (size_t i = 0; i < pass.pairs.size(); ++i) {
        addNumber(pass.pairs[i].reason, 0, static_cast<int>(i) + 1, all);
    }
    return all;
}

std::vector<Unjudged> unjudgedWheels(const PassResult& pass, std::string PassWheel::*reason) {
    std::vector<Unjudged> all;
    for (size_t side = 0; side < pass.sides.size(); ++side) {
        for (const PassWheel& wheel : pass.sides[side].wheels) {
            addNumber(wheel.*reason, side, wheel.number, all);
        }
    }
    return all;
}

QString numbered(const char* one, const char* several, const std::vector<int>& numbers) {
    return QLatin1String(numbers.size() == 1 ? one : several) + QLatin1Char(' ') + runsText(numbers);
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

QStringList notJudgedTexts(const PassResult& pass, PassQuestion question) {
    const bool isPairs = question == PassQuestion::Distance;
    const std::vector<Unjudged> all =
        isPairs ? unjudgedPairs(pass)
                : unjudgedWheels(pass, question == PassQuestion::Tread ? &PassWheel::defectsReason
                                                                       : &PassWheel::roundnessReason);
    QStringList texts;
    for (const Unjudged& unjudged : all) {
        QStringList which;
        for (size_t i = 0; i < unjudged.numbers.size(); ++i) {
            if (isPairs) {
                which.append(numbered("pair", "pairs", unjudged.numbers[i]));
            } else if (!unjudged.numbers[i].empty()) {
                which.append(
                    QStringLiteral("%1 of side %2").arg(numbered("wheel", "wheels", unjudged.numbers[i])).arg(i + 1));
            }
        }
        texts.append(which.join(QStringLiteral(", ")) + QStringLiteral(": ") + QString::fromStdString(unjudged.reason));
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
    return QStringLiteral("a profile is defective with more than %1 points farther than %2 mm off its curve, a wheel "
                          "with more than %3 defective profiles")
        .arg(QString::number(limits.pointsHigher), shortestText(limits.maxDeviation),
             QString::number(limits.minProfiles));
}

QString roundnessLimitsText(const PassResult& pass) {
    const DefectLimits& limits = *pass.defectLimits;
    return QStringLiteral("a wheel is out of round with %1 successive profiles whose tread is more than %2 mm off the "
                          "circle to one side")
        .arg(QString::number(limits.radiusProfiles), shortestText(limits.maxRadiusDeviation));
}

} // namespace kxreport
