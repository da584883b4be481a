// Rays on surfaces of revolution.
#pragma once

#include "simulator/vector.h"
#include "simulator/wheelContour.h"

#include <cstddef>
#include <vector>

namespace kxsim {

/// A ray in the frame of a surface of revolution: along the axis (`axial`) and in the two directions across it.
struct AxialRay {
    double axial;
    double axialStep;
    double across[2];
    double acrossStep[2];

    double axialAt(double t) const { return axial + t * axialStep; }
    double acrossAt(int i, double t) const { return across[i] + t * acrossStep[i]; }
};

/// A half-open range of ray parameters in which hits count.
struct HitRange {
    double from;
    double to;
};

/// The surface that a contour sweeps when it turns about the axis, as exact cone frusta and ring discs in a tree of
/// bounding rings.
class SurfaceOfRevolution {
public:
    explicit SurfaceOfRevolution(const Contour& contour);

    /// The parameter of the first hit in `range`; `range.to` when there is none.
    double hit(const AxialRay& ray, HitRange range) const;
    /// The radius at an axial position of the outside; 0 beyond the ends.
    double outerRadius(double axial) const;
    double maxRadius() const { return nodes_.front().maxRadius; }

private:
    /// The ring around a run of segments; inner nodes have their children at 2i + 1 and 2i + 2.
    struct Node {
        double minAxial;
        double maxAxial;
        double minRadius;
        double maxRadius;
        int segment; ///< -1 in inner nodes, -2 where there is none
    };

    void build(std::size_t node, int first, int last);
    double hitNode(std::size_t node, const AxialRay& ray, const double (&radiusSquared)[3], HitRange range) const;

    Contour contour_;
    std::vector<Node> nodes_;
};

} // namespace kxsim
