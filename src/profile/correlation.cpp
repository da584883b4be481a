// The correlation of x and y.
#include "profile/correlation.h"

#include "KxMath/KxProfile.h"

#include <cmath>

namespace KxMath {

float detail::correlation(QList<KxPointXY>::const_iterator begin, QList<KxPointXY>::const_iterator end) {
    double sx = 0.0;
    double sy = 0.0;
    double sxx = 0.0;
    double syy = 0.0;
    double sxy = 0.0;
    for (auto p = begin; p != end; ++p) {
        const double x = static_cast<double>(p->x);
        const double y = static_cast<double>(p->y);
        sx += x;
        sy += y;
        sxx += x * x;
        syy += y * y;
        sxy += x * y;
    }
    const double n = static_cast<double>(end - begin);
    const double mx = sx / n;
    const double my = sy / n;
    return static_cast<float>(((sxy / n - mx * my) / std::sqrt(syy / n - my * my)) / std::sqrt(sxx / n - mx * mx));
}

float KxProfile::calcCorrelation() {
    return detail::correlation(points.constBegin(), points.constEnd());
}

} // namespace KxMath
