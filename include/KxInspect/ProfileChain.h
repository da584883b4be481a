// Chains of operations on a profile by their names, and what is fitted to the profile that they leave.
#pragma once

#include "Export.h"
#include "Json.h"
#include "Profile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// An argument of an operation. All are numbers, finite and, where they are no whole numbers, floats.
struct OperationArgument {
    std::string name = {}; ///< "window"
    std::string unit = {}; ///< "mm", "points", "degrees"; empty for a pure number
    bool isWhole = false;
    double min = 0.0;
    double max = 0.0;
    bool isAboveMin = false; ///< the lower bound is excluded
    bool mayBeMissing = false; ///< NaN is accepted and means: no bound
    std::optional<double> byDefault = {}; ///< of one that may be left out with all behind it
};

/// An operation of KxMath::KxProfile that turns a profile into another one.
struct ProfileOperation {
    std::string name = {}; ///< of the member function
    std::string summary = {}; ///< what it does, one sentence
    std::vector<OperationArgument> arguments =
        {}; ///< in the order of the member function; those without effect left out
};

/// All operations, in the order of the headers of KxMath.
KXINSPECT_EXPORT std::vector<ProfileOperation> profileOperations();

/// How a step is written: "kihFilter20[:maxStep]", brackets around what may be left out.
KXINSPECT_EXPORT std::string textOf(const ProfileOperation& operation);

/// What an argument needs: "a whole number from 1 to 65535 (points)".
KXINSPECT_EXPORT std::string textOf(const OperationArgument& argument);

/// An operation with its arguments, all of them: those that were left out have their default.
struct ProfileStep {
    std::string operation = {};
    std::vector<double> arguments = {}; ///< NaN: no bound

    KXINSPECT_EXPORT bool operator==(const ProfileStep& other) const; ///< a missing bound equals a missing bound
};

/// Reads a chain: operations separated by blanks, arguments by commas behind a colon, "nan" for no bound, as in
/// "removeNoise:3,1,1.5 kihFilter20 trimX:-10,nan". An empty text is an empty chain. Throws an Error BadArgument that names
/// the step, the operation that is probably meant by an unknown one, or the argument with what it needs.
KXINSPECT_EXPORT std::vector<ProfileStep> profileSteps(const std::string& text);

/// The step as profileSteps() reads it, without the last arguments that are their defaults.
KXINSPECT_EXPORT std::string textOf(const ProfileStep& step);

/// A feature that is looked for in a profile.
enum class ProfileFeature {
    Weld, ///< KxProfile::detectWeld(): the top of a weld
    Circle, ///< KxProfile::detectCircle(): the circle through the points at least 1 mm above the lowest one
    Cuts, ///< KxProfile::detectCutPoints(): steps of the level
    Joint, ///< KxProfile::detectJoint(): the joint between two plates
};

/// "weld", "circle", "cuts", "joint".
KXINSPECT_EXPORT const char* nameOf(ProfileFeature feature);

/// The highest degree of ProfileOptions::polynomial: the normal equations in powers of -1 to 1 then lose a factor of
/// (1 + sqrt(2))^30 = 3e11 (W. Gautschi, Numerische Mathematik 24, 1975) of the 2^53 of double precision.
inline constexpr int kMostDegree = 15;

struct ProfileOptions {
    std::vector<ProfileStep> steps = {};
    bool line = false; ///< fits a line to the points
    bool circle = false; ///< fits a circle
    std::optional<int> polynomial = {}; ///< fits a polynomial of this degree, 0 to kMostDegree
    std::vector<ProfileFeature> features = {}; ///< that are looked for
    int cutWindow = 5; ///< of Cuts: points on each side
    /// Of Cuts: the sum of y of the window behind a point less that of the window before it. By default that of a step of
    /// 0.3 mm, the least one that KxProfile::detectJoint() takes for a joint.
    float cutThreshold = 1.5f;
};

/// What a step did.
struct StepOutcome {
    ProfileStep step = {};
    std::int64_t before = 0; ///< points
    std::int64_t after = 0; ///< points; 0 where the step failed
    std::int64_t missing = 0; ///< of those after, without a finite x or y
    bool isChanged = false; ///< whether it changed any point
};

/// A number that was found.
struct ProfileValue {
    std::string key = {}; ///< for programs
    std::string title = {}; ///< for people
    std::string unit = {}; ///< empty for a pure number
    double value = 0.0;
};

/// What was looked for in the profile that the chain left.
struct ProfileFinding {
    std::string name = {}; ///< "line", "circle", "polynomial", or "detected" and the name of the feature
    std::string reason = {}; ///< why nothing was found, a clause; empty when it was
    std::vector<ProfileValue> values = {};
    std::vector<Point> points = {}; ///< where it was found: cuts, both edges of a joint, the middle of a weld
    std::vector<Point> curve = {}; ///< of a fit, for pictures

    bool isFound() const { return reason.empty(); }
};

/// A profile before and after a chain of operations.
struct ProfileResult {
    std::string file = {}; ///< for outputs, as the caller names it; may be empty
    std::optional<std::int64_t> record = {}; ///< of the file, from 1
    /// @{ Without points in a result that was read from JSON without pictures.
    Profile before = {};
    Profile after = {}; ///< without points too when a step failed
    /// @}
    std::int64_t pointsBefore = 0;
    std::int64_t pointsAfter = 0; ///< 0 when a step failed
    std::vector<StepOutcome> outcomes = {}; ///< up to the step that failed
    std::string failure = {}; ///< why the chain ended early, a sentence; empty when all steps were done
    std::string xTitle = "x, mm"; ///< what x of the points after holds: after toPolar() the radius
    std::string yTitle = "y, mm"; ///< what their y holds
    std::vector<ProfileFinding> findings =
        {}; ///< in the order line, circle, polynomial, features; empty after a failure

    /// Whether all steps were done and all that was looked for was found.
    KXINSPECT_EXPORT bool isWhole() const;
};

/// Runs a chain on a profile and looks at what it leaves. An operation that cannot work, or leaves no point with both
/// coordinates, ends the chain, which ProfileResult::failure says. Fits and features use the points with both coordinates.
/// Line and polynomial are least squares of y, the circle is that of KxMath::KxCircle; all in double precision about the
/// middle of the points. Throws an Error BadArgument for a step or option that is out of range.
KXINSPECT_EXPORT ProfileResult examineProfile(const Profile& profile, const ProfileOptions& options);

/// The profile that a chain leaves. Throws an Error NoResult with the sentence of ProfileResult::failure, BadArgument as above.
KXINSPECT_EXPORT Profile applied(const Profile& profile, const std::vector<ProfileStep>& steps);

/// The result as JSON; its pictures are the points before and after.
KXINSPECT_EXPORT std::string toJson(const ProfileResult& result, Pictures pictures = Pictures::Left);

/// Reads what toJson() wrote; the curves of fits are never in it. Throws an Error Damaged when the text is not JSON,
/// Unsuitable (with the key) when it is not such a result.
KXINSPECT_EXPORT ProfileResult profileFromJson(const std::string& json);

} // namespace KxInspect
