// The layout of help texts.
#include "tools/kxmath/console/helpText.h"

#include <QtCore/QStringList>

#include <algorithm>

namespace kxtool {

namespace {

qsizetype indentationOf(const QString& line) {
    const auto begin = std::find_if(line.cbegin(), line.cend(), [](QChar c) { return c != QLatin1Char(' '); });
    return begin - line.cbegin();
}

/// Where the last column of an entry begins, behind two blanks or more; its indentation when it has no columns; 0 of a paragraph.
qsizetype lastColumn(const QString& line) {
    constexpr qsizetype kFarthest = 40; // columns farther right would leave no room
    qsizetype column = indentationOf(line);
    if (column == 0) {
        return 0;
    }
    for (qsizetype i = column + 2; i < std::min(line.size(), kFarthest); ++i) {
        if (line[i] != QLatin1Char(' ') && line[i - 1] == QLatin1Char(' ') && line[i - 2] == QLatin1Char(' ')) {
            column = i;
        }
    }
    return column;
}

/// Where the further lines of the entry or paragraph begin that begins at line `i`.
qsizetype columnOf(const QStringList& lines, qsizetype i) {
    const qsizetype own = indentationOf(lines[i]);
    const qsizetype column = lastColumn(lines[i]);
    const qsizetype next = i + 1 < lines.size() ? indentationOf(lines[i + 1]) : 0;
    return own > 0 && column == own && next > own ? next : column;
}

/// Fills lines with the words of all given ones; those behind the first begin at `column`.
QString filled(const QStringList& lines, qsizetype column, qsizetype width) {
    QString text;
    QString line = lines.front().left(column);
    bool isBegun = false;
    const QStringList words = (lines.front().mid(column) + QLatin1Char(' ') + lines.mid(1).join(QLatin1Char(' ')))
                                  .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString& word : words) {
        if (isBegun && line.size() + 1 + word.size() > width) {
            text += line + QLatin1Char('\n');
            line = QString(column, QLatin1Char(' '));
            isBegun = false;
        }
        line += isBegun ? QLatin1Char(' ') + word : word;
        isBegun = true;
    }
    return text + line + QLatin1Char('\n');
}

} // namespace

QString wrapped(const QString& text, qsizetype width) {
    const bool isEnded = text.endsWith(QLatin1Char('\n'));
    const QStringList lines = (isEnded ? text.chopped(1) : text).split(QLatin1Char('\n'));
    QString result;
    for (qsizetype i = 0; i < lines.size();) {
        const qsizetype column = columnOf(lines, i);
        QStringList block(lines[i]);
        bool isWide = lines[i].size() > width;
        while (++i < lines.size() && !block.front().isEmpty() && !lines[i].isEmpty() &&
               indentationOf(lines[i]) == column) {
            if (column > 0 && column == indentationOf(block.front())) {
                break; // the next entry of a list without columns
            }
            block += lines[i];
            isWide = isWide || lines[i].size() > width;
        }
        result += isWide ? filled(block, column, width) : block.join(QLatin1Char('\n')) + QLatin1Char('\n');
    }
    return isEnded ? result : result.chopped(1);
}

} // namespace kxtool
