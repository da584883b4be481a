// Circles and their algebraic fit (I. Kasa, A circle fitting procedure and its error analysis, IEEE Trans. Instrum. Meas.
// 25, 1976).
#include "KxMath/KxPointCloud.h"
#include "KxMath/KxPrimitives.h"

#include "rounding/bounds.h"

#include <cmath>

namespace KxMath {

using detail::kNaN;

KxCircle::KxCircle() : x(kNaN), y(kNaN), radius(kNaN) {}

KxCircle::KxCircle(float x, float y, float radius) : x(x), y(y), radius(radius) {}

bool KxCircle::calcFromPointCloud(KxPointCloud<KxPointXY>& cloud) {
    const QList<KxPointXY>& points = cloud.points;
    const float n = static_cast<float>(points.size());
    float sumX = 0.0f;
    float sumY = 0.0f;
    for (const KxPointXY& p : points) {
        sumX += p.x;
        sumY += p.y;
    }
    const float meanX = sumX / n;
    const float meanY = sumY / n;

    float suu = 0.0f;
    float svu = 0.0f;
    float suv = 0.0f;
    float svv = 0.0f;
    float su3 = 0.0f;
    float sv3 = 0.0f;
    for (const KxPointXY& p : points) {
        const float u = p.x - meanX;
        const float v = p.y - meanY;
        const float square = p.x * p.x + p.y * p.y;
        suu += p.x * u;
        svu += p.y * u;
        suv += p.x * v;
        svv += p.y * v;
        su3 += u * square;
        sv3 += square * v;
    }
    // Solved by determinants in single precision. The rounding is part of the result, so neither the elimination of
    // KxProfile::calcPolynomCoeffs() nor that of the calibration, both in double precision and each in an order of its
    // own, can take its place.
    const float m11 = 2.0f * suu;
    const float m12 = 2.0f * suv;
    const float m21 = 2.0f * svu;
    const float m22 = 2.0f * svv;
    const float det = m22 * m11 - m12 * m21;
    if (det == 0.0f) {
        return false;
    }
    x = (m22 * su3 - m21 * sv3) / det;
    y = (m11 * sv3 - su3 * m12) / det;

    float squaresX = 0.0f;
    float squaresY = 0.0f;
    for (const KxPointXY& p : points) {
        const float dx = p.x - x;
        const float dy = p.y - y;
        squaresX += dx * dx;
        squaresY += dy * dy;
    }
    radius = std::sqrt((squaresY + squaresX) / n);
    return true;
}

} // namespace KxMath
