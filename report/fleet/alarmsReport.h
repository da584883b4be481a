// The page of alarms.
#pragma once

#include "report/elements/mark.h"
#include "report/elements/pageOrigin.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

namespace kxreport {

/// Everything that the page shows. Tables begin with their heads.
struct AlarmsPage {
    QString verdict; ///< what is to be read first
    Mark mark = Mark::None;
    QStringList shifts; ///< of sensors, a sentence each
    std::vector<QStringList> alarms;
    std::vector<QStringList> announced;
};

/// A self-contained HTML page.
QString alarmsReport(const AlarmsPage& page, const PageOrigin& origin = {});

} // namespace kxreport
