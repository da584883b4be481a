// Names of files for readers.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <string>
#include <vector>

namespace kxreport {

/// The name of each file without its folder; where files of one name come from several folders, with as many folders as
/// tell them apart: "left/x.whl" and "right/x.whl". A path that is listed twice has one name.
QStringList distinctNames(const std::vector<std::string>& paths);

/// A text with other names of files: each of `paths` in quotes becomes that of `names` at its place.
QString withNames(QString text, const std::vector<std::string>& paths, const QStringList& names);

/// The sentence of an Error about a file, whose name is the first text in quotes, with that name without its folder.
QString withBareName(const QString& sentence);

} // namespace kxreport
