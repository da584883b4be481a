// CSV with a header.
#include "inspect/formats/mapFormats.h"
#include "inspect/formats/pointTable.h"

#include <cmath>

namespace KxInspect::detail {

namespace {

QByteArray fieldText(float value) {
    return std::isnan(value) ? QByteArray() : coordinateText(value);
}

} // namespace

PointSet parseTable(const ErrorSource& source, const QByteArray& content) {
    const QByteArray text = (content.startsWith("\xef\xbb\xbf") ? content.mid(3) : content).trimmed() + '\n';
    FileHeader header(source, text);
    const auto words = header.nextLine();
    std::vector<Column> columns;
    for (const QByteArray& name : words->join(' ').split(',')) {
        const QByteArray column = name.trimmed();
        columns.push_back({column, column == "rgb" ? 'U' : 'F', 4});
    }
    TableRows rows;
    rows.count = text.count('\n') - 1;
    rows.separator = ',';
    return readTable(header, columns, rows, TableData::Ascii);
}

QByteArray formatTable(const PointSet& set) {
    const bool hasProfiles = set.profileStarts.size() > 1;
    QByteArray text = hasProfiles ? "profile,x,y" : "x,y";
    text += QByteArray(set.hasZ ? ",z" : "") + (set.hasColours ? ",red,green,blue" : "") + '\n';
    std::size_t profile = 0;
    for (std::size_t i = 0; i < set.points.size(); ++i) {
        const Point3& p = set.points[i];
        if (hasProfiles) {
            while (profile < set.profileStarts.size() && set.profileStarts[profile] <= i) {
                ++profile;
            }
            text += QByteArray::number(static_cast<qint64>(profile)) + ',';
        }
        text += fieldText(p.x) + ',' + fieldText(p.y);
        if (set.hasZ) {
            text += ',' + fieldText(p.z);
        }
        for (int shift = 16; set.hasColours && shift >= 0; shift -= 8) {
            text += ',' + QByteArray::number((set.colours[i] >> shift) & 0xffu);
        }
        text += '\n';
    }
    return text;
}

} // namespace KxInspect::detail
