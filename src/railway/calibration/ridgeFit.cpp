// The ridges of the calibration object in a profile.
#include "railway/calibration/ridgeFit.h"

#include "lists/checked.h"

#include <algorithm>

namespace KxMath::detail {

namespace {

/// Least squares of y = a[0] + a[1] x + a[2] j over points of lines number j. Without a spread in j a[2] is left out.
class LineFamilyFit {
public:
    void add(double x, double y, double j) {
        const Vector<3> row{1.0, x, j};
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t k = 0; k < 3; ++k) {
                normal_[i][k] += row[i] * row[k];
            }
            right_[i] += row[i] * y;
        }
    }

    /// Solves for the first `N` coefficients. The covariance is that of a noise of 1.
    template <std::size_t N>
    Uncertain<N> solve() const {
        Uncertain<N> fit;
        fit.covariance = inverse<N>();
        for (std::size_t i = 0; i < N; ++i) {
            for (std::size_t k = 0; k < N; ++k) {
                fit.value[i] += fit.covariance[i][k] * right_[k];
            }
        }
        return fit;
    }

private:
    /// The inverse of the leading N rows and columns of the normal matrix by Gauss-Jordan elimination; the matrix is
    /// positive definite and so needs no exchange of rows. NaN or infinite where it is singular.
    template <std::size_t N>
    Matrix<N, N> inverse() const {
        Matrix<N, N> left{};
        Matrix<N, N> result{};
        for (std::size_t i = 0; i < N; ++i) {
            std::copy_n(normal_[i].begin(), N, left[i].begin());
            result[i][i] = 1.0;
        }
        for (std::size_t p = 0; p < N; ++p) {
            const double pivot = left[p][p];
            for (std::size_t k = 0; k < N; ++k) {
                left[p][k] /= pivot;
                result[p][k] /= pivot;
            }
            for (std::size_t i = 0; i < N; ++i) {
                const double factor = left[i][p];
                for (std::size_t k = 0; k < N && i != p; ++k) {
                    left[i][k] -= factor * left[p][k];
                    result[i][k] -= factor * result[p][k];
                }
            }
        }
        return result;
    }

    Matrix<3, 3> normal_{};
    Vector<3> right_{};
};

/// The lines of all flanks: of those behind and before the straight crests (intercept, slope, distance from crest to
/// crest along y), then of those before and behind the oblique one. x counts from an origin near the middle crest.
enum LineValue {
    kBehind,
    kBehindSlope,
    kBehindStep,
    kBefore,
    kBeforeSlope,
    kBeforeStep,
    kObliqueBefore,
    kObliqueBeforeSlope,
    kObliqueBehind,
    kObliqueBehindSlope,
    kLineValueCount
};

using Lines = Vector<kLineValueCount>;

constexpr int kMiddleRidge = 1;

Vector<kRidgeValueCount> ridgesOf(const Lines& l, double originX) {
    const double slopes = l[kBehindSlope] - l[kBeforeSlope];
    Vector<kRidgeValueCount> r;
    const double middleX = (l[kBefore] - l[kBehind]) / slopes;
    const double middleY = l[kBehind] + l[kBehindSlope] * middleX;
    // A move from crest to crest takes one line of a family to the next.
    const double stepX = (l[kBeforeStep] - l[kBehindStep]) / slopes;
    const double stepY = l[kBehindStep] + l[kBehindSlope] * stepX;
    // The valley behind the middle crest lies half a step behind the middle between its valleys.
    const double valleyX = (l[kBefore] + l[kBeforeStep] - l[kBehind]) / slopes;
    const double valleyY = l[kBehind] + l[kBehindSlope] * valleyX;
    const double obliqueX = (l[kObliqueBefore] - l[kObliqueBehind]) / (l[kObliqueBehindSlope] - l[kObliqueBeforeSlope]);
    r[kMiddleX] = middleX + originX;
    r[kMiddleY] = middleY;
    r[kSpanX] = 2.0 * stepX;
    r[kSpanY] = 2.0 * stepY;
    r[kDepthX] = valleyX - middleX - 0.5 * stepX;
    r[kDepthY] = valleyY - middleY - 0.5 * stepY;
    r[kObliqueX] = obliqueX + originX;
    r[kObliqueY] = l[kObliqueBefore] + l[kObliqueBeforeSlope] * obliqueX;
    return r;
}

/// The value of the line of a flank at `x`, counted from the origin.
double lineY(const Lines& l, const Flank& flank, double x) {
    if (flank.ridge == kObliqueRidge) {
        return flank.isBehind ? l[kObliqueBehind] + l[kObliqueBehindSlope] * x
                              : l[kObliqueBefore] + l[kObliqueBeforeSlope] * x;
    }
    const double steps = flank.ridge - kMiddleRidge;
    return flank.isBehind ? l[kBehind] + l[kBehindSlope] * x + l[kBehindStep] * steps
                          : l[kBefore] + l[kBeforeSlope] * x + l[kBeforeStep] * steps;
}

