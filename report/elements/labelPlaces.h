// Places for labels on a plot: beside its lines and each other, never on them.
#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>

#include <vector>

namespace kxreport {

/// What labels must not cover, and the labels that have their places; pixels.
class LabelPlaces {
public:
    /// @param area which the labels do not leave
    explicit LabelPlaces(const QRectF& area) : area_(area) {}

    void addLine(const QPointF& from, const QPointF& to) { lines_.push_back({from, to}); }

    /// Where the middle of a label goes: the free place nearest to the wanted one, or the wanted one where none is free
    /// within about the height of seven labels.
    QPointF place(const QPointF& wanted, const QSizeF& size);

private:
    struct Segment {
        QPointF from, to;
    };

    bool isFree(const QRectF& box) const;

    QRectF area_;
    std::vector<Segment> lines_;
    std::vector<QRectF> taken_;
};

} // namespace kxreport
