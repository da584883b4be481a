// XML files of VTK: the elements and arrays of a file with one piece.
#pragma once

#include "inspect/base/error.h"

#include <QtCore/QByteArray>
#include <QtCore/QXmlStreamAttributes>

#include <optional>
#include <vector>

namespace KxInspect::detail {

/// An array of a file; numbers as doubles.
struct VtkArray {
    QString section; ///< the element around it: "Points", "PointData", ...
    QString name;
    int components = 1;
    std::vector<double> values;
};

struct VtkFile {
    QXmlStreamAttributes grid; ///< of the element that the file is named after
    QXmlStreamAttributes piece;
    std::vector<VtkArray> arrays;

    /// The first array of a section with so many components, perhaps by its name; null when there is none.
    const VtkArray* find(QLatin1String section, int components, const char* name = nullptr) const;
};

/// Reads a file of a type ("ImageData"): arrays as text or as base64, not compressed. Throws an Error Unsuitable for other
/// files and what is not read, Damaged.
VtkFile parseVtk(const ErrorSource& source, const QByteArray& content, QLatin1String type);

/// A DataArray with its values as base64. @param type "Float32"
QByteArray formatVtkArray(const char* type, const char* name, int components, const QByteArray& bytes);

} // namespace KxInspect::detail