/// Puts the values of one fit into their place among the lines.
template <std::size_t N>
void place(const Uncertain<N>& fit, std::size_t at, Uncertain<kLineValueCount>& lines) {
    for (std::size_t i = 0; i < N; ++i) {
        lines.value[at + i] = fit.value[i];
        for (std::size_t k = 0; k < N; ++k) {
            lines.covariance[at + i][at + k] = fit.covariance[i][k];
        }
    }
}

/// Fits the lines. The covariance is that of a noise of 1.
Uncertain<kLineValueCount> fitLines(const QList<Flank>& flanks, double originX) {
    LineFamilyFit behind;
    LineFamilyFit before;
    LineFamilyFit obliqueBehind;
    LineFamilyFit obliqueBefore;
    for (const Flank& flank : flanks) {
        const bool isOblique = flank.ridge == kObliqueRidge;
        LineFamilyFit& fit =
            flank.isBehind ? (isOblique ? obliqueBehind : behind) : (isOblique ? obliqueBefore : before);
        for (const ProfilePoint& p : flank.points) {
            fit.add(p.x - originX, p.y, flank.ridge - kMiddleRidge);
        }
    }
    Uncertain<kLineValueCount> lines;
    place(behind.solve<3>(), kBehind, lines);
    place(before.solve<3>(), kBefore, lines);
    place(obliqueBefore.solve<2>(), kObliqueBefore, lines);
    place(obliqueBehind.solve<2>(), kObliqueBehind, lines);
    return lines;
}

/// The standard deviation of the points about their lines.
double noiseOf(const QList<Flank>& flanks, const Lines& lines, double originX) {
    double squares = 0.0;
    qsizetype count = 0;
    for (const Flank& flank : flanks) {
        for (const ProfilePoint& p : flank.points) {
            const double residual = p.y - lineY(lines, flank, p.x - originX);
            squares += residual * residual;
            ++count;
        }
    }
    return std::sqrt(squares / static_cast<double>(count - kLineValueCount));
}

template <std::size_t N>
void scaleCovariance(Uncertain<N>& values, double noise) {
    for (auto& row : values.covariance) {
        for (double& element : row) {
            element *= noise * noise;
        }
    }
}

/// The points with x in [from, to].
QList<ProfilePoint> cut(const QList<ProfilePoint>& points, double from, double to) {
    const auto isBefore = [](const ProfilePoint& p, double x) { return p.x < x; };
    const auto begin = std::lower_bound(points.cbegin(), points.cend(), from, isBefore);
    auto end = begin;
    while (end != points.cend() && end->x <= to) {
        ++end;
    }
    return copyOf(points.constData() + (begin - points.cbegin()), end - begin);
}

/// The x of the lowest valley in [from, to], where y is largest; `otherwise` without a point.
double valleyX(const QList<ProfilePoint>& points, double from, double to, double otherwise) {
    const QList<ProfilePoint> part = cut(points, from, to);
    const auto isHigher = [](const ProfilePoint& a, const ProfilePoint& b) { return a.y < b.y; };
    const auto valley = std::max_element(part.cbegin(), part.cend(), isHigher);
    return valley == part.cend() ? otherwise : valley->x;
}

/// Where the flanks begin and end: the apexes, and the valleys at either end, which do not count as apexes.
using FlankEnds = std::array<double, kApexCount + 2>;

FlankEnds flankEnds(const QList<ProfilePoint>& points, const Apexes& apexes) {
    constexpr double kReach = 1.2; // of the width that an end flank should have
    FlankEnds ends;
    for (std::size_t i = 0; i < kApexCount; ++i) {
        ends[i + 1] = static_cast<double>(apexes[i].x);
    }
    const double behindWidth = ends[2] - ends[1];
    const double beforeWidth = ends[3] - ends[2];
    const double obliqueWidth = (ends[7] - ends[6]) * behindWidth / beforeWidth;
    ends.front() = valleyX(points, ends[1] - kReach * beforeWidth, ends[1], ends[1]);
    ends.back() = valleyX(points, ends[7], ends[7] + kReach * obliqueWidth, ends[7]);
    return ends;
}

/// The flanks without a part of their width at either end; none when one has too few points.
QList<Flank> cutFlanks(const QList<ProfilePoint>& points, const FlankEnds& ends, double margin) {
    constexpr qsizetype kMinPoints = 5;
    QList<Flank> flanks;
    for (std::size_t i = 0; i + 1 < ends.size(); ++i) {
        const double width = margin * (ends[i + 1] - ends[i]);
        const int number = static_cast<int>(i);
        flanks.append({number / 2, number % 2 == 1, cut(points, ends[i] + width, ends[i + 1] - width)});
        if (flanks.constLast().points.size() < kMinPoints) {
            return {};
        }
    }
    return flanks;
}

