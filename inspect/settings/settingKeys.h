// What is known of the keys of settings.
#pragma once

#include <KxInspect/Settings.h>

#include <QtCore/QString>

namespace KxInspect::detail {

/// What is known of a key, "calibrLines2" or "SENSOR1/level_k"; null for a name that no settings have.
const SettingKey* findSettingKey(const QString& key);

/// Why a value cannot be that of a key: "give 1.36 mm for 'calibrLines2', which is outside ...". Empty when it can.
QString whyOutOfRange(const QString& key, double value);

/// What is wrong with the names of the keys in a file: for each unknown one a sentence that names the nearest known one,
/// for each unknown section a sentence of its own.
/// @param keys with their sections, as QSettings lists them
std::vector<std::string> warningsOfNames(const std::string& file, const QStringList& keys);

} // namespace KxInspect::detail
