// Sets of numbers that are split and united often.
#pragma once

#include <random>
#include <utility>
#include <vector>

namespace KxMath::detail {

/// Disjoint sorted sets of the numbers 0 to count - 1, kept as treaps (C. R. Aragon, R. Seidel, Randomized search
/// trees, Proc. 30th Symp. Foundations of Computer Science, 1989). A set is named by the number at its root; at first
/// each number is a set of its own. Uniting two sets takes a step per run in which they interleave, not one per number.
class SortedSets {
public:
    static constexpr int kEmpty = -1;

    explicit SortedSets(int count) {
        nodes_.reserve(static_cast<std::size_t>(count));
        std::mt19937 priorities; // seeded the same for each sort: the same calls take the same time
        for (int i = 0; i < count; ++i) {
            nodes_.push_back({kEmpty, kEmpty, 1, static_cast<unsigned>(priorities())});
        }
    }

    /// The set of the numbers of `a` and `b`.
    int unite(int a, int b) {
        if (a == kEmpty || b == kEmpty) {
            return a == kEmpty ? b : a;
        }
        if (at(a).priority < at(b).priority) {
            std::swap(a, b);
        }
        const auto [below, above] = split(b, [&](int number) { return number < a; });
        at(a).left = unite(at(a).left, below);
        at(a).right = unite(at(a).right, above);
        updateSize(a);
        return a;
    }

    /// The sets of the `count` smallest numbers and of the others.
    std::pair<int, int> splitSmallest(int set, int count) {
        return split(set, [&](int number) {
            const int upToNumber = size(at(number).left) + 1;
            if (upToNumber > count) {
                return false;
            }
            count -= upToNumber;
            return true;
        });
    }

    /// Calls `visit` with the numbers in ascending order.
    template <typename Visit>
    void forEach(int set, Visit& visit) const {
        if (set != kEmpty) {
            forEach(at(set).left, visit);
            visit(set);
            forEach(at(set).right, visit);
        }
    }

private:
    struct Node {
        int left;
        int right;
        int size;
        unsigned priority; // none below has a higher one, which keeps the expected depth logarithmic
    };

    Node& at(int number) { return nodes_[static_cast<std::size_t>(number)]; }
    const Node& at(int number) const { return nodes_[static_cast<std::size_t>(number)]; }
    int size(int set) const { return set == kEmpty ? 0 : at(set).size; }
    void updateSize(int set) { at(set).size = size(at(set).left) + size(at(set).right) + 1; }

    /// Splits before the first number that `isBelow` refuses; it is asked on the way down from the root.
    template <typename IsBelow>
    std::pair<int, int> split(int set, IsBelow&& isBelow) {
        if (set == kEmpty) {
            return {kEmpty, kEmpty};
        }
        if (isBelow(set)) {
            const auto [below, above] = split(at(set).right, isBelow);
            at(set).right = below;
            updateSize(set);
            return {set, above};
        }
        const auto [below, above] = split(at(set).left, isBelow);
        at(set).left = above;
        updateSize(set);
        return {below, set};
    }

    std::vector<Node> nodes_;
};

} // namespace KxMath::detail
