// UTF-8 paths and texts of the interface as Qt strings.
#pragma once

#include <QtCore/QString>

#include <string>

namespace KxInspect::detail {

inline QString toQt(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

} // namespace KxInspect::detail
