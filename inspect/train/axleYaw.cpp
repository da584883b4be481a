// Wheels that stand askew.
#include "inspect/train/axleYaw.h"

namespace KxInspect::detail {

std::optional<RobustLine> fitFaceLine(const BackFace& face) {
    std::vector<Sample> samples;
    for (const FaceOffset& offset : face.offsets) {
        samples.push_back({offset.place, offset.offset});
    }
    return fitRobustLine(samples);
}

std::string whyNoFaceLine(const BackFace& face) {
    if (face.shown < 3) {
        return "fewer than 3 profiles show the back face";
    }
    return face.offsets.size() < 3 ? "the back face is not straight in its profiles"
                                   : "the back face is seen in one place only";
}

Askew askewOf(const std::optional<RobustLine>& line) {
    return line ? Askew{line->slope, line->middle} : Askew{};
}

} // namespace KxInspect::detail
