// Lists of points as NumPy arrays, and arrays as lists of points.
#include "points.h"

#include <cstring>
#include <string>

namespace kxpython {

using KxMath::KxPointXY;
using KxMath::KxPointXYZ;
using KxMath::KxPointXYZRGB;

namespace {

using py::detail::npy_api;

/// The largest number of points: the library counts them in an int.
constexpr py::ssize_t kMostPoints = std::numeric_limits<int>::max();

/// Bytes of red, green and blue in the colour of a point, 0xRRGGBB in the byte order of the processor.
constexpr py::ssize_t kRedOffset = py::ssize_t(offsetof(KxPointXYZRGB, rgb)) + 2;

/// Where the elements of a view are, counted in bytes from the first point.
struct Place {
    py::dtype type;
    std::vector<py::ssize_t> shape;
    std::vector<py::ssize_t> strides;
    py::ssize_t offset = 0;
};

template <typename T>
py::array viewOf(const QList<T>& list, const Place& place) {
    static const T noPoint;
    const T* const first = list.isEmpty() ? &noPoint : list.constData();
    const py::capsule owner(new QList<T>(list), [](void* copy) { delete static_cast<QList<T>*>(copy); });
    py::array view(place.type, place.shape, place.strides, reinterpret_cast<const char*>(first) + place.offset, owner);
    py::detail::array_proxy(view.ptr())->flags &= ~npy_api::NPY_ARRAY_WRITEABLE_;
    return view;
}

template <typename T>
Place coordinatesOf(py::ssize_t count) {
    return {py::dtype::of<float>(), {count, kCoordinates<T>}, {sizeof(T), sizeof(float)}, 0};
}

[[noreturn]] void refuseShape(const py::array& array, py::ssize_t columns, const char* what) {
    const std::string shape = py::str(py::tuple(array.attr("shape")));
    throw py::value_error(std::string(what) + " need the shape (n, " + std::to_string(columns) + "), got " + shape);
}

/// The argument as an array; masked values are NaN in it.
py::array arrayFrom(const py::object& source) {
    const npy_api& numpy = npy_api::get();
    py::object values = source;
    if (py::type::of(source).ptr() != reinterpret_cast<PyObject*>(numpy.PyArray_Type_) && py::hasattr(source, "mask") &&
        py::hasattr(source, "filled")) {
        const py::object type = py::module_::import("numpy").attr("result_type")(source, "f4");
        values = source.attr("astype")(type).attr("filled")(py::float_(kNaN));
    }
    PyObject* const array =
        numpy.PyArray_FromAny_(values.ptr(), nullptr, 0, 0, npy_api::NPY_ARRAY_ENSUREARRAY_, nullptr);
    if (array == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::array>(array);
}

py::array checkedArray(const py::object& source, py::ssize_t columns, const char* kinds, const char* what) {
    py::array array = arrayFrom(source);
    if (array.ndim() == 1 && array.shape(0) == 0) { // an empty list, of floats to NumPy
        return array;
    }
    if (std::strchr(kinds, array.dtype().kind()) == nullptr) {
        throw py::type_error(std::string(what) + " need real numbers, got the dtype " +
                             std::string(py::str(array.dtype())));
    }
    if (array.ndim() != 2 || array.shape(1) != columns) {
        refuseShape(array, columns, what);
    }
    if (array.shape(0) > kMostPoints) {
        throw py::value_error(std::string(what) + " can be at most 2147483647, got " + std::to_string(array.shape(0)));
    }
    return array;
}

/// Copies an array into memory of the same shape, converting its elements.
void copyInto(const Place& place, void* memory, const py::array& source) {
    const py::array target(place.type, place.shape, place.strides, memory, py::none());
    if (npy_api::get().PyArray_CopyInto_(target.ptr(), source.ptr()) != 0) {
        throw py::error_already_set();
    }
}

bool isPlain(const py::array& array) {
    constexpr int kPlain = npy_api::NPY_ARRAY_C_CONTIGUOUS_ | npy_api::NPY_ARRAY_ALIGNED_;
    return py::isinstance<py::array_t<float>>(array) && (array.flags() & kPlain) == kPlain;
}

} // namespace

template <typename T>
py::array pointsView(const QList<T>& list) {
    return viewOf(list, coordinatesOf<T>(list.size()));
}

template <typename T>
py::array coordinateView(const QList<T>& list, py::ssize_t coordinate) {
    return viewOf(list, {py::dtype::of<float>(), {list.size()}, {sizeof(T)}, coordinate * py::ssize_t(sizeof(float))});
}

py::array coloursView(const QList<KxPointXYZRGB>& list) {
    return viewOf(list, {py::dtype::of<std::uint8_t>(), {list.size(), 3}, {sizeof(KxPointXYZRGB), -1}, kRedOffset});
}

template <typename T>
QList<T> pointsFrom(const py::object& source) {
    const py::array array = checkedArray(source, kCoordinates<T>, "fiu", "points");
    const py::ssize_t count = array.shape(0);
    if (count == 0) {
        return {};
    }
    if (sizeof(T) == sizeof(float) * kCoordinates<T> && isPlain(array)) {
        const T* const first = static_cast<const T*>(array.data());
        return QList<T>(first, first + count);
    }
    QList<T> list(count);
    copyInto(coordinatesOf<T>(count), list.data(), array);
    return list;
}

void setColours(QList<KxPointXYZRGB>& list, const py::object& colours) {
    const py::array array = checkedArray(colours, 3, "fiu", "colours");
    if (array.size() > 0 && !array.dtype().equal(py::dtype::of<std::uint8_t>())) {
        throw py::type_error("colours need bytes (uint8), got the dtype " + std::string(py::str(array.dtype())));
    }
    if (array.shape(0) != list.size()) {
        throw py::value_error("colours of " + std::to_string(array.shape(0)) + " points for " +
                              std::to_string(list.size()));
    }
    if (list.isEmpty()) {
        return;
    }
    for (KxPointXYZRGB& point : list) {
        point.rgb = 0;
    }
    const Place place = {py::dtype::of<std::uint8_t>(), {list.size(), 3}, {sizeof(KxPointXYZRGB), -1}, 0};
    copyInto(place, reinterpret_cast<char*>(list.data()) + kRedOffset, array);
}

template <typename T>
py::bytes bytesOf(const QList<T>& list) {
    return py::bytes(reinterpret_cast<const char*>(list.constData()), std::size_t(list.size()) * sizeof(T));
}

template <typename T>
QList<T> fromBytes(const py::bytes& bytes) {
    const std::string_view content = bytes;
    if (content.size() % sizeof(T) != 0 || content.size() / sizeof(T) > std::size_t(kMostPoints)) {
        throw py::value_error("a pickle of " + std::to_string(content.size()) + " bytes holds no whole points");
    }
    QList<T> list(qsizetype(content.size() / sizeof(T)));
    if (!list.isEmpty()) {
        std::memcpy(static_cast<void*>(list.data()), content.data(), content.size());
    }
    return list;
}

template <typename T>
bool areSame(const QList<T>& a, const QList<T>& b) {
    return a.size() == b.size() &&
           (a.isEmpty() || std::memcmp(a.constData(), b.constData(), std::size_t(a.size()) * sizeof(T)) == 0);
}

template py::array pointsView(const QList<KxPointXY>&);
template py::array pointsView(const QList<KxPointXYZ>&);
template py::array pointsView(const QList<KxPointXYZRGB>&);
template py::array coordinateView(const QList<KxPointXY>&, py::ssize_t);
template py::array coordinateView(const QList<KxPointXYZ>&, py::ssize_t);
template py::array coordinateView(const QList<KxPointXYZRGB>&, py::ssize_t);
template QList<KxPointXY> pointsFrom(const py::object&);
template QList<KxPointXYZ> pointsFrom(const py::object&);
template QList<KxPointXYZRGB> pointsFrom(const py::object&);
template py::bytes bytesOf(const QList<KxPointXY>&);
template py::bytes bytesOf(const QList<KxPointXYZ>&);
template py::bytes bytesOf(const QList<KxPointXYZRGB>&);
template QList<KxPointXY> fromBytes(const py::bytes&);
template QList<KxPointXYZ> fromBytes(const py::bytes&);
template QList<KxPointXYZRGB> fromBytes(const py::bytes&);
template bool areSame(const QList<KxPointXY>&, const QList<KxPointXY>&);
template bool areSame(const QList<KxPointXYZ>&, const QList<KxPointXYZ>&);
template bool areSame(const QList<KxPointXYZRGB>&, const QList<KxPointXYZRGB>&);

} // namespace kxpython
