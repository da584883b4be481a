// What tables and pages say of a pass in words.
#pragma once

#include <KxInspect/PassResult.h>

#include <QtCore/QString>

#include <vector>

namespace kxreport {

/// The tolerance.
QString toleranceText(const KxInspect::PassResult& pass);

/// Numbers as runs: "1-12 62". Empty for none.
QString runsText(const std::vector<int>& ascending);

/// When a wheel is defective; for passes in which defects were looked for, as the next one.
QString defectLimitsText(const KxInspect::PassResult& pass);

/// When a wheel is out of round.
QString roundnessLimitsText(const KxInspect::PassResult& pass);

} // namespace kxreport
