// Profiles for the commands that do not take Errors yet.
#pragma once

#include <KxInspect/Error.h>
#include <KxInspect/KxMathTypes.h>
#include <KxInspect/ProfileFile.h>

#include "inspect/base/points.h"

#include <QtCore/QString>

namespace kxtool {

/// @{ @return what is wrong with the file, an empty text when it was read
inline QString readProfileFile(const QString& path, int xColumn, int yColumn, KxMath::KxProfile& profile) {
    try {
        profile.clear();
        profile.points =
            KxInspect::detail::toList(KxInspect::readProfile(path.toStdString(), {xColumn, yColumn}).points);
        return {};
    } catch (const KxInspect::Error& error) {
        return QString::fromStdString(error.reason());
    }
}

inline QString readProfilesOfFile(const QString& path, int xColumn, int yColumn,
                                  std::vector<QList<KxMath::KxPointXY>>& profiles) {
    try {
        profiles.clear();
        for (const KxInspect::Profile& profile : KxInspect::readProfiles(path.toStdString(), {xColumn, yColumn})) {
            profiles.push_back(KxInspect::detail::toList(profile.points));
        }
        return {};
    } catch (const KxInspect::Error& error) {
        return QString::fromStdString(error.reason());
    }
}
/// @}

} // namespace kxtool
