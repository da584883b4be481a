// Where station, time and sensor stand in the paths of recordings.
#include "inspect/recordings/layout.h"

#include "inspect/base/error.h"
#include "inspect/base/nearestName.h"
#include "inspect/base/paths.h"
#include "inspect/recordings/timeInName.h"

#include <KxInspect/PassIdentity.h>

#include <array>
#include <charconv>
#include <utility>

namespace KxInspect::detail {

namespace {

constexpr const char* kNames[] = {"station", "time", "prefix", "serial"}; // in the order of Placeholder
constexpr std::string_view kFileEnd = ".bin";

bool beginsWith(std::string_view text, std::string_view begin) {
    return text.substr(0, begin.size()) == begin;
}

} // namespace

/// The ways to read a name that were found so far.
struct Layout::Reading {
    bool isFile = false; ///< the name is that of the file
    PathValues values = {}; ///< of the way that is tried
    PathValues found = {};
    int ways = 0;
};

Layout::Layout(const std::string& text) : text_(text) {
    std::size_t begin = 0;
    for (;;) {
        const std::size_t slash = text.find('/', begin);
        addPieces(std::string_view(text).substr(begin, slash == std::string::npos ? slash : slash - begin));
        if (slash == std::string::npos) {
            break;
        }
        begin = slash + 1;
    }
    checkPlaceholders();
    checkFileName();
}

void Layout::fail(const std::string& reason) const {
    throw Error(ErrorKind::BadArgument, {"the layout", text_, {}}, reason);
}

Layout::Piece Layout::placeholderPiece(std::string_view name) const {
    QStringList names;
    for (std::size_t i = 0; i < std::size(kNames); ++i) {
        if (name == kNames[i]) {
            return {{}, static_cast<Placeholder>(i)};
        }
        names.append(QLatin1String(kNames[i]));
    }
    const QString nearest = nearestName(toQt(std::string(name)), names);
    fail("has an unknown placeholder {" + shown(std::string(name)) + "}" +
         (nearest.isEmpty() ? std::string(", known are {station}, {time}, {prefix} and {serial}")
                            : " (is {" + nearest.toStdString() + "} meant?)"));
}

void Layout::addPieces(std::string_view name) {
    if (name.empty() || name == "." || name == "..") {
        fail("must be a path below the folder, without empty names, '.' and '..'");
    }
    Level level;
    while (!name.empty()) {
        const std::size_t brace = name.find_first_of("{}");
        if (brace != 0) {
            level.push_back({std::string(name.substr(0, brace)), {}});
            name.remove_prefix(level.back().text.size());
            continue;
        }
        const std::size_t end = name.find('}');
        if (end == 0 || end == std::string_view::npos || name.find('{', 1) < end) {
            fail(name.front() == '{' ? "has a { without its }" : "has a } without its {");
        }
        if (!level.empty() && level.back().placeholder) {
            fail("is ambiguous: nothing stands between two placeholders");
        }
        level.push_back(placeholderPiece(name.substr(1, end - 1)));
        name.remove_prefix(end + 1);
    }
    levels_.push_back(std::move(level));
}

int Layout::count(Placeholder wanted) const {
    int found = 0;
    for (const Level& level : levels_) {
        for (const Piece& piece : level) {
            found += piece.placeholder == wanted ? 1 : 0;
        }
    }
    return found;
}

void Layout::checkPlaceholders() const {
    for (const Placeholder placeholder :
         {Placeholder::Station, Placeholder::Time, Placeholder::Prefix, Placeholder::Serial}) {
        const std::string name = std::string("{") + kNames[static_cast<std::size_t>(placeholder)] + "}";
        const int found = count(placeholder);
        if (found > 1) {
            fail("has " + name + " more than once");
        }
        if (found == 0 && (placeholder == Placeholder::Time || placeholder == Placeholder::Serial)) {
            fail("needs " + name);
        }
    }
}

void Layout::checkFileName() const {
    const Level& file = levels_.back();
    const std::size_t size = file.size();
    std::size_t bars = 0;
    for (const Piece& piece : file) {
        for (const char c : piece.text) {
            bars += c == '_' ? 1 : 0;
        }
    }
    const bool endsRight = size >= 3 && file[size - 1].text == kFileEnd &&
                           file[size - 2].placeholder == Placeholder::Serial && file[size - 3].text.size() > 0 &&
                           file[size - 3].text.back() == '_' && (size > 3 || file[size - 3].text.size() > 1);
    if (!endsRight || bars != 1) {
        fail("must end in the name of a recording: a text without '_', then _{serial}.bin");
    }
    for (std::size_t i = 0; i + 1 < size; ++i) {
        if (file[i].text.find(kFileEnd) != std::string::npos) {
            fail("has .bin twice in the name of the file");
        }
    }
}

bool Layout::isLookedAt(std::size_t level, std::string_view name) const {
    const bool beginsWithText = !levels_[level].front().placeholder;
    return beginsWithText || !(beginsWith(name, ".") || beginsWith(name, "incomplete-"));
}

bool Layout::accepts(Placeholder placeholder, bool isFile, std::string_view text, PathValues& values) const {
    // The serial number of a recording is what stands behind the first '_' of its name without .bin.
    if (isFile && (text.find('_') != std::string_view::npos || text.find(kFileEnd) != std::string_view::npos)) {
        return false;
    }
    switch (placeholder) {
    case Placeholder::Station:
        values.station = text;
        return whyNoLabel(values.station).empty() && text != "." && text != ".."; // which name other folders
    case Placeholder::Time: {
        std::optional<std::string> time = timeInName(text);
        values.time = time ? std::move(*time) : std::string();
        return !values.time.empty();
    }
    case Placeholder::Serial: {
        int serial = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), serial);
        values.serial = serial;
        return error == std::errc() && end == text.data() + text.size() && serial > 0 && text.front() != '-';
    }
    case Placeholder::Prefix:
        break;
    }
    return true;
}

