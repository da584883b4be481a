// Lists of points as NumPy arrays, and arrays as lists of points.
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <KxMath/KxPoints.h>

#include <QtCore/QList>

#include <limits>

namespace kxpython {

namespace py = pybind11;

inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// How many coordinates a point has.
template <typename T>
inline constexpr py::ssize_t kCoordinates = 3;
template <>
inline constexpr py::ssize_t kCoordinates<KxMath::KxPointXY> = 2;

/// A read-only array over the coordinates of a list, of which it holds a shared copy: a list that is written afterwards
/// copies itself first, so that the array neither changes nor dangles.
template <typename T>
py::array pointsView(const QList<T>& list);

/// The same of one coordinate, 0 for x.
template <typename T>
py::array coordinateView(const QList<T>& list, py::ssize_t coordinate);

/// The same of the red, green and blue of each point, n x 3 bytes.
py::array coloursView(const QList<KxMath::KxPointXYZRGB>& list);

/// The points of anything that NumPy makes an n x `kCoordinates` array of numbers of: floats of any size, whole numbers,
/// of any strides and byte order. Masked values become NaN. Colours of new points are 0.
/// Throws ValueError for another shape and TypeError for other types.
template <typename T>
QList<T> pointsFrom(const py::object& source);

/// Puts colours, n x 3 bytes, into a list of n points. Throws as pointsFrom() does.
void setColours(QList<KxMath::KxPointXYZRGB>& list, const py::object& colours);

/// The bytes of a list, and a list of bytes; ValueError for bytes that are no whole number of points.
template <typename T>
py::bytes bytesOf(const QList<T>& list);
template <typename T>
QList<T> fromBytes(const py::bytes& bytes);

/// Whether two lists hold the same bits: NaN equals NaN, and 0 does not equal -0.
template <typename T>
bool areSame(const QList<T>& a, const QList<T>& b);

} // namespace kxpython
