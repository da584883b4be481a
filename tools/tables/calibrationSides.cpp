// Prints what kxmath calibrate makes of wrong placement codes, of sensors that are turned the other way, and of a wrong
// side. Ends with 1 when a pose is wrong without a word although the side is true.
#include "simulator/calibrationProfile.h"
#include "trials/poseTrial.h"

#include <KxInspect/Error.h>

#include <cstdio>

namespace {

constexpr int kPoses = 20;

enum class Turn { None, Gamma, Half };

/// What the operator says of side and object.
struct Statement {
    bool isSideTrue;
    bool isObliqueGiven; ///< the true one; otherwise that of the side by default
    bool areMoved; ///< two shots, the object moved by 10 mm along each axis
    bool isCrestGiven = false; ///< where the oblique crest truly is
};

/// Right poses, refusals, and wrong poses: with a warning that gives the right one as the other pose, and without.
struct Count {
    int right = 0;
    int refused = 0;
    int warned = 0;
    int wrong = 0;
};

bool isRight(const kxsim::PoseTrial& trial) {
    constexpr double kDegrees = 0.2;
    constexpr double kMm = 1.0;
    return trial.angleError() <= kDegrees && trial.placeError() <= kMm;
}

void add(kxsim::PoseTrial trial, Count& count) {
    if (!trial.result.hasPose()) {
        ++count.refused;
    } else if (isRight(trial)) {
        ++count.right;
    } else {
        KxInspect::SensorPose& pose = trial.result.average.pose;
        pose = trial.result.otherPose.value_or(pose);
        (isRight(trial) ? count.warned : count.wrong) += 1;
    }
}

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
        if (said.isCrestGiven) {
            const bool isBelow = KxInspect::placementOf(placement).isMirrored;
            setup.task.obliqueCrest = isBelow ? KxInspect::ObliqueCrest::Below : KxInspect::ObliqueCrest::Above;
        }
        try {
            add(kxsim::tryPose(setup, random), count);
        } catch (const KxInspect::Error&) { // statements that contradict each other
            ++count.refused;
        }
    }
}

/// A row with the counts of the true code, or one that means the same, and of all others.
/// @return how many poses are wrong without a word
int printRow(Turn how, const char* name, const Statement& said) {
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
    std::printf("| %s | %s | %s | %s | %s |", name, said.areMoved ? "two, moved" : "one",
                said.isSideTrue ? "true" : "wrong", said.isObliqueGiven ? "true" : "by default",
                said.isCrestGiven ? "true" : "no");
    for (const Count& count : {trueCode, otherCodes}) {
        std::printf(" %d | %d | %d | %d |", count.right, count.refused, count.warned, count.wrong);
    }
    std::printf("\n");
    std::fflush(stdout);
    return trueCode.wrong + otherCodes.wrong;
}

} // namespace

int main() {
    std::printf(
        "| sensor | shots | side given | obliqueness given | place of the oblique crest given | true code: right | "
        "refused | wrong, warned | wrong | another code: right | refused | wrong, warned | wrong |\n"
        "| --- | --- | --- | --- | --- | --- | --- | --- | --- | --- | --- | --- | --- |\n");
    const struct {
        Turn how;
        const char* name;
    } turns[] = {{Turn::None, "as the placement says"},
                 {Turn::Gamma, "gamma mirrored"},
                 {Turn::Half, "upside down: gamma + 180 degrees"}};
    const Statement statements[] = {{true, false, false},       {true, true, false},   {true, false, false, true},
                                    {true, true, false, true},  {false, false, false}, {false, true, false},
                                    {false, true, false, true}, {true, true, true},    {false, false, true}};
    int wrong = 0;
    for (const auto& [how, name] : turns) {
        for (const Statement& said : statements) {
            const int ofRow = printRow(how, name, said);
            wrong += said.isSideTrue ? ofRow : 0;
        }
    }
    return wrong == 0 ? 0 : 1;
}
