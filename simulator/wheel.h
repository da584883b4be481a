// Intersection of rays with a wheel and its tread defects.
#pragma once

#include "simulator/parameters.h"
#include "simulator/revolution.h"
#include "simulator/vector.h"
#include "simulator/wheelContour.h"

#include <optional>
#include <vector>

namespace kxsim {

/// A change of the tread over part of the circumference and of the width.
struct TreadPatch {
    double angle; ///< radians from the lowest point of the wheel as it is above the sensor, forward positive
    double height; ///< of a build-up; of a flat 0
    double halfLength; ///< mm along the circumference
};

/// The extent of patches on the tread, from the back face.
inline constexpr double kPatchFrom = 50.0; // mm
inline constexpr double kPatchTo = 105.0; // mm

/// A spot of dirt on the tread, thickest in its middle.
struct DirtSpot {
    double angle; ///< as that of a patch
    double axial; ///< of its middle, mm from the back face
    double radius; ///< mm, where it is e times thinner
    double thickness; ///< mm
};

/// Between these distances from the back face are the middles of spots of dirt.
inline constexpr double kDirtFrom = 35.0; // mm
inline constexpr double kDirtTo = 125.0; // mm

class Wheel {
public:
    /// @param side 1 for a wheel on the left, -1 on the right
    /// @param backFace distance of the back face from the track centre
    Wheel(const WheelShape& shape, int side, double backFace);

    void addFlat(const TreadPatch& flat, FlatShape shape);
    void addBuildUp(const TreadPatch& buildUp);
    void addDirt(const DirtSpot& spot) { dirt_.push_back(spot); }

    /// The first hit before `end` with the axle `axleX` along the track; `end` when there is none.
    double hit(const Ray& ray, double axleX, double end) const;
    /// How much earlier than the clean wheel a ray of unit direction that hits it at `distance` meets dirt.
    double dirtBefore(const Ray& ray, double axleX, double distance) const;
    /// How deep the middle of a flat is at the tape circle, in mm as its length.
    double flatDepth(double length) const;
    double maxRadius() const { return surface_.maxRadius(); }

    const WheelShape shape;
    const Contour contour;
    const int side;
    const double backFace;

private:
    struct Flat {
        TreadPatch patch;
        FlatShape shape;
    };
    struct BuildUp {
        TreadPatch patch;
        SurfaceOfRevolution surface;
    };

    AxialRay toAxial(const Ray& ray, double axleX) const;
    double bottomRadius(const Flat& flat, double axial) const;
    double bottomBehind(const Flat& flat, const AxialRay& ray, double t, double turn) const;
    std::optional<double> leaveFlats(const AxialRay& ray, double t, double turn) const;

    SurfaceOfRevolution surface_;
    std::vector<Flat> flats_;
    std::vector<BuildUp> buildUps_;
    std::vector<DirtSpot> dirt_;
};

} // namespace kxsim
