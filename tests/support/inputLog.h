// What a round of a test with random input was given, shown when the round fails.
#pragma once

#include <KxMath/KxPoints.h>

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace testing_support {

class InputLog {
public:
    void clear() { entries_.clear(); }

    template <typename Number>
    requires std::is_arithmetic_v<Number>
    void add(Number number) {
        if constexpr (std::is_same_v<Number, bool>) {
            addNumber(number);
        } else if constexpr (std::is_integral_v<Number>) {
            addNumber(static_cast<long long>(number));
        } else {
            addNumber(static_cast<float>(number));
        }
    }
    /// A point that follows another one joins its list.
    template <typename Point>
    void addPoint(const Point& point) {
        if (entries_.empty() || !std::holds_alternative<QList<Point>>(entries_.back())) {
            entries_.push_back(QList<Point>());
        }
        std::get<QList<Point>>(entries_.back()).append(point);
    }
    template <typename Point>
    void add(const QList<Point>& points) {
        entries_.push_back(points);
    }
    void add(const QByteArray& bytes) { entries_.push_back(bytes); }

    /// Each entry as C++ that can be pasted into a test, of about `maxLength` characters at most; before it, of a list
    /// of points, those about `difference`, unless that is negative.
    std::string text(int difference, std::size_t maxLength = 8000) const;

private:
    using Number = std::variant<bool, long long, float>;
    using Numbers = std::vector<Number>;
    using Entry = std::variant<Numbers, QList<KxMath::KxPointXY>, QList<KxMath::KxPointXYZ>,
                               QList<KxMath::KxPointXYZRGB>, QByteArray>;

    void addNumber(Number number);

    std::vector<Entry> entries_;
};

/// Lives as long as a round. When a check fails meanwhile, and none has before, the test prints seed, round and input.
class RoundReport {
public:
    RoundReport(unsigned seed, int round, const InputLog& input);
    ~RoundReport();
    RoundReport(const RoundReport&) = delete;
    RoundReport& operator=(const RoundReport&) = delete;

private:
    unsigned seed_;
    int round_;
    const InputLog& input_;
    bool hadFailure_;
};

} // namespace testing_support
