// What files hold, as JSON.
#pragma once

#include <KxInspect/Error.h>
#include <KxInspect/FileContents.h>

#include <QtCore/QString>

#include <optional>
#include <vector>

namespace kxtool {

/// What was found out about a file.
struct InfoEntry {
    QString file; ///< as it is shown
    std::optional<KxInspect::FileContents> contents; ///< nothing when it could not be read
    std::optional<KxInspect::Error> error; ///< why it could not be read, or not to its end
};

/// The result of kxmath info as JSON, as its help describes it.
QString infoJson(const std::vector<InfoEntry>& entries);

} // namespace kxtool
