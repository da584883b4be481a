// Calls of operations that first check whether they can work.
#pragma once

#include "inspect/profile/operations.h"

#include <vector>

namespace KxInspect::detail {

using Arguments = std::vector<double>;

inline float real(const Arguments& arguments, std::size_t i) {
    return static_cast<float>(arguments[i]);
}

inline int whole(const Arguments& arguments, std::size_t i) {
    return static_cast<int>(arguments[i]);
}

/// @{ Why an operation cannot work, the predicate of a sentence about it; empty when it can.
QString needPoints(const KxMath::KxProfile& profile, qsizetype least);
QString needCircle(ChainState& state, qsizetype least); ///< through so many points in x and y
/// @}

/// Calls a member of the profile that cannot fail.
template <typename Work>
QString done(ChainState& state, Work work) {
    work(state.profile);
    return {};
}

/// The same where it needs so many points.
template <typename Work>
QString withPoints(ChainState& state, qsizetype least, Work work) {
    QString reason = needPoints(state.profile, least);
    if (reason.isEmpty()) {
        work(state.profile);
    }
    return reason;
}

/// Calls a filter about a circle through the points.
template <typename Work>
QString aboutCircle(ChainState& state, qsizetype least, Work work) {
    QString reason = needCircle(state, least);
    if (reason.isEmpty()) {
        work(state.profile);
    }
    return reason;
}

/// @{ Operations with their checks. They return why they could not work, as above.
QString removedParts(ChainState& state, float slope, float intercept, bool isHigh);
QString scale(ChainState& state, const Arguments& a);
QString changeForm(ChainState& state, Form from, Form to);
QString turn(ChainState& state, Form form, void (KxMath::KxProfile::*rotate)(float), float degrees);
QString turnAbout(ChainState& state, const Arguments& a);
QString slopes(ChainState& state, int window);
QString derive(ChainState& state);
QString smoothOnPolynomial(ChainState& state, int degree);
QString resample(ChainState& state, const Arguments& a);
QString levelRun(ChainState& state, const Arguments& a);
/// @}

} // namespace KxInspect::detail
