// A pass as an HTML page with plots.
#pragma once

#include "report/elements/pageOrigin.h"

#include <KxInspect/PassResult.h>

#include <QtCore/QString>

namespace kxreport {

/// The page, with the profiles of the pairs that the result holds pictures of.
QString passReport(const KxInspect::PassResult& pass, const PageOrigin& origin = {});

} // namespace kxreport
