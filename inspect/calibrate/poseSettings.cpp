// Storing a pose in a settings file without changing its other content.
#include "inspect/base/error.h"
#include "inspect/base/paths.h"

#include <KxInspect/Calibration.h>
#include <KxInspect/Json.h>

#include <QtCore/QMap>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryFile>

#include <algorithm>

namespace KxInspect {

namespace {

struct Value {
    QByteArray key;
    QByteArray text;
};
using Values = QList<Value>;

[[noreturn]] void fail(const std::string& file, const QString& why) {
    detail::fail(ErrorKind::Unsuitable, {"settings", file}, why);
}

Values valuesOf(const PoseKeys& keys) {
    Values values;
    for (const PoseField& field : kPoseFields) {
        if (const float value = static_cast<float>(keys.pose.*field.value); std::isfinite(value)) {
            values.append({field.name, QByteArray::fromStdString(shortestText(value))});
        }
    }
    values.append({"position", QByteArray::number(keys.placement)});
    return values;
}

bool isSection(const QByteArray& line) {
    return line.trimmed().startsWith('[');
}

QByteArray keyIn(const QByteArray& line) {
    const qsizetype equals = line.indexOf('=');
    return equals < 0 ? QByteArray() : line.left(equals).trimmed();
}

/// The lines with their line ends; one is added to the last line if missing.
QList<QByteArray> linesOf(const QByteArray& text, const QByteArray& lineEnd) {
    QList<QByteArray> lines;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype end = text.indexOf('\n', at);
        lines.append(end < 0 ? text.mid(at) + lineEnd : text.mid(at, end + 1 - at));
        at = end < 0 ? text.size() : end + 1;
    }
    return lines;
}

/// Sets values in the section. Of a repeated key the last line is kept, the others are removed.
QList<QByteArray> merge(const QList<QByteArray>& lines, const QByteArray& section, Values values,
                        const QByteArray& lineEnd) {
    QList<QByteArray> merged;
    const auto isKey = [](const QByteArray& key) { return [&key](const Value& value) { return value.key == key; }; };
    const Values all = values;
    bool isInside = false;
    qsizetype sectionEnd = -1; // after the last line that is not empty
    for (const QByteArray& line : lines) {
        if (isSection(line)) {
            isInside = line.trimmed() == section;
        } else if (const QByteArray key = keyIn(line); isInside && std::any_of(all.begin(), all.end(), isKey(key))) {
            const auto value = std::find_if(values.begin(), values.end(), isKey(key));
            if (value != values.end()) {
                merged.append(key + '=' + value->text + lineEnd);
                sectionEnd = merged.size();
                values.erase(value);
            }
            continue;
        }
        merged.append(line);
        if (isInside && !line.trimmed().isEmpty()) {
            sectionEnd = merged.size();
        }
    }
    if (!values.isEmpty() && sectionEnd < 0) {
        if (!merged.isEmpty()) {
            merged.append(lineEnd);
        }
        merged.append(section + lineEnd);
        sectionEnd = merged.size();
    }
    for (const Value& value : std::as_const(values)) {
        merged.insert(sectionEnd++, value.key + '=' + value.text + lineEnd);
    }
    return merged;
}

/// All keys of a text, as QSettings reads them.
QMap<QString, QVariant> parsed(QByteArray text, const std::string& name) {
    text.replace("@Variant(", "@@Variant("); // stays text: unpacking it may fail, with a warning on stderr
    QTemporaryFile file;
    if (!file.open() || file.write(text) != text.size() || !file.flush()) {
        detail::fail(ErrorKind::Unwritable, {}, QStringLiteral("cannot write a temporary file: ") + file.errorString());
    }
    const QSettings settings(file.fileName(), QSettings::IniFormat);
    QMap<QString, QVariant> values;
    for (const QString& key : settings.allKeys()) {
        values[key] = settings.value(key);
    }
    if (settings.status() != QSettings::NoError) {
        fail(name, QStringLiteral("cannot be parsed as an INI file"));
    }
    return values;
}

/// True when `after` differs from `before` only in the values.
bool differsOnlyIn(const Values& values, const QString& section, const QMap<QString, QVariant>& before,
                   const QMap<QString, QVariant>& after) {
    QMap<QString, QVariant> expected = before;
    for (const Value& value : values) {
        expected[section + QLatin1Char('/') + QLatin1String(value.key)] = QString::fromLatin1(value.text);
    }
    return expected == after;
}

} // namespace

std::string withPose(const std::string& settings, const PoseKeys& keys, const std::string& file) {
    constexpr int kMaxSensor = 49; // the largest number that recordings may have
    if (keys.sensor < 1 || keys.sensor > kMaxSensor) {
        detail::fail(
            ErrorKind::BadArgument, {"argument", {}, "sensor"},
            QStringLiteral("sensor needs a whole number from 1 to %1, got %2").arg(kMaxSensor).arg(keys.sensor));
    }
    const QByteArray text = QByteArray::fromStdString(settings);
    if (QString::fromUtf8(text).toUtf8() != text) {
        fail(file, QStringLiteral("are not text in UTF-8 without a byte order mark"));
    }
    const auto before = parsed(text, file);
    const QByteArray lineEnd = text.contains("\r\n") ? "\r\n" : "\n";
    const QString section = QStringLiteral("SENSOR%1").arg(keys.sensor);
    const Values values = valuesOf(keys);
    const QByteArray merged = merge(linesOf(text, lineEnd), '[' + section.toLatin1() + ']', values, lineEnd).join();
    if (!differsOnlyIn(values, section, before, parsed(merged, file))) {
        fail(file, QStringLiteral("have a form in which keys cannot be added without changing others"));
    }
    return merged.toStdString();
}

} // namespace KxInspect
