// The pairs of a pass as rows of text.
#pragma once

#include "inspect/train/pass.h"

#include <QtCore/QString>

#include <functional>
#include <variant>
#include <vector>

namespace kxtool {

/// What stands in a table: nothing, a number, a length in mm (NaN counts as nothing), or a word.
using PairValue = std::variant<std::monostate, int, float, QString>;

/// A column of all tables of pairs: the printed one, the CSV file and the report. A new result becomes a new column.
struct PairColumn {
    QString key; ///< in the CSV header
    QString title; ///< for people
    std::function<PairValue(const Pass& pass, size_t index)> value;
};

/// The columns of the distances.
const std::vector<PairColumn>& pairColumns();

/// The columns of the defects, for passes in which they were looked for.
const std::vector<PairColumn>& defectColumns();

/// The columns of the roundness, for the same passes.
const std::vector<PairColumn>& roundnessColumns();

/// Lengths to the micrometre, a dash where there is no value.
QString textForPeople(const PairValue& value);

/// The tolerance in words.
QString toleranceText(const Pass& pass);

/// Numbers as runs: "1-12 62". Empty for none.
QString runsText(const std::vector<int>& ascending);

/// When a wheel is defective, in words.
QString defectLimitsText(const Pass& pass);

/// When a wheel is out of round, in words.
QString roundnessLimitsText(const Pass& pass);

/// What is printed: the recordings, the tables of pairs, the summary.
/// @param folder where the wheel files are, empty when they were not kept
QString passText(const Pass& pass, const QString& folder);

/// A header line and one line per pair, commas between the fields, an empty field where there is no value.
QString passCsv(const Pass& pass);

} // namespace kxtool
