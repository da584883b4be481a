// Pages that show what is in files: profiles, scans, clouds.
#pragma once

#include "report/view/viewPage.h"

#include <KxInspect/HeightMap.h>
#include <KxInspect/PointFile.h>
#include <KxInspect/Profile.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>
#include <vector>

namespace kxreport {

struct NamedProfile {
    QString name;
    KxInspect::Profile profile;
};

struct ProfilesView {
    std::vector<NamedProfile> profiles; ///< at least one
    std::optional<NamedProfile> reference; ///< what the first profile is compared with
    QStringList notes;
};

/// Profiles on one plot, and the deviations of the first one from the reference.
QByteArray profilesPage(const ProfilesView& view, const ViewSettings& settings);

/// A scan or recording, or a height map alone.
struct SetView {
    QString name;
    std::vector<KxInspect::Profile> profiles; ///< in their order; none of a height map alone
    std::optional<KxInspect::HeightMap> map;
    QString whyNoMap; ///< where there is none
    /// Rows of the map are lengths along z, otherwise the numbers of the profiles from 1 on: then row i is profile i.
    bool isMapLong = false;
    QString reference = {}; ///< whose heights were subtracted from those of the map; empty for heights
};

/// The height map, one profile at a time, and the waterfall.
QByteArray setPage(const SetView& view, const ViewSettings& settings);

struct CloudView {
    QString name;
    KxInspect::PointSet points;
};

QByteArray cloudPage(const CloudView& view, const ViewSettings& settings);

} // namespace kxreport
