// The verdict on each wheel of a pass: by limits, and what tolerance and limits of defects found.
#pragma once

#include "report/elements/mark.h"

#include <KxInspect/PassResult.h>
#include <KxInspect/PassSheet.h>

#include <QtCore/QStringList>

#include <vector>

namespace kxreport {

struct WheelVerdict {
    const KxInspect::SheetRow* row;
    Mark mark = Mark::None;
    QStringList causes; ///< why, in words; what is not measured, too
};

/// A finding is a distance out of tolerance, a defective tread, a wheel out of round. A wheel whose limits say less than
/// its findings has the verdict "finding"; one with neither limits nor findings has none.
/// @param rows must outlive the result
std::vector<WheelVerdict> wheelVerdicts(const KxInspect::PassResult& pass,
                                        const std::vector<KxInspect::SheetRow>& rows);

/// The same, the worst first; of equal ones in the order in which they passed.
std::vector<WheelVerdict> worstFirst(std::vector<WheelVerdict> verdicts);

} // namespace kxreport
