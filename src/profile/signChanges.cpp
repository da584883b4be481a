// Where y changes its sign.
#include "profile/signChanges.h"

#include "KxMath/KxProfile.h"

namespace KxMath {

int KxProfile::findZeros(float* const xs) {
    const QList<KxPointXY>& list = points;
    int count = 0;
    for (qsizetype i = 1; i < list.size(); ++i) {
        if (detail::changesSign(list[i - 1].y, list[i].y)) {
            xs[count] = list[i].x;
            ++count;
        }
    }
    return count;
}

} // namespace KxMath
