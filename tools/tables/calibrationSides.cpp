// Prints what kxmath calibrate makes of wrong placement codes, of sensors that are turned the other way, and of a wrong
// side.
#include "simulator/calibrationTrial.h"
#include "simulator/poseTrial.h"

#include <cstdio>

namespace {

constexpr int kPoses = 20;

enum class Turn { None, Gamma, Half };

/// What the operator says of side and object.
struct Statement {
    bool isSideTrue;
    bool isObliqueGiven; ///< the true one; otherwise that of the side by default
    bool areMoved; ///< two shots, the object moved by 10 mm along each axis
};

/// Right poses, wrong ones and refusals.
struct Count {
    int right = 0;
    int wrong = 0;
    int refused = 0;
};

/// The sensor turned the other way: its laser line leans to the other side, or it stands upside down.
void turn(kxsim::Pose& pose, Turn how) {
    if (how == Turn::Gamma) {
        pose.gamma = -pose.gamma;
    } else if (how == Turn::Half) {
        pose.gamma += 180.0;
    }
}

void tryCode(int placement, Turn how, int code, const Statement& said, Count& count) {
    for (std::uint64_t i = 0; i < kPoses; ++i) {
        kxsim::Random random({43, static_cast<std::uint64_t>(placement), i});
        kxsim::PoseTrialSetup setup = kxsim::randomSetup(placement, {}, 5.0, random);
        turn(setup.pose, how);
        const auto side = kxsim::sideOf(setup.pose, setup.object);
        const bool isSmaller = (side == KxInspect::SensorSide::SmallerY) == said.isSideTrue;
        setup.task.placement = code;
        setup.task.side = isSmaller ? KxInspect::SensorSide::SmallerY : KxInspect::SensorSide::LargerY;
        if (!said.isObliqueGiven) {
            setup.task.object = KxInspect::calibrationObjectFacing(*setup.task.side, setup.object.crestY);
        }
        if (said.areMoved) {
            setup.moves.push_back({10.0, 10.0, 10.0});
        }
        const kxsim::PoseTrial trial = kxsim::tryPose(setup, random);
        constexpr double kDegrees = 0.2;
        constexpr double kMm = 1.0;
        if (!trial.result.hasPose()) {
            ++count.refused;
        } else {
            (trial.angleError() <= kDegrees && trial.placeError() <= kMm ? count.right : count.wrong) += 1;
        }
    }
}

/// A row with the counts of the true code, or one that means the same, and of all others.
void printRow(Turn how, const char* name, const Statement& said) {
    Count trueCode = {};
    Count otherCodes = {};
    for (int placement = 1; placement <= 5; ++placement) {
        for (int code = 1; code <= 5; ++code) {
            const KxInspect::Placement a = KxInspect::placementOf(placement);
            const KxInspect::Placement b = KxInspect::placementOf(code);
            const bool isTrue = a.isMirrored == b.isMirrored && a.isTurned == b.isTurned;
            tryCode(placement, how, code, said, isTrue ? trueCode : otherCodes);
        }
    }
    std::printf("| %s | %s | %s | %s |", name, said.areMoved ? "two, moved" : "one", said.isSideTrue ? "true" : "wrong",
                said.isObliqueGiven ? "true" : "by default");
    for (const Count& count : {trueCode, otherCodes}) {
        std::printf(" %d | %d | %d |", count.right, count.refused, count.wrong);
    }
    std::printf("\n");
}

} // namespace

int main() {
    std::printf(
        "| sensor | shots | side given | obliqueness given | true code: right | refused | wrong | another code: "
        "right | refused | wrong |\n"
        "| --- | --- | --- | --- | --- | --- | --- | --- | --- | --- |\n");
    const struct {
        Turn how;
        const char* name;
    } turns[] = {{Turn::None, "as the placement says"},
                 {Turn::Gamma, "gamma mirrored"},
                 {Turn::Half, "upside down: gamma + 180 degrees"}};
    const Statement statements[] = {{true, false, false}, {true, true, false}, {false, false, false},
                                    {false, true, false}, {true, true, true},  {false, false, true}};
    for (const auto& [how, name] : turns) {
        for (const Statement& said : statements) {
            printRow(how, name, said);
        }
    }
    return 0;
}
