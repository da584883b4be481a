// A pose in a settings file, next to what else stands there.
#pragma once

#include "inspect/calibrate/poseMeasurement.h"

#include <QtCore/QByteArray>

namespace kxtool {

/// The keys of a sensor and their values.
struct PoseKeys {
    int sensor; ///< the section is SENSORn
    PoseValues pose;
    int position;
    bool hasY; ///< false: the key y is left alone
};

/// Reads a settings file; an empty text for one that does not exist. Throws a CommandError when it cannot be read or
/// parsed.
QByteArray readSettingsText(const QString& path);

/// The text of a settings file with the keys put in: those that are there are replaced, the others added to their
/// section. Everything else stays as it is, remarks included. Throws a CommandError where the text is such that other
/// keys would change.
/// @param name of the file, for messages
QByteArray withPose(const QByteArray& text, const PoseKeys& keys, const QString& name);

} // namespace kxtool
