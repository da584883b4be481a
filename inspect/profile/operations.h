// The operations of a chain: their descriptions and what they call.
#pragma once

#include <KxInspect/ProfileChain.h>
#include <KxMath/KxProfile.h>

#include <QtCore/QString>

#include <vector>

namespace KxInspect::detail {

/// What the coordinates of the points hold.
enum class Form {
    Cartesian,
    Polar, ///< radius and angle
    Slopes, ///< x and the slope there
    Derivative, ///< the slope and x, as KxProfile::derivative() has them
};

struct ChainState {
    KxMath::KxProfile profile;
    Form form = Form::Cartesian;
};

struct Operation {
    ProfileOperation description;
    /// @return why it could not be done, the predicate of a sentence about it; empty when it was
    QString (*apply)(ChainState& state, const std::vector<double>& arguments);
};

/// All operations: the one table of them.
std::vector<Operation> allOperations();

} // namespace KxInspect::detail
