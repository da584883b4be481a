// A cloud seen from above, as a profile.
#include "KxMath/KxProfile.h"

#include <cmath>

namespace KxMath {

int KxProfile::makeCloudTopView(KxPointCloud<KxPointXYZ> cloud, float level) {
    points.clear(); // deliberately not clear(): the cached range stays
    for (const KxPointXYZ& p : std::as_const(cloud.points)) {
        if (std::isnan(level) || level <= p.y) { // NaN y: false
            points.append(KxPointXY(p.x, p.z));
        }
    }
    return size();
}

} // namespace KxMath
