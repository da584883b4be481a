// Axles of a pass matched to those of a list by their spacing.
#pragma once

#include <KxInspect/Consist.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// How the axles of a pass fit those of a list in one order.
struct ListMatch {
    /// For each axle of the pass its index in the list, in the order of the list; absent where it has no partner.
    std::vector<std::optional<std::size_t>> partners;
    double cost = 0.0;
    double scale = 1.0; ///< mm of the pass to a mm of the list
    /// For each axle of the pass and each of the list: the cost of the cheapest match that joins them.
    std::vector<std::vector<double>> through;
};

/// Matches which cost so much more are as likely: little more than an axle that was not seen.
inline constexpr double kMatchMargin = 12.0;

/// Aligns both rows of axles by dynamic programming (Needleman and Wunsch, A general method applicable to the search for
/// similarities, 1970). Successive axles of the pass cost the square of what their spacing is off that of the list, in
/// parts of 25 mm and 0.5 %; an axle of the list that was not seen costs 10, one of the pass that is not in the list 14,
/// a spacing that does not fit at all 30. The scale is found from the ratios of spacings, 0.8 to 1.25.
/// @param seen places of the axles of the pass, ascending; at least one
/// @param listed those of the list in the order of passing, ascending; at least one
ListMatch matchAxles(const std::vector<double>& seen, const std::vector<double>& listed);

} // namespace KxInspect::detail