void Layout::readPieces(const Level& level, std::size_t piece, std::string_view rest, Reading& reading) const {
    if (piece == level.size()) {
        if (rest.empty()) {
            reading.found = reading.values;
            ++reading.ways;
        }
        return;
    }
    if (!level[piece].placeholder) {
        if (beginsWith(rest, level[piece].text)) {
            readPieces(level, piece + 1, rest.substr(level[piece].text.size()), reading);
        }
        return;
    }
    const bool isLast = piece + 1 == level.size();
    for (std::size_t size = isLast ? rest.size() : 1; size <= rest.size() && size > 0 && reading.ways < 2; ++size) {
        // Two placeholders never stand beside each other: a text follows.
        const bool mayEnd = isLast || beginsWith(rest.substr(size), level[piece + 1].text);
        if (mayEnd && accepts(*level[piece].placeholder, reading.isFile, rest.substr(0, size), reading.values)) {
            readPieces(level, piece + 1, rest.substr(size), reading);
        }
    }
}

std::string Layout::read(std::size_t level, std::string_view name, PathValues& values) const {
    Reading reading;
    reading.isFile = level + 1 == levels_.size();
    reading.values = values;
    readPieces(levels_[level], 0, name, reading);
    if (reading.ways == 1) {
        values = std::move(reading.found);
        return {};
    }
    if (reading.ways > 1) {
        return "fits the layout in more than one way";
    }
    const Level& pieces = levels_[level];
    if (pieces.size() == 1 && pieces.front().placeholder == Placeholder::Time) {
        return "does not fit the layout: its name is no ISO 8601 time with a zone, as 20261121T081500Z";
    }
    if (pieces.size() == 1 && pieces.front().placeholder == Placeholder::Station) {
        return "does not fit the layout: the name of a station " + whyNoLabel(std::string(name));
    }
    return "does not fit the layout";
}

} // namespace KxInspect::detail
