// The profiles of a wheel in its own directions: across, along the track and down.
#pragma once

#include "inspect/train/axleFit.h"
#include "inspect/train/axleYaw.h"
#include "inspect/train/laserPlane.h"
#include "inspect/train/treadTable.h"
#include "inspect/train/wheelCollector.h"

#include <KxMath/KxPrimitives.h>

#include <optional>
#include <vector>

namespace KxInspect::detail {

/// A wheel to judge: its profiles, in parallel lists.
struct WheelView {
    const std::vector<PointList>& profiles; ///< whole
    const std::vector<PointList>& treads; ///< what lies between the lines, cutTread()
    const std::vector<float>& places; ///< along the pass, mm
    KxMath::KxLine reference; ///< trace of the back face
    Askew askew = {}; ///< how the wheel stands
    double lean = 0.0; ///< of its back face against the reference line
    LaserPlane plane = {}; ///< of the sensor
};

/// The tips of the flange in the profiles that show it.
struct FlangeTips {
    std::vector<ProfileTip> tips;
    double across = 0.0; ///< behind the back face, mm; the median
    double error = 0.0; ///< of a tip, from the noise of its points, mm; the median
};

/// The profiles of a wheel with its back face where it would be if the wheel stood straight.
class WheelSections {
public:
    explicit WheelSections(const WheelView& wheel);

    /// False when flange and tread cannot be recognised in the profiles.
    bool isEmpty() const { return sections_.empty(); }

    /// Finds the tips: the lowest place of the flange or, when the axle is known, the one farthest from it.
    /// @param skew shift of the rings of the wheel along the track for each mm across
    FlangeTips tips(const std::optional<AxleFit>& axle, double skew, double across) const;

    TreadTable table() const;

private:
    /// What one profile shows of the wheel.
    struct Section {
        int number;
        double place;
        std::vector<SectionPoint> flange;
        Stations tread;
    };

    std::vector<Section> sections_;
};

} // namespace KxInspect::detail
