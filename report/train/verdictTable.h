// Verdicts by limits, for text and page.
#pragma once

#include "report/elements/page.h"
#include "report/train/passColumns.h"

#include <KxInspect/PassResult.h>

#include <QtCore/QStringList>

#include <vector>

namespace kxreport {

/// A row of the table of verdicts.
struct VerdictRow {
    QStringList texts;
    Tone tone = Tone::Plain;
    KxInspect::LimitBounds bounds;
};

inline constexpr int kLimitsColumn = 5; ///< which of the texts is the limits
inline constexpr int kVerdictColumn = 6; ///< which of the texts is the verdict

QStringList verdictTitles();

/// The values of a pass that are not ok, those that are only so within their interval included. For passes with limits.
std::vector<VerdictRow> verdictRows(const KxInspect::PassResult& pass);

/// How many values have which verdict, of the pass and of vehicles.
QStringList verdictNotes(const KxInspect::PassResult& pass);

Fact passVerdictFact(const KxInspect::PassResult& pass);

/// The verdicts on the wheels of each pair, for tables of programs.
const std::vector<PairColumn>& verdictColumns();

} // namespace kxreport
