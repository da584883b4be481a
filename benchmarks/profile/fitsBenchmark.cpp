// Lines, circles and polynomials, compared with only the sums of their definitions, in the same order.
#include "profile/jobs.h"

#include <array>
#include <cmath>

namespace kxbench {

namespace {

void addLine() {
    addProfile(
        "line fit", "kx",
        [](ProfileJob& j) {
            KxMath::KxLine line;
            j.profile.calcLine(line);
            j.values = {static_cast<double>(line.k)};
        },
        digestNearly);
    addProfile(
        "line fit", "limit_ordered_sums",
        [](ProfileJob& j) {
            float sxy = 0;
            float sxx = 0;
            float sx = 0;
            float sy = 0;
            for (const KxPointXY& p : std::as_const(j.profile.points)) {
                sxy += p.x * p.y;
                sxx += p.x * p.x;
                sx += p.x;
                sy += p.y;
            }
            j.values = {static_cast<double>(sxy + sxx + sx + sy)};
        },
        nothing<ProfileJob>);
}

/// The sums of the algebraic fit; the radius needs two more.
float circleSums(const Points& points) {
    float sx = 0;
    float sy = 0;
    for (const KxPointXY& p : points) {
        sx += p.x;
        sy += p.y;
    }
    const float meanX = sx / static_cast<float>(points.size());
    const float meanY = sy / static_cast<float>(points.size());
    std::array<float, 6> sums{};
    for (const KxPointXY& p : points) {
        const float u = p.x - meanX;
        const float v = p.y - meanY;
        const float square = p.x * p.x + p.y * p.y;
        sums[0] += p.x * u;
        sums[1] += p.y * u;
        sums[2] += p.x * v;
        sums[3] += p.y * v;
        sums[4] += u * square;
        sums[5] += square * v;
    }
    float squaresX = 0;
    float squaresY = 0;
    for (const KxPointXY& p : points) {
        squaresX += (p.x - sums[0]) * (p.x - sums[0]);
        squaresY += (p.y - sums[1]) * (p.y - sums[1]);
    }
    return sums[2] + sums[3] + sums[4] + sums[5] + squaresX + squaresY;
}

void addCircle() {
    addProfile(
        "circle fit", "kx",
        [](ProfileJob& j) {
            KxMath::KxCircle circle;
            j.profile.calcCircle(circle);
            j.values = {static_cast<double>(circle.radius)};
        },
        digestNearly);
    addProfile(
        "circle fit", "limit_ordered_sums",
        [](ProfileJob& j) { j.values = {static_cast<double>(circleSums(j.profile.points))}; }, nothing<ProfileJob>);
}

[[maybe_unused]] const bool isRegistered = [] {
    addLine();
    addCircle();
    for (const int degree : {5, 20}) {
        const std::string name = "polynomial fit, degree " + std::to_string(degree);
        add<ProfileJob>(
            name, kProfilePoints, "kx", 20,
            [](ProfileJob& j) {
                fillProfile(j);
                for (KxPointXY& p : j.profile.points) {
                    p.x /= 40.0f; // high powers stay in range
                }
            },
            [=](ProfileJob& j) { j.profile.polynomFit(degree); },
            [](ProfileJob& j) { return digestWithin(heightsOf(j.profile.points), 1e-4); });
    }
    return true;
}();

} // namespace

} // namespace kxbench
