// The identity of a pass: what was said of it, and with which values it is measured.
#include "inspect/train/passIdentity.h"

#include "inspect/settings/settingValues.h"

#include <KxMath/KxMathVersion.h>

namespace KxInspect::detail {

PassIdentity identityOf(const StationSettings& settings, const PassOptions& options) {
    PassIdentity identity;
    identity.labels = options.labels;
    identity.settings = {settings.source, valuesOf(settings)};
    if (options.defects) {
        identity.defects = SettingsIdentity{options.defects->source, valuesOf(*options.defects)};
    }
    identity.consist = options.consist ? options.consist->source : std::nullopt;
    identity.consistOrder = options.consist ? std::optional(options.consistOrder) : std::nullopt;
    identity.limits = options.limits ? options.limits->source : std::nullopt;
    if (options.contour && !options.contour->profile) {
        identity.contour = identifyFile(options.contour->file);
    }
    identity.version = KxMath_GetVersionString();
    return identity;
}

} // namespace KxInspect::detail
