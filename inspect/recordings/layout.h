// Where station, time and sensor stand in the paths of recordings.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KxInspect::detail {

/// What the path of a recording says.
struct PathValues {
    std::string station; ///< empty when the layout has none
    std::string time; ///< as PassLabels::time
    int serial = 0;
};

/// A layout of paths, see kDefaultLayout.
class Layout {
public:
    /// Throws an Error BadArgument for a layout that is wrong.
    explicit Layout(const std::string& text);

    /// How many names stand in a path: the folders and the file.
    std::size_t levels() const { return levels_.size(); }

    /// Whether a name that begins in this way is looked at: what is hidden or not finished is not.
    bool isLookedAt(std::size_t level, std::string_view name) const;

    /// Reads the name at a level, from 0, into `values`, which then holds what it says, too.
    /// @return why the name does not fit the layout, as the predicate of a sentence; empty when it fits
    std::string read(std::size_t level, std::string_view name, PathValues& values) const;

private:
    enum class Placeholder { Station, Time, Prefix, Serial };
    /// A text that stands for itself, or a placeholder.
    struct Piece {
        std::string text;
        std::optional<Placeholder> placeholder;
    };
    using Level = std::vector<Piece>;
    struct Reading;

    void addPieces(std::string_view name);
    void checkPlaceholders() const;
    void checkFileName() const;
    int count(Placeholder wanted) const;
    Piece placeholderPiece(std::string_view name) const;
    bool accepts(Placeholder placeholder, bool isFile, std::string_view text, PathValues& values) const;
    void readPieces(const Level& level, std::size_t piece, std::string_view rest, Reading& reading) const;
    [[noreturn]] void fail(const std::string& reason) const;

    std::string text_;
    std::vector<Level> levels_;
};

} // namespace KxInspect::detail
