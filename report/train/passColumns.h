// The pairs of a pass as columns of values.
#pragma once

#include <KxInspect/PassResult.h>

#include <QtCore/QString>

#include <functional>
#include <variant>
#include <vector>

namespace kxreport {

/// A verdict that was asked for and could not be given.
struct NotJudged {};

/// What stands in a table: nothing, a number, a length in mm (NaN counts as nothing), or a text.
using PairValue = std::variant<std::monostate, int, float, QString, NotJudged>;

/// A column of all tables of pairs: the printed one, the CSV file and the page. A new result becomes a new column.
struct PairColumn {
    QString key; ///< in the CSV header
    QString title; ///< for people
    std::function<PairValue(const KxInspect::PassResult& pass, size_t index)> value;
    /// What people read instead: a value with its interval, for example. Empty: the value.
    std::function<QString(const KxInspect::PassResult& pass, size_t index)> text = {};
};

/// The columns of the distances.
const std::vector<PairColumn>& pairColumns();

/// More of them for tables of programs: the ends of intervals.
const std::vector<PairColumn>& intervalColumns();

/// What people read in a column.
QString textForPeople(const PairColumn& column, const KxInspect::PassResult& pass, size_t index);

/// The columns of the defects, for passes in which they were looked for.
const std::vector<PairColumn>& defectColumns();

/// The columns of the roundness, for the same passes.
const std::vector<PairColumn>& roundnessColumns();

/// The columns of the reasons why something was not judged, for tables of programs: of the distances, and of treads and
/// roundness where they were asked for.
std::vector<PairColumn> reasonColumns(const KxInspect::PassResult& pass);

/// Lengths to the micrometre, "not judged" for a missing verdict, a dash for other values that are missing.
QString textForPeople(const PairValue& value);

/// Lengths with all their digits, nothing where a value or a verdict is missing.
QString textForPrograms(const PairValue& value);

} // namespace kxreport
