// The report of a command whose data give no result.
#pragma once

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/outputFile.h"

#include <KxInspect/Error.h>
#include <KxInspect/TextForm.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace kxtool {

/// Whether an error is about the data: what the command was asked for was right.
bool isAboutData(const KxInspect::Error& error);
bool isAboutData(const CommandError& error);

/// The page of a command without a result.
struct FailurePage {
    const OutputFile& report;
    QString title;
    QStringList files; ///< the inputs that hold points
    KxInspect::TextOptions text = {}; ///< how texts among them are read

    /// Writes the reason in a red bar, and of the files what can be read. Nothing where no report is wanted.
    void write(const QString& reason) const;
};

/// Returns what `measure` returns. Where that throws because of the data, the page says so, and the error passes on.
template <typename Measure>
auto orFailurePage(const FailurePage& page, Measure measure) {
    try {
        return measure();
    } catch (const KxInspect::Error& error) {
        if (isAboutData(error)) {
            page.write(QString::fromUtf8(error.what()));
        }
        throw;
    } catch (const CommandError& error) {
        if (isAboutData(error)) {
            page.write(error.message);
        }
        throw;
    }
}

} // namespace kxtool
