// What tables and pages say of a pass in words.
#include "report/train/passWords.h"

#include "report/elements/numbers.h"

#include <QtCore/QStringList>

namespace kxreport {

using KxInspect::DefectLimits;
using KxInspect::PassResult;

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
