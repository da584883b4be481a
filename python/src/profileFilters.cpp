// Filters of profiles. Where the library writes into an `out` or works on its argument, the result is a new profile.
#include "bindings.h"
#include "lists.h"

namespace kxpython {

using KxMath::KxLine;
using KxMath::KxProfile;

namespace {

/// What a filter that writes into an `out` makes of a profile.
template <typename Work>
Profile filtered(const Profile& self, Work work) {
    return changed(self, [&](KxProfile& p) {
        KxProfile out;
        out.points = p.points;
        work(p, out);
        p.points = out.points;
    });
}

void bindSmoothing(py::class_<Profile>& type) {
    type.def(
        "moving_average",
        [](const Profile& self, int window) { return changed(self, [=](auto& p) { p.wndFilter(window); }); },
        py::arg("window"),
        doc("With the means of `window` points as y; later windows see earlier means, so that it is no convolution.",
            {"KxProfile::wndFilter"})
            .c_str());
    type.def(
        "fir20",
        [](const Profile& self, MaybeFloat step) { return changed(self, [=](auto& p) { p.kihFilter20(step.value); }); },
        py::arg("max_step") = py::none(), doc("Smoothed, as it lags.", {"KxProfile::kihFilter20"}).c_str());
    type.def(
        "smooth",
        [](const Profile& self, float spacing) {
            return changed(self, [=](auto& p) {
                p.kihFilter20(kNaN);
                p.points.remove(0, std::min<qsizetype>(20, p.points.size()));
                p.shift(-10.0f * spacing, 0.0f, 0.0f);
            });
        },
        py::arg("spacing"),
        doc("Smoothed, for points that are `spacing` apart in x: without the lag of 10 points, and without the first "
            "20 points, which are not smoothed.",
            {"KxProfile::kihFilter20"})
            .c_str());
    type.def(
        "med_filt",
        [](const Profile& self, int window) {
            return filtered(self, [=](auto& p, auto& out) { p.medFilt(out, window, 0); });
        },
        py::arg("window"),
        doc("No median of heights: on a profile in the order of x it is a shift.", {"KxProfile::medFilt"}).c_str());
    type.def(
        "slope_filter",
        [](const Profile& self, int window) {
            return filtered(self, [=](auto& p, auto& out) { p.diffFilt(out, window); });
        },
        py::arg("window"),
        doc("With the slope of the next `window` points as y; the last ones, which have fewer behind them, keep their "
            "y.",
            {"KxProfile::diffFilt"})
            .c_str());
}

void bindCleaning(py::class_<Profile>& type) {
    type.def(
        "remove_noise",
        [](const Profile& self, int window, int jumps, float threshold) {
            return changed(self, [=](auto& p) { p.removeNoise(window, jumps, threshold, 0.0f); });
        },
        py::arg("window"), py::arg("max_jumps"), py::arg("threshold"),
        doc("Without windows of points that jump; `threshold` in mm.", {"KxProfile::removeNoise"}).c_str());
    type.def(
        "remove_spikes",
        [](const Profile& self, float threshold, float width) {
            return changed(self, [=](auto& p) { p.splashFilter(p, threshold, width); });
        },
        py::arg("threshold"), py::arg("max_width"),
        doc("Without narrow spikes; `threshold` and `max_width` in mm. Where the words below say `out`, it is this "
            "profile, "
            "which is copied before.",
            {"KxProfile::splashFilter"})
            .c_str());
    type.def(
        "remove_spikes_polar",
        [](const Profile& self, float radius, float threshold, float width) {
            return changed(self, [=](auto& p) { p.splashFilterPolar(p, radius, threshold, width); });
        },
        py::arg("radius"), py::arg("threshold"), py::arg("max_width"),
        doc("Without narrow spikes on an arc of about `radius`, mm; the points of the new profile are in the order of "
            "their "
            "angle. Where the words below say `out`, it is this profile, which is copied before.",
            {"KxProfile::splashFilterPolar"})
            .c_str());
    type.def(
        "window_filter_polar",
        [](const Profile& self, float deviation, int window, int offset) {
            return changed(self, [=](auto& p) { p.wndFilterPolar(p, deviation, window, offset); });
        },
        py::arg("max_deviation"), py::arg("window"), py::arg("offset"),
        doc("Radii that are more than `max_deviation`, mm, off the mean of their window become that mean. Where the "
            "words "
            "below say `out`, it is this profile, which is copied before.",
            {"KxProfile::wndFilterPolar"})
            .c_str());
    type.def(
        "below",
        [](const Profile& self, KxLine line) { return changed(self, [=](auto& p) { p.removeHighLevel(line); }); },
        py::arg("line"), doc("The points below a line, without those of NaN.", {"KxProfile::removeHighLevel"}).c_str());
    type.def(
        "above",
        [](const Profile& self, KxLine line) { return changed(self, [=](auto& p) { p.removeLowLevel(line); }); },
        py::arg("line"), doc("The points above a line, without those of NaN.", {"KxProfile::removeLowLevel"}).c_str());
    type.def(
        "remove_line_parts",
        [](const Profile& self, int parts, float correlation, float gap, int points) {
            return changed(self, [=](auto& p) { p.removeLineParts(parts, correlation, gap, points); });
        },
        py::arg("max_parts"), py::arg("max_correlation"), py::arg("max_gap"), py::arg("min_points"),
        doc("Without straight parts; `max_gap` in mm, `max_correlation` 0 to 1.", {"KxProfile::removeLineParts"})
            .c_str());
}

void bindChords(py::class_<Profile>& type) {
    type.def(
        "block_differences",
        [](const Profile& self, const Profile& other, int window, bool cut) {
            auto subtracted = libraryObject(other);
            return filtered(self,
                            [&, window, cut](auto& p, auto& out) { p.calcDistance(subtracted, out, window, 0, cut); });
        },
        py::arg("other"), py::arg("window"), py::arg("cut_tail") = false,
        doc("No difference of heights at equal x: that is p.y - other.y_at(p.x).", {"KxProfile::calcDistance"})
            .c_str());
    type.def(
        "chords",
        [](const Profile& self, int window) {
            return filtered(self, [=](auto& p, auto& out) { p.addLineSegments(out, window, 0); });
        },
        py::arg("window"),
        doc("With blocks of `window` points moved onto their chords; points that have no chord stay as they are.",
            {"KxProfile::addLineSegments"})
            .c_str());
    type.def(
        "chords_by_width",
        [](const Profile& self, float width) {
            return filtered(self, [=](auto& p, auto& out) { p.addLineSegmentsWithMMWindow(out, width); });
        },
        py::arg("width"),
        doc("With blocks that are `width` wide in x, mm, moved onto their chords; points that have no chord stay as "
            "they are.",
            {"KxProfile::addLineSegmentsWithMMWindow"})
            .c_str());
    type.def(
        "parallel_pieces",
        [](const Profile& self, int window, float slope) {
            return filtered(self, [=](auto& p, auto& out) { p.addParallelLine(out, window, 0, slope); });
        },
        py::arg("window"), py::arg("slope"),
        doc("With blocks of `window` points moved onto pieces of one slope, mm per mm, through their middle points; "
            "points "
            "behind the last whole block stay as they are.",
            {"KxProfile::addParallelLine"})
            .c_str());
}

} // namespace

void bindProfileFilters(py::class_<Profile>& type) {
    bindSmoothing(type);
    bindCleaning(type);
    bindChords(type);
}

} // namespace kxpython
