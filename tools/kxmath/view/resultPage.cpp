// The report of a result that was written as JSON.
#include "tools/kxmath/view/resultPage.h"

#include "report/calibrate/calibrationReport.h"
#include "report/conicity/conicityReport.h"
#include "report/grid/gridReport.h"
#include "report/profile/profileReport.h"
#include "report/train/passReport.h"
#include "report/wheel/wheelReport.h"
#include "tools/kxmath/console/fileNames.h"

#include <KxInspect/Error.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace kxtool {

namespace {

/// The command of a result. Those of wheel and conicity do not name it.
QString commandOf(const QJsonObject& result) {
    if (result.contains(QStringLiteral("command"))) {
        return result.value(QStringLiteral("command")).toString();
    }
    return result.contains(QStringLiteral("wheels"))       ? QStringLiteral("wheel")
           : result.contains(QStringLiteral("backToBack")) ? QStringLiteral("conicity")
                                                           : QString();
}

QString pageOf(const QString& command, const std::string& json) {
    if (command == QLatin1String("train")) {
        return kxreport::passReport(KxInspect::passFromJson(json));
    }
    if (command == QLatin1String("wheel")) {
        return kxreport::wheelReport(KxInspect::wheelsFromJson(json));
    }
    if (command == QLatin1String("conicity")) {
        return kxreport::conicityReport(KxInspect::conicityFromJson(json));
    }
    if (command == QLatin1String("calibrate")) {
        return kxreport::calibrationReport(KxInspect::calibrationFromJson(json));
    }
    if (command == QLatin1String("grid")) {
        return kxreport::gridReport(KxInspect::gridFromJson(json));
    }
    if (command == QLatin1String("profile")) {
        return QString::fromUtf8(kxreport::profileReport(KxInspect::profileFromJson(json)));
    }
    throw KxInspect::Error(KxInspect::ErrorKind::Unsuitable, {},
                           "is no result of train, wheel, conicity, calibrate, grid or profile");
}

} // namespace

QString resultPage(const std::string& json, const QString& file) {
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(json)).object();
    try {
        return pageOf(commandOf(object), json);
    } catch (const KxInspect::Error& error) {
        throw KxInspect::Error(error.kind(), {"result", toBytes(file), error.source().key}, error.reason(),
                               error.place());
    }
}

} // namespace kxtool
