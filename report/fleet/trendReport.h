// The page of trends.
#pragma once

#include "report/elements/mark.h"
#include "report/elements/pageOrigin.h"
#include "report/elements/plot.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>
#include <vector>

namespace kxreport {

/// A measure of a wheel over time.
struct TrendCurve {
    QString wheel; ///< "axle 1 left"
    QString measure; ///< with its unit: "flangeThickness, mm"
    QString words; ///< what the trend says, or why there is none
    Mark mark = Mark::None;
    Points readings; ///< x: days before the last reading of the vehicle, 0 or less
    Points outliers;
    Points line; ///< of the trend, and ahead of it: two points, or none
    std::vector<double> lifeStarts; ///< days
    std::optional<double> low; ///< limit
    std::optional<double> high;
};

struct TrendVehicle {
    QString number;
    QString lastDay; ///< "2026-03-29"
    std::vector<TrendCurve> curves;
};

/// Everything that the page shows.
struct TrendPage {
    QString verdict; ///< what is to be read first
    Mark mark = Mark::None;
    QStringList warnings; ///< shifts of sensors, what is missing
    QStringList columns;
    std::vector<QStringList> rows; ///< a wheel and measure each
    int textColumns = 0; ///< from the left
    std::vector<TrendVehicle> vehicles; ///< those with pictures
    int further = 0; ///< vehicles without
};

/// A self-contained HTML page: what is due, a table of all wheels, and small pictures of each vehicle.
QString trendReport(const TrendPage& page, const PageOrigin& origin = {});

} // namespace kxreport
