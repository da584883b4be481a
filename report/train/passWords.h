// What tables and pages say of a pass in words.
#pragma once

#include "report/elements/page.h"

#include <KxInspect/PassResult.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

namespace kxreport {

/// The tolerance.
QString toleranceText(const KxInspect::PassResult& pass);

/// How many of what was asked for were judged, and how many of these are bad: "12 of 16 treads judged, 1 defective".
/// Without a judged one nothing is said of bad ones.
QString countText(const KxInspect::PassResult& pass, KxInspect::PassQuestion question);

/// Why a pair, or its wheel on one side, has no verdict on a question that was asked; empty when it has one.
QString whyNotJudged(const KxInspect::PassResult& pass, KxInspect::PassQuestion question, size_t pair, size_t side);

/// All of these: "pairs 3-4: REASON", "pairs 1 3 on side 1, pair 2 on side 2: REASON".
QStringList notJudgedTexts(const KxInspect::PassResult& pass, KxInspect::PassQuestion question);

/// Both as paragraphs of a page.
void addCount(const KxInspect::PassResult& pass, KxInspect::PassQuestion question, Page& page);

/// Numbers as runs: "1-12 62". Empty for none.
QString runsText(const std::vector<int>& ascending);

/// "pair 3" or "pairs 1-12 62".
QString pairsText(const std::vector<int>& ascending);

/// When a wheel is defective; for passes in which defects were looked for, as the next one.
QString defectLimitsText(const KxInspect::PassResult& pass);

/// "round", "out of round", or "round, dirty" where dirt explains what is off.
QString shapeText(const KxInspect::Roundness& roundness);

/// When a wheel is out of round.
QString roundnessLimitsText(const KxInspect::PassResult& pass);

/// Parts of the circumference in whole mm: "from -21 to -4, from 4 to 20"; empty for none.
QString arcsText(const std::vector<KxInspect::SeenArc>& arcs);

} // namespace kxreport
