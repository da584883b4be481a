// A wheel whose pictures the page of a pass shows.
#pragma once

#include <KxInspect/PassResult.h>

#include <QtCore/QString>

namespace kxreport {

/// One wheel of a pair that is shown.
struct ShownWheel {
    const KxInspect::PassResult& pass;
    const KxInspect::PairPicture& pair;
    const KxInspect::WheelPicture& picture;

    const KxInspect::PassSide& side() const { return pass.sides[picture.side]; }
    const KxInspect::PassWheel& wheel() const {
        return *pass.wheelOf(pass.pairs[static_cast<std::size_t>(pair.pair) - 1], picture.side);
    }

    /// The number of its side, from 1 on.
    QString number() const { return QString::number(picture.side + 1); }

    /// What the page calls a plot of this wheel: with the pair behind it for all pairs but the first that is shown.
    QString plotName(const char* name) const {
        const bool isFirst = pass.pictures.front().pair == pair.pair;
        return QLatin1String(name) + QLatin1Char('-') + number() +
               (isFirst ? QString() : QStringLiteral("-pair-%1").arg(pair.pair));
    }
};

} // namespace kxreport
