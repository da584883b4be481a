// The heads of tables on the page of a pass.
#include "report/train/columnHeads.h"

#include "report/train/sheetColumns.h"

#include <array>

namespace kxreport {

namespace {

struct Head {
    const char* key; ///< of the column, without its side
    const char* text;
};

constexpr std::array kHeads = {Head{"wheel", "wheel"},
                               Head{"profiles", "profiles"},
                               Head{"first_record", "first record"},
                               Head{"last_record", "last record"},
                               Head{"chosen_profile", "chosen profile"},
                               Head{"points", "points below the level line"},
                               Head{"distance", "distance (back-to-back), mm"},
                               Head{"deviation", "deviation from the nominal distance, mm"},
                               Head{"yaw", "yaw, mrad"},
                               Head{"chord", "chord, mm"},
                               Head{"judged_profiles", "profiles judged"},
                               Head{"defective_profiles", "profiles defective"},
                               Head{"defective_numbers", "numbers of defective profiles"},
                               Head{"deviating_points", "points deviating"},
                               Head{"largest_deviation", "largest deviation, mm"},
                               Head{"tread_limit", "allowed deviation, mm"},
                               Head{"compared_profiles", "profiles compared"},
                               Head{"off_circle_numbers", "numbers of profiles off the circle"},
                               Head{"radius_deviation", "out of round by, mm"},
                               Head{"radius_deviation_low", "95 % interval from, mm"},
                               Head{"radius_deviation_high", "95 % interval to, mm"},
                               Head{"roundness_limit", "allowed out of round, mm"},
                               Head{"seen", "arc seen, degrees"}};

QString headOf(const PairColumn& column) {
    const QString side = column.key.endsWith(QLatin1String("_1"))   ? QStringLiteral("side 1: ")
                         : column.key.endsWith(QLatin1String("_2")) ? QStringLiteral("side 2: ")
                                                                    : QString();
    const QString key = side.isEmpty() ? column.key : column.key.chopped(2);
    for (const Head& head : kHeads) {
        if (key == QLatin1String(head.key)) {
            return side + QLatin1String(head.text);
        }
    }
    return side.isEmpty() ? column.title : side + column.title.chopped(2);
}

} // namespace

QStringList headsOf(const std::vector<PairColumn>& columns) {
    QStringList heads;
    for (const PairColumn& column : columns) {
        heads.append(headOf(column));
    }
    return heads;
}

QString headOfMeasure(const std::string& name) {
    for (const KxInspect::MeasureInfo& measure : KxInspect::measureInfos()) {
        if (measure.name == name) {
            return titleOf(measure) + QStringLiteral(", ") + QString::fromStdString(measure.unit);
        }
    }
    return QString::fromStdString(name);
}

} // namespace kxreport
