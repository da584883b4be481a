// kxmath train --again: whether a result that was kept comes out again.
#pragma once

#include <QtCore/QString>

namespace kxtool {

struct AgainOptions {
    QString result; ///< result.json, or the folder that holds it
    QString recordings; ///< the folder below which the recordings are
    QString out; ///< where the folder of the new result is made, empty for none
    int jobs; ///< measured at once
};

/// Measures again from the recordings that have the hashes of a result, with the settings beside it, and compares the bytes.
/// Prints what it finds.
/// @return Done when they are the same; NoResult when they differ; BadInput when an input is missing or is another one
int runAgain(const AgainOptions& options);

} // namespace kxtool
