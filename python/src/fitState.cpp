// The fit of a station as a value.
#include "fitState.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace kxpython {

namespace {

using KxInspect::FittedPair;
using KxInspect::FittedSensor;
using KxInspect::FittedWheel;
using KxInspect::StationFit;

// References to all fields of a structure. The bindings have to name each of them: a structure with another one does
// not compile here.

template <typename T, typename Field>
using Like = std::is_same<std::remove_const_t<T>, Field>;

template <typename T>
requires(Like<T, KxInspect::Point>::value) auto fieldsOf(T& value) {
    auto& [x, y] = value;
    return std::tie(x, y);
}

template <typename T>
requires(Like<T, KxInspect::Line>::value) auto fieldsOf(T& value) {
    auto& [slope, intercept] = value;
    return std::tie(slope, intercept);
}

template <typename T>
requires(Like<T, KxInspect::WheelDetection>::value) auto fieldsOf(T& value) {
    auto& [window, jumps, jump, points, parts, correlation, gap] = value;
    return std::tie(window, jumps, jump, points, parts, correlation, gap);
}

template <typename T>
requires(Like<T, FittedWheel>::value) auto fieldsOf(T& value) {
    auto& [pass, number, first, last, offset, degrees] = value;
    return std::tie(pass, number, first, last, offset, degrees);
}

template <typename T>
requires(Like<T, FittedPair>::value) auto fieldsOf(T& value) {
    auto& [pass, pair, given, measured, residual] = value;
    return std::tie(pass, pair, given, measured, residual);
}

template <typename T>
requires(Like<T, FittedSensor>::value) auto fieldsOf(T& value) {
    auto& [number, serial, files, wheels, reference, level, low, treadHigh, treadLow, noise, margin, fromMargin,
           toMargin, turn, deviation, detection, records, shortest, longest, profiles, points] = value;
    return std::tie(number, serial, files, wheels, reference, level, low, treadHigh, treadLow, noise, margin,
                    fromMargin, toMargin, turn, deviation, detection, records, shortest, longest, profiles, points);
}

template <typename T>
requires(Like<T, StationFit>::value) auto fieldsOf(T& value) {
    auto& [fault, sensors, base, uncertainty, profiles, residual, pairs, warnings] = value;
    return std::tie(fault, sensors, base, uncertainty, profiles, residual, pairs, warnings);
}

// A field is a number, a text, a structure, an optional one or a vector of them.

template <typename T>
constexpr bool kIsVector = false;
template <typename T>
constexpr bool kIsVector<std::vector<T>> = true;
template <typename T>
constexpr bool kIsOptional = false;
template <typename T>
constexpr bool kIsOptional<std::optional<T>> = true;

template <typename T>
py::object partOf(const T& value) {
    if constexpr (kIsVector<T>) {
        py::list list;
        for (const auto& item : value) {
            list.append(partOf(item));
        }
        return list;
    } else if constexpr (kIsOptional<T>) {
        return value ? partOf(*value) : py::object(py::none());
    } else if constexpr (std::is_arithmetic_v<T>) {
        return py::cast(value);
    } else if constexpr (std::is_same_v<T, std::string>) {
        return py::bytes(value); // names of files need not be UTF-8
    } else {
        return std::apply([](const auto&... field) { return py::make_tuple(partOf(field)...); }, fieldsOf(value));
    }
}

template <typename T>
void setPart(T& value, const py::object& part) {
    if constexpr (kIsVector<T>) {
        for (const py::handle item : py::cast<py::list>(part)) {
            setPart(value.emplace_back(), py::reinterpret_borrow<py::object>(item));
        }
    } else if constexpr (kIsOptional<T>) {
        if (!part.is_none()) {
            setPart(value.emplace(), part);
        }
    } else if constexpr (std::is_arithmetic_v<T>) {
        value = py::cast<T>(part);
    } else if constexpr (std::is_same_v<T, std::string>) {
        value = std::string(py::cast<py::bytes>(part));
    } else {
        const py::tuple parts = py::cast<py::tuple>(part);
        auto fields = fieldsOf(value);
        constexpr std::size_t kCount = std::tuple_size_v<decltype(fields)>;
        if (parts.size() != kCount) {
            throw py::value_error("a state with " + std::to_string(parts.size()) + " parts instead of " +
                                  std::to_string(kCount));
        }
        [&]<std::size_t... I>(std::index_sequence<I...>) {
            (setPart(std::get<I>(fields), parts[I]), ...);
        }
        (std::make_index_sequence<kCount>());
    }
}

template <typename T>
bool areSameBits(const T& a, const T& b) {
    if constexpr (kIsVector<T>) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), &areSameBits<typename T::value_type>);
    } else if constexpr (kIsOptional<T>) {
        return a.has_value() == b.has_value() && (!a || areSameBits(*a, *b));
    } else if constexpr (std::is_same_v<T, float>) {
        return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
    } else if constexpr (std::is_same_v<T, double>) {
        return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
    } else if constexpr (std::is_integral_v<T> || std::is_same_v<T, std::string>) {
        return a == b;
    } else {
        const auto fields = fieldsOf(a);
        const auto others = fieldsOf(b);
        return [&]<std::size_t... I>(std::index_sequence<I...>) {
            return (areSameBits(std::get<I>(fields), std::get<I>(others)) && ...);
        }
        (std::make_index_sequence<std::tuple_size_v<decltype(fields)>>());
    }
}

} // namespace

py::tuple stateOf(const StationFit& fit) {
    return partOf(fit);
}

StationFit fitFrom(const py::tuple& state) {
    StationFit fit;
    setPart(fit, state);
    return fit;
}

bool haveSameBits(const StationFit& a, const StationFit& b) {
    return areSameBits(a, b);
}

} // namespace kxpython
