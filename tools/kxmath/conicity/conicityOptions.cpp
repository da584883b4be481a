// The options of kxmath conicity.
#include "tools/kxmath/conicity/conicityOptions.h"

#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/textOptions.h"

#include <KxInspect/Wheel.h>

namespace kxtool {

namespace {

using KxInspect::ConicityInput;
using KxInspect::Orientation;
using KxInspect::WheelSetPart;

constexpr WheelSetPart kParts[] = {KxInspect::Wheel1, KxInspect::Rail1, KxInspect::Wheel2, KxInspect::Rail2};

const char* const kDescription =
    "Calculates the equivalent conicity of a wheel-set on a track from the cross-sections of two\n"
    "wheels and two rails.\n"
    "\n"
    "Profiles are 2-D cloud sections, profile records, other point files, text columns, or text files\n"
    "of contact profile gauges (.whl, .ban, .prw, .prr), in mm. Their points follow the contour. x\n"
    "points outwards, from the flange back of a wheel and from the gauge side of a rail; y points\n"
    "down. Profiles that show another orientation by their shape are turned, and a warning says so;\n"
    "--up, --mirror and --as-is say it instead. Left and right profiles have the same form.\n"
    "\n"
    "The gauge G is the distance of the rails 14 mm below their tops; each rail is cut there on its\n"
    "gauge side. The back-to-back distance B is the distance of the flange backs:\n"
    "\n"
    "      wheel 1        |<------------ B ------------>|        wheel 2\n"
    "    __________  __   |                             |   __  __________\n"
    "              \\/  \\__|                             |__/  \\/\n"
    "     ______       |                                   |       ______\n"
    "    |      |      |<--------------- G --------------->|      |      |\n"
    "     rail 1                                                   rail 2\n"
    "\n"
    "Exit codes: 0 done, 1 no conicity can be calculated from these profiles (files that were asked for\n"
    "are written and say why), 2 wrong use, 3 a profile is unreadable or damaged, 4 an output could not\n"
    "be written, 5 a verdict of --fail-on was given, 6 not enough memory.";

const std::vector<PossibleVerdict> kVerdicts = {{Verdict::NotJudged, "there is no conicity at --amplitude"}};

/// Sets a flag in the orientation of each profile that an option lists: "wheels", "rails", or single profiles.
void readParts(const Options& options, const char* option, ConicityInput& input, std::optional<bool> Orientation::*flag,
               bool value) {
    for (const QString& entry : options.text(option).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        bool isKnown = false;
        for (const WheelSetPart part : kParts) {
            const char* const group = isWheel(part) ? "wheels" : "rails";
            if (entry == QLatin1String(nameOf(part)) || entry == QLatin1String(group)) {
                input.sections[part].orientation.*flag = value;
                isKnown = true;
            }
        }
        if (!isKnown) {
            options.checkChoice(entry, QStringLiteral("--") + QLatin1String(option),
                                {"wheels", "rails", "wheel1", "wheel2", "rail1", "rail2"});
        }
    }
}

} // namespace

ConicityOptions::ConicityOptions()
    : Options("conicity",
              "--wheel1 FILE --wheel2 FILE --rail1 FILE --rail2 FILE\n"
              "                       --gauge MM --back-to-back MM [options]",
              QLatin1String(kDescription)) {
    const auto add = [&](const char* name, const char* help, const char* value, const char* byDefault = "") {
        addOption(name, QLatin1String(help), value, QLatin1String(byDefault));
    };
    add("wheel1", "Profile of the first wheel.", "file");
    add("wheel2", "Profile of the second wheel, on the side of positive displacements.", "file");
    add("rail1", "Profile of the rail under the first wheel.", "file");
    add("rail2", "Profile of the rail under the second wheel.", "file");
    add("gauge", "Distance of the rails at the gauge depth, mm.", "mm");
    add("back-to-back", "Distance of the flange backs, mm.", "mm");
    add("gauge-depth", "Depth below the rail's top at which the gauge is measured; 0: at the end of the profile.", "mm",
        "14");
    add("radius1", "Radius of the first wheel at its tape circle, mm; only the difference of the two matters.", "mm",
        "460");
    add("radius2", "Radius of the second wheel at its tape circle, mm.", "mm", "460");
    add("amplitudes", "Approximate number of amplitudes, which start at 1 mm.", "count", "100");
    add("edge-margin", "Takes the curve of EquivalentConicity, whose integral ends so far from the turning points, mm.",
        "mm");
    add("amplitude", "The amplitude whose conicity is printed first, mm.", "mm", "3");
    add("smooth",
        "Smooth the profiles by local parabolas over so many mm of their contour; 0: not at all. Default: as much as "
        "the noise of each profile asks for, none for profiles without noise.",
        "mm");
    add("gauge-error",
        "Standard uncertainties of the gauge of the wheels and of that of the rails, which the intervals then contain: "
        "of "
        "the place of the flange back along x in mm, of the turn of the profiles in mrad, of all lengths in "
        "millionths.",
        "MM,MRAD,PPM", "0,0,0");
    add("up", "Profiles whose y points up: wheels, rails, wheel1, ..., separated by commas.", "list");
    add("mirror", "Profiles whose x points inwards, in the same form.", "list");
    add("flange-back",
        "x of the flange back in both wheels. Default: 0, or -70 where the tape circle is at 0, or where "
        "the profile begins on a steep back.",
        "mm");
    add("as-is", "Profiles that stand as said above, whatever their shape shows, in the same form.", "list");
    addTextOptions(*this);
    add("json", "Write the results as JSON; - is the standard output.", "file");
    add("csv", "Write the curve as CSV (amplitude,conicity,low,high); - is the standard output.", "file");
    add("report", "Write a report with plots, one HTML file.", "file");
    FailOn::declare(*this, kVerdicts);
}

FailOn ConicityOptions::failOn() const {
    return FailOn(*this, kVerdicts);
}

ConicityInput ConicityOptions::input() const {
    const auto numberIn = [this](const char* name, const std::array<double, 2>& range) {
        return number(name, {range[0], range[1]});
    };
    ConicityInput input;
    QStringList files;
    for (const WheelSetPart part : kParts) {
        files += needed(nameOf(part));
        input.sections[part].file = toBytes(files.last());
    }
    for (const char* const name : {"gauge", "back-to-back"}) {
        needed(name);
    }
    arguments("unnamed arguments", 0, 0);
    input.gauge = numberIn("gauge", KxInspect::kTrackDistances);
    input.backToBack = numberIn("back-to-back", KxInspect::kTrackDistances);
    input.gaugeDepth = numberIn("gauge-depth", KxInspect::kGaugeDepths);
    input.radius1 = numberIn("radius1", KxInspect::kWheelRadii);
    input.radius2 = numberIn("radius2", KxInspect::kWheelRadii);
    input.amplitudes = static_cast<unsigned>(numberIn("amplitudes", KxInspect::kAmplitudeCounts));
    input.edgeMargin = numberIfSet("edge-margin", {KxInspect::kEdgeMargins[0], KxInspect::kEdgeMargins[1]});
    input.shownAmplitude = numberIn("amplitude", KxInspect::kShownAmplitudes);
    input.flangeBack1 = numberIfSet("flange-back", {KxInspect::kFlangeBacks[0], KxInspect::kFlangeBacks[1]});
    input.flangeBack2 = input.flangeBack1;
    input.smoothing = numberIfSet("smooth", {KxInspect::kSmoothingWindows[0], KxInspect::kSmoothingWindows[1]});
    const std::vector<float> error =
        numbers("gauge-error", 3, {KxInspect::kGaugeErrors[0], KxInspect::kGaugeErrors[1]});
    input.gaugeError = {error[0], error[1], error[2]};
    readParts(*this, "as-is", input, &Orientation::isUp, false);
    readParts(*this, "as-is", input, &Orientation::isMirrored, false);
    readParts(*this, "up", input, &Orientation::isUp, true);
    readParts(*this, "mirror", input, &Orientation::isMirrored, true);
    for (KxInspect::CrossSection& section : input.sections) {
        section.text = textOptions(*this, files);
    }
    return input;
}

} // namespace kxtool
