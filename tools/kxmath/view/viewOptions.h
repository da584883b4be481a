// The arguments of kxmath view.
#pragma once

#include "report/view/viewPage.h"
#include "tools/kxmath/console/options.h"

#include <KxInspect/TextForm.h>

#include <optional>

namespace kxtool {

struct ViewArguments {
    QStringList files; ///< at least one
    QString reference; ///< of --compare, or empty
    std::optional<int> record; ///< from 1 on
    std::optional<float> step; ///< distance of the columns and rows of the height map, mm
    std::optional<float> distance; ///< of the profiles along the scan, mm
    KxInspect::TextOptions text;
    kxreport::ViewSettings settings;
    QString pageName;
    OutputFile page;
};

/// @return nothing when the help was printed
std::optional<ViewArguments> parseViewArguments(const QStringList& arguments);

} // namespace kxtool