/// Moves the apexes to where fitted lines meet, as far as they stay in order.
void refine(FlankEnds& ends, const Lines& lines, double originX) {
    const Flank flankTypes[] = {{0, false, {}}, {0, true, {}}, {1, false, {}}, {1, true, {}},
                                {2, false, {}}, {2, true, {}}, {3, false, {}}, {3, true, {}}};
    FlankEnds refined = ends;
    for (std::size_t i = 0; i + 1 < std::size(flankTypes); ++i) {
        const double a0 = lineY(lines, flankTypes[i], 0.0);
        const double b0 = lineY(lines, flankTypes[i + 1], 0.0);
        const double slopes = lineY(lines, flankTypes[i], 1.0) - a0 - (lineY(lines, flankTypes[i + 1], 1.0) - b0);
        refined[i + 1] = (b0 - a0) / slopes + originX;
    }
    const bool isOrdered = std::is_sorted(refined.begin(), refined.end()) &&
                           std::none_of(refined.begin(), refined.end(), [](double x) { return std::isnan(x); });
    if (isOrdered) {
        ends = refined;
    }
}

} // namespace

std::optional<RidgeFit> fitRidges(const QList<ProfilePoint>& points, const Apexes& apexes) {
    // What is left out of a flank at either end: much where the apexes are rough, little where they have been fitted.
    constexpr double kRoughMargin = 0.15;
    constexpr double kFineMargin = 0.04;
    const double originX = static_cast<double>(apexes[2].x);
    FlankEnds ends = flankEnds(points, apexes);
    QList<Flank> flanks;
    for (const double margin : {kRoughMargin, kFineMargin, kFineMargin}) {
        if (!flanks.isEmpty()) {
            refine(ends, fitLines(flanks, originX).value, originX);
        }
        flanks = cutFlanks(points, ends, margin);
        if (flanks.isEmpty()) {
            return std::nullopt;
        }
    }
    RidgeFit fit;
    Uncertain<kLineValueCount> lines = fitLines(flanks, originX);
    fit.noise = noiseOf(flanks, lines.value, originX);
    scaleCovariance(lines, fit.noise);
    fit.ridges = propagate<kRidgeValueCount>(lines, [&](const Lines& l) { return ridgesOf(l, originX); });
    fit.flanks = flanks;
    return fit;
}

RidgeFit fitRidges(const Apexes& apexes) {
    // With c the middle crest, s the span and d the depth: crests at c - s/2, c, c + s/2, valleys at c + d -+ s/4.
    const auto x = [&](std::size_t i) { return static_cast<double>(apexes[i].x); };
    const auto y = [&](std::size_t i) { return static_cast<double>(apexes[i].y); };
    RidgeFit fit;
    double squares = 0.0;
    const auto fitCoordinate = [&](const auto& v, std::size_t axis) {
        const double middle = (v(0) + v(2) + v(4)) / 3.0;
        const double depth = 0.5 * (v(1) + v(3)) - middle;
        const double span = (0.5 * (v(4) - v(0)) + 0.25 * (v(3) - v(1))) / 0.625;
        const double residuals[] = {v(0) - (middle - 0.5 * span), v(1) - (middle + depth - 0.25 * span), v(2) - middle,
                                    v(3) - (middle + depth + 0.25 * span), v(4) - (middle + 0.5 * span)};
        for (const double residual : residuals) {
            squares += residual * residual;
        }
        auto& value = fit.ridges.value;
        auto& covariance = fit.ridges.covariance;
        value[kMiddleX + axis] = middle;
        value[kSpanX + axis] = span;
        value[kDepthX + axis] = depth;
        value[kObliqueX + axis] = v(6);
        covariance[kMiddleX + axis][kMiddleX + axis] = 1.0 / 3.0;
        covariance[kSpanX + axis][kSpanX + axis] = 1.0 / 0.625;
        covariance[kDepthX + axis][kDepthX + axis] = 1.0 / 2.0 + 1.0 / 3.0;
        covariance[kDepthX + axis][kMiddleX + axis] = -1.0 / 3.0;
        covariance[kMiddleX + axis][kDepthX + axis] = -1.0 / 3.0;
        covariance[kObliqueX + axis][kObliqueX + axis] = 1.0;
    };
    fitCoordinate(x, 0);
    fitCoordinate(y, 1);
    constexpr double kRedundant = 4.0; // ten coordinates, six values
    fit.noise = std::sqrt(squares / kRedundant);
    scaleCovariance(fit.ridges, fit.noise);
    for (int i = 0; i + 1 < kApexCount; ++i) {
        const std::size_t at = static_cast<std::size_t>(i);
        fit.flanks.append({(i + 1) / 2, i % 2 == 0, listOf<ProfilePoint>({{x(at), y(at)}, {x(at + 1), y(at + 1)}})});
    }
    return fit;
}

} // namespace KxMath::detail
