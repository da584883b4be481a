// The back faces of wheels among the straight parts of a recording.
#include "inspect/station/backFaces.h"

#include "inspect/fitting/median.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>

namespace KxInspect::detail {

namespace {

constexpr double kMostTilt = 87.0; // degrees: the slope of 20 that settings may have
// Wheelsets stand less than a degree askew, and noise turns a part by another one or two.
constexpr double kMostTurn = 3.0; // degrees
constexpr int kFewestRecords = 3; // of a run: less is noise

struct Candidate {
    FaceLine line;
    std::vector<const StraightPart*> parts; ///< by record
    RunDivision runs;
    std::size_t records = 0;
};

double turnBetween(double a, double b) {
    const double apart = std::abs(a - b);
    return std::min(apart, 180.0 - apart);
}

double distanceOf(const FaceLine& line, const StraightPart& part) {
    return line.distanceOf(static_cast<double>(part.x), static_cast<double>(part.y));
}

/// The cells of a grid over direction and distance that hold the most parts, each with its neighbours.
std::vector<FaceLine> mostVoted(const std::vector<StraightPart>& parts) {
    constexpr double kDegreesPerCell = 2.0;
    constexpr double kMmPerCell = 5.0;
    constexpr std::size_t kMostCells = 100; // treads rise and sink, and so fill many
    using Cell = std::pair<int, int>;
    std::map<Cell, int> votes;
    for (const StraightPart& part : parts) {
        const double degrees = static_cast<double>(part.degrees);
        const double away = distanceOf({degrees, 0.0}, part);
        if (std::abs(degrees) <= kMostTilt && away > 0.0) {
            ++votes[{static_cast<int>(std::floor(degrees / kDegreesPerCell)),
                     static_cast<int>(std::floor(away / kMmPerCell))}];
        }
    }
    std::vector<std::pair<int, Cell>> sums;
    for (const auto& [cell, own] : votes) {
        int sum = 0;
        for (int i = -1; i <= 1; ++i) {
            for (int j = -1; j <= 1; ++j) {
                const auto near = votes.find({cell.first + i, cell.second + j});
                sum += near != votes.end() ? near->second : 0;
            }
        }
        sums.push_back({sum, cell});
    }
    std::sort(sums.begin(), sums.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<Cell> taken;
    std::vector<FaceLine> lines;
    for (const auto& [sum, cell] : sums) {
        const auto isNear = [&, at = cell](const Cell& other) {
            return std::abs(other.first - at.first) <= 1 && std::abs(other.second - at.second) <= 1;
        };
        if (lines.size() < kMostCells && std::none_of(taken.begin(), taken.end(), isNear)) {
            taken.push_back(cell);
            lines.push_back({(cell.first + 0.5) * kDegreesPerCell, (cell.second + 0.5) * kMmPerCell});
        }
    }
    return lines;
}

/// The parts on a line.
std::vector<const StraightPart*> partsOn(const FaceLine& line, const std::vector<StraightPart>& parts, double limit) {
    std::vector<const StraightPart*> on;
    for (const StraightPart& part : parts) {
        if (static_cast<double>(part.deviation) <= limit &&
            turnBetween(static_cast<double>(part.degrees), line.degrees) <= kMostTurn &&
            std::abs(distanceOf(line, part) - line.away) <= kMostPlay) {
            on.push_back(&part);
        }
    }
    return on;
}

/// Medians of direction and distance of the parts.
FaceLine middleOf(const std::vector<const StraightPart*>& parts, const FaceLine& near) {
    std::vector<double> turns;
    turns.reserve(parts.size());
    for (const StraightPart* part : parts) {
        turns.push_back(static_cast<double>(part->degrees) - near.degrees);
    }
    FaceLine line{near.degrees + median(turns, 0.0), near.away};
    std::vector<double> distances;
    distances.reserve(parts.size());
    for (const StraightPart* part : parts) {
        distances.push_back(distanceOf(line, *part));
    }
    line.away = median(distances, near.away);
    return line;
}

Candidate examine(const FaceLine& start, const std::vector<StraightPart>& parts, std::size_t wheels) {
    constexpr int kRounds = 3;
    const double limit = straightLimit(parts, start.degrees);
    Candidate candidate{start, {}, {}, 0};
    for (int round = 0; round < kRounds; ++round) {
        candidate.parts = partsOn(candidate.line, parts, limit);
        candidate.line = middleOf(candidate.parts, candidate.line);
    }
    std::vector<int> records;
    for (const StraightPart* part : candidate.parts) {
        if (records.empty() || records.back() != part->record) {
            records.push_back(part->record);
        }
    }
    candidate.records = records.size();
    candidate.runs = divideRuns(runsOf(records), wheels);
    return candidate;
}

/// True when most of what `front` shows lies before the line of `back`.
bool isBefore(const Candidate& front, const Candidate& back) {
    std::size_t before = 0;
    for (const StraightPart* part : front.parts) {
        before += distanceOf(back.line, *part) < back.line.away - kMostPlay ? 1 : 0;
    }
    return 2 * before > front.parts.size();
}

/// True when the runs are about equally long, as those of the wheels of one train, and stand out from others.
bool looksLikeWheels(const Candidate& candidate) {
    constexpr int kMostUnequal = 4;
    int longest = 0;
    for (const RecordRun& run : candidate.runs.wheels) {
        longest = std::max(longest, run.length());
    }
    return longest <= kMostUnequal * candidate.runs.shortestWheel &&
           candidate.runs.shortestWheel >= 2 * candidate.runs.longestOther;
}

/// The candidate in the most records of those that `may` be taken and have none before them that `hides` others; null when
/// there is none.
template <typename May, typename Hides>
const Candidate* nearestOf(const std::vector<Candidate>& candidates, May may, Hides hides) {
    const Candidate* best = nullptr;
    for (const Candidate& candidate : candidates) {
        const bool isBehind = std::any_of(candidates.begin(), candidates.end(), [&](const Candidate& other) {
            return hides(other) && isBefore(other, candidate);
        });
        if (may(candidate) && !isBehind && (best == nullptr || candidate.records > best->records)) {
            best = &candidate;
        }
    }
    return best;
}

/// Direction and distance of the face of each wheel.
BackFaces describe(const Candidate& candidate) {
    BackFaces faces;
    faces.runs = candidate.runs;
    std::vector<std::vector<const StraightPart*>> ofWheels;
    for (const RecordRun& run : candidate.runs.wheels) {
        std::vector<const StraightPart*> parts;
        for (const StraightPart* part : candidate.parts) {
            if (part->record >= run.first && part->record <= run.last) {
                parts.push_back(part);
            }
        }
        faces.degrees.push_back(middleOf(parts, candidate.line).degrees);
        ofWheels.push_back(std::move(parts));
    }
    faces.line = {median(faces.degrees, candidate.line.degrees), 0.0};
    for (const auto& parts : ofWheels) {
        faces.away.push_back(middleOf(parts, faces.line).away);
    }
    faces.line.away = median(faces.away, candidate.line.away);
    return faces;
}

} // namespace

double FaceLine::distanceOf(double x, double y) const {
    const double angle = degrees * std::numbers::pi / 180.0;
    return y * std::cos(angle) - x * std::sin(angle);
}

std::optional<BackFaces> findBackFaces(const std::vector<StraightPart>& parts, std::size_t wheels) {
    std::vector<Candidate> candidates;
    for (const FaceLine& line : mostVoted(parts)) {
        Candidate candidate = examine(line, parts, wheels);
        if (candidate.runs.shortestWheel >= kFewestRecords && std::abs(candidate.line.degrees) <= kMostTilt) {
            candidates.push_back(std::move(candidate));
        }
    }
    const auto hasWheels = [&](const Candidate& c) { return c.runs.wheels.size() == wheels; };
    const Candidate* const expected = nearestOf(candidates, hasWheels, hasWheels);
    const Candidate* const any = nearestOf(
        candidates, [](const Candidate&) { return true; },
        [&](const Candidate& c) { return hasWheels(c) || looksLikeWheels(c); });
    // What has the expected number by chance is in fewer records than the faces.
    const Candidate* const best =
        expected != nullptr && (any == nullptr || expected->records >= any->records) ? expected : any;
    return best != nullptr ? std::optional(describe(*best)) : std::nullopt;
}

} // namespace KxInspect::detail
