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

} // namespace kxreport
