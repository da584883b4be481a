// Height maps in the classes of KxMath.
#pragma once

#include <KxInspect/HeightMap.h>
#include <KxMath/KxMatrixCloud.h>
#include <KxMath/KxMatrixWithHistos.h>

namespace KxInspect::detail {

/// A map with its block means, in the classes that search for patches.
struct Blocks {
    KxMath::KxMatrixCloud matrix;
    KxMath::KxMatrixWithHistos histos;

    /// Throws an Error BadArgument for an invalid map or block size.
    Blocks(const HeightMap& map, int blockSize);

    /// A block without heights has the mean 0, which would join patches near the height 0 to each other. NaN keeps it
    /// out of the search, as it does for what was cut away.
    void forgetEmptyBlocks();

    /// Row by row.
    std::vector<float> means() const;
};

} // namespace KxInspect::detail
