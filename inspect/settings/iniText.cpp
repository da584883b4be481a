// Changing values in the text of settings and nothing else.
#include "inspect/settings/iniText.h"

#include "inspect/base/error.h"
#include "inspect/base/memory.h"

#include <QtCore/QSettings>
#include <QtCore/QTemporaryFile>

#include <algorithm>

namespace KxInspect::detail {

namespace {

using Values = QList<IniValue>;

constexpr const char* kGeneral = "General";

[[noreturn]] void failText(const std::string& file, const QString& why) {
    fail(ErrorKind::Unsuitable, {"settings", file, {}}, why);
}

bool isSection(const QByteArray& line) {
    return line.trimmed().startsWith('[');
}

QByteArray keyIn(const QByteArray& line) {
    const qsizetype equals = line.indexOf('=');
    return equals < 0 ? QByteArray() : line.left(equals).trimmed();
}

/// The key of a placeholder ";key=".
QByteArray placeholderIn(const QByteArray& line) {
    const QByteArray text = line.trimmed();
    return text.startsWith(';') && text.endsWith('=') ? text.mid(1, text.size() - 2).trimmed() : QByteArray();
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

/// Sets values in one section. Of a repeated key the last line is kept, the others are removed.
QList<QByteArray> merge(const QList<QByteArray>& lines, const QByteArray& section, Values values,
                        const QByteArray& lineEnd) {
    QList<QByteArray> merged;
    const auto isKey = [](const QByteArray& key) { return [&key](const IniValue& value) { return value.key == key; }; };
    const Values all = values;
    bool isInside = section == kGeneral;
    qsizetype sectionEnd = -1; // after the last line that is not empty
    for (const QByteArray& line : lines) {
        const QByteArray placeholder = placeholderIn(line);
        const QByteArray key = placeholder.isEmpty() ? keyIn(line) : placeholder;
        if (isSection(line)) {
            isInside = line.trimmed() == '[' + section + ']';
        } else if (isInside && std::any_of(all.begin(), all.end(), isKey(key))) {
            const auto value = std::find_if(values.begin(), values.end(), isKey(key));
            if (value != values.end()) {
                merged.append((value->isUnknown ? ';' + key + '=' : key + '=' + value->text) + lineEnd);
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
    values.removeIf([](const IniValue& value) { return value.isUnknown; });
    if (!values.isEmpty() && sectionEnd < 0) {
        if (!merged.isEmpty()) {
            merged.append(lineEnd);
        }
        merged.append('[' + section + ']' + lineEnd);
        sectionEnd = merged.size();
    }
    for (const IniValue& value : std::as_const(values)) {
        merged.insert(sectionEnd++, value.key + '=' + value.text + lineEnd);
    }
    return merged;
}

/// True when `after` differs from `before` only in the values.
bool differsOnlyIn(const Values& values, const QMap<QString, QVariant>& before, const QMap<QString, QVariant>& after) {
    QMap<QString, QVariant> expected = before;
    for (const IniValue& value : values) {
        const QByteArray key = value.section == kGeneral ? value.key : value.section + '/' + value.key;
        if (value.isUnknown) {
            expected.remove(QString::fromLatin1(key));
        } else {
            expected[QString::fromLatin1(key)] = QString::fromLatin1(value.text);
        }
    }
    return expected == after;
}

} // namespace

QMap<QString, QVariant> valuesIn(const std::string& settings, const std::string& name) {
    QByteArray text = QByteArray::fromStdString(settings);
    text.replace("@Variant(", "@@Variant("); // stays text: unpacking it may fail, with a warning on stderr
    needMemoryForSettings(text.size());
    QTemporaryFile file;
    if (!file.open() || file.write(text) != text.size() || !file.flush()) {
        fail(ErrorKind::Unwritable, {}, QStringLiteral("cannot write a temporary file: ") + file.errorString());
    }
    const QSettings store(file.fileName(), QSettings::IniFormat);
    QMap<QString, QVariant> values;
    for (const QString& key : store.allKeys()) {
        values[key] = store.value(key);
    }
    if (store.status() != QSettings::NoError) {
        failText(name, QStringLiteral("cannot be parsed as an INI file"));
    }
    return values;
}

std::string withValues(const std::string& settings, const Values& values, const std::string& file) {
    const QByteArray text = QByteArray::fromStdString(settings);
    if (QString::fromUtf8(text).toUtf8() != text) {
        failText(file, QStringLiteral("are not text in UTF-8 without a byte order mark"));
    }
    const QMap<QString, QVariant> before = valuesIn(settings, file);
    const QByteArray lineEnd = text.contains("\r\n") ? "\r\n" : "\n";
    QList<QByteArray> lines = linesOf(text, lineEnd);
    QList<QByteArray> sections;
    for (const IniValue& value : values) {
        if (!sections.contains(value.section)) {
            sections.append(value.section);
        }
    }
    for (const QByteArray& section : std::as_const(sections)) {
        Values own;
        std::copy_if(values.begin(), values.end(), std::back_inserter(own),
                     [&](const IniValue& value) { return value.section == section; });
        lines = merge(lines, section, own, lineEnd);
    }
    std::string merged = lines.join().toStdString();
    if (!differsOnlyIn(values, before, valuesIn(merged, file))) {
        failText(file, QStringLiteral("have a form in which keys cannot be added without changing others"));
    }
    return merged;
}

} // namespace KxInspect::detail
