// The result of kxmath calibrate as text.
#include "tools/kxmath/calibrate/calibrationText.h"

#include <cmath>

namespace kxtool {

namespace {

using namespace KxInspect;

QString column(double value, int decimals, int width) {
    const QString text = std::isfinite(value) ? QString::number(value, 'f', decimals) : QStringLiteral("-");
    return text.rightJustified(width);
}

QString poseRow(const char* name, const PoseField& field, double value, const PoseAverage& average) {
    const int decimals = field.isAngle ? 4 : 3;
    return QStringLiteral("%1%2").arg(QLatin1String(name), -7).arg(field.isAngle ? "deg" : "mm ") +
           column(value, decimals, 12) + column(average.uncertainty.*field.value, decimals, 11) +
           column(average.deviation.*field.value, decimals, 12) + column(average.largest.*field.value, decimals, 12) +
           QLatin1Char('\n');
}

QString poseTable(const CalibrationResult& result) {
    const PoseAverage& average = result.average;
    QString text = QStringLiteral("pose             value         +-   deviation     largest\n");
    for (const PoseField& field : kPoseFields) {
        if (field.value == &SensorPose::y && !placementOf(result.task.placement).findsY) {
            text += QStringLiteral("y      mm ") + column(average.pose.y, 3, 12) +
                    (result.hasY() ? QStringLiteral("  as given\n") : QStringLiteral("  not given\n"));
            text += poseRow("foundY", field, average.foundY, average);
        } else {
            text += poseRow(field.name, field, average.pose.*field.value, average);
        }
    }
    return text;
}

QString flankTable(const FlankResiduals& flanks) {
    QString text = QStringLiteral("flank                  points  mean, mm       +-   rms, mm  largest, mm\n");
    for (std::size_t i = 0; i < flanks.size(); ++i) {
        const FlankResidual& flank = flanks[i];
        text += QString::fromStdString(flankName(i)).leftJustified(21);
        text += QString::number(flank.points).rightJustified(8);
        text += column(flank.mean, 3, 10) + column(flank.uncertainty, 3, 9) + column(flank.rms, 3, 10) +
                column(flank.largest, 3, 13);
        text += flank.isOff()      ? QStringLiteral("  off\n")
                : flank.isJudged() ? QStringLiteral("\n")
                                   : QStringLiteral("  not judged\n");
    }
    return text;
}

} // namespace

QString calibrationText(const CalibrationResult& result) {
    int outliers = 0;
    for (const ProfilePose& profile : result.profiles) {
        outliers += profile.outliers;
    }
    return QStringLiteral("position %1, profiles with a pose: %2 of %3, sensor at %4 y than the crests, outliers: %5\n")
               .arg(result.task.placement)
               .arg(result.average.profiles)
               .arg(result.profiles.size())
               .arg(result.side == SensorSide::SmallerY ? QStringLiteral("smaller") : QStringLiteral("larger"))
               .arg(outliers) +
           QStringLiteral("+- is half the width of the 95 % interval; deviation (of single profiles), rms and largest "
                          "describe the data and have none\n") +
           (result.task.objectError.isSet() ? QStringLiteral("the intervals contain the error of the object as told\n")
                                            : QString()) +
           poseTable(result) + flankTable(result.flanks);
}

} // namespace kxtool
