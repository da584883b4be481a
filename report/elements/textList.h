// Lists of texts, with the memory checked.
#pragma once

#include <QtCore/QStringList>

#include <initializer_list>

namespace kxreport {

/// A list of these texts. Qt 6.4 does not check the memory of a list that is made of its elements at once: where there is
/// none it writes to a null pointer.
inline QStringList textList(std::initializer_list<QString> texts) {
    QStringList list;
    for (const QString& text : texts) {
        list.append(text);
    }
    return list;
}

} // namespace kxreport
