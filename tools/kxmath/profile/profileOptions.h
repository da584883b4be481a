// The arguments of kxmath profile.
#pragma once

#include "report/view/viewPage.h"
#include "tools/kxmath/console/options.h"

#include <KxInspect/PointFile.h>
#include <KxInspect/ProfileChain.h>
#include <KxInspect/TextForm.h>

#include <optional>
#include <variant>

namespace kxtool {

struct ProfileArguments {
    QString file;
    std::optional<int> record; ///< from 1 on
    KxInspect::TextOptions text;
    KxInspect::ProfileOptions chain;
    QString out; ///< the resulting profile, or empty
    KxInspect::FileKind kind = KxInspect::FileKind::Cloud; ///< of `out`
    OutputFile json;
    OutputFile report;
};

/// The operations are asked for.
struct ListOfOperations {};

/// @return nothing when the help was printed
std::optional<std::variant<ProfileArguments, ListOfOperations>> parseProfileArguments(const QStringList& arguments);

} // namespace kxtool
