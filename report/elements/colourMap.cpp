// Maps from values to colours.
#include "report/elements/colourMap.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace kxreport {

namespace {

constexpr Rgb kHeights[] = {0x1b1f5e, 0x1f4e8c, 0x14808f, 0x3fa873, 0x9fcb52, 0xfde74c};

/// Eleven colours of viridis (S. van der Walt and N. Smith, 2015); between them they are interpolated.
constexpr Rgb kViridis[] = {0x440154, 0x482576, 0x414487, 0x35608d, 0x2a788e, 0x21908c,
                            0x22a884, 0x43bf71, 0x7ad151, 0xbbdf27, 0xfde725};

/// Ten colours of cividis (J. R. Nunez, C. R. Anderton, R. S. Renslow, PLoS ONE 13, 2018).
constexpr Rgb kCividis[] = {0x00204d, 0x00336f, 0x39486b, 0x575c6d, 0x707173,
                            0x8a8779, 0xa69d75, 0xc4b56c, 0xe4cf5b, 0xffea46};

constexpr Rgb kGray[] = {0x000000, 0xffffff};

constexpr Rgb kDeviations[] = {0x123a7a, 0x3f7fc0, 0xf4f4f0, 0xd8704a, 0x7a1420};

std::span<const Rgb> stopsOf(ColourMap map) {
    switch (map) {
    case ColourMap::Viridis:
        return kViridis;
    case ColourMap::Cividis:
        return kCividis;
    case ColourMap::Gray:
        return kGray;
    case ColourMap::Deviations:
        return kDeviations;
    case ColourMap::Heights:
        break;
    }
    return kHeights;
}

double channel(Rgb colour, int shift) {
    return static_cast<double>((colour >> shift) & 0xffu);
}

} // namespace

Rgb mapColour(ColourMap map, double part) {
    const std::span<const Rgb> stops = stopsOf(map);
    const double at = std::clamp(part, 0.0, 1.0) * static_cast<double>(stops.size() - 1);
    const std::size_t stop = std::min(static_cast<std::size_t>(at), stops.size() - 2);
    const double rest = at - static_cast<double>(stop);
    Rgb colour = 0;
    for (const int shift : {16, 8, 0}) {
        const double value = channel(stops[stop], shift) * (1.0 - rest) + channel(stops[stop + 1], shift) * rest;
        colour |= static_cast<Rgb>(std::lround(value)) << shift;
    }
    return colour;
}

std::optional<ColourMap> colourMapByName(const QString& name) {
    if (name == QLatin1String("viridis")) {
        return ColourMap::Viridis;
    }
    if (name == QLatin1String("cividis")) {
        return ColourMap::Cividis;
    }
    return name == QLatin1String("gray") ? std::optional(ColourMap::Gray) : std::nullopt;
}

} // namespace kxreport
