// Paths and texts of the interface, UTF-8, as those of Qt.
#pragma once

#include <QtCore/QString>

#include <string>

namespace KxInspect::detail {

inline QString toQt(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

} // namespace KxInspect::detail
