// The page of a command that has no result: why, and the raw data.
#pragma once

#include "report/elements/pageOrigin.h"

#include <KxInspect/FileContents.h>
#include <KxInspect/Profile.h>

#include <QtCore/QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kxreport {

/// What could be read of an input, as it is.
struct RawFile {
    std::string path;
    QString whyNot; ///< why nothing or not all of it could be read, a sentence; empty when all could
    std::optional<KxInspect::FileContents> contents; ///< absent when nothing could be read
    std::vector<KxInspect::Point> points; ///< of some of its profiles, evenly spread
    std::int64_t records = 0; ///< sections and records of the file that could be read
    std::int64_t profiles = 0; ///< how many of them the points are from; 0 for a file that is not made of them
};

/// A self-contained HTML page: a red bar with the reason and, for each file, counts, ranges and a picture.
/// @param reason a sentence
QString failurePage(const QString& title, const QString& reason, const std::vector<RawFile>& files,
                    const PageOrigin& origin);

} // namespace kxreport
