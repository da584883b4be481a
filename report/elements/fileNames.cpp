// Names of files for readers.
#include "report/elements/fileNames.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

#include <algorithm>

namespace kxreport {

namespace {

/// A path and how many of its parts, counted from the end, are its name.
class Name {
public:
    explicit Name(const QString& path) : path_(path), parts_(path.split(QLatin1Char('/'))) {}

    const QString& path() const { return path_; }
    QString text() const { return parts_.mid(parts_.size() - count_).join(QLatin1Char('/')); }
    bool isWhole() const { return count_ == parts_.size(); }
    void lengthen() { ++count_; }

private:
    QString path_;
    QStringList parts_;
    qsizetype count_ = 1;
};

} // namespace

QStringList distinctNames(const std::vector<std::string>& paths) {
    std::vector<Name> names;
    std::transform(paths.begin(), paths.end(), std::back_inserter(names),
                   [](const std::string& path) { return Name(QString::fromStdString(path)); });
    for (bool isChanged = true; isChanged;) {
        isChanged = false;
        QHash<QString, QSet<QString>> pathsOf;
        for (const Name& name : names) {
            pathsOf[name.text()].insert(name.path());
        }
        for (Name& name : names) {
            if (pathsOf[name.text()].size() > 1 && !name.isWhole()) {
                name.lengthen();
                isChanged = true;
            }
        }
    }
    QStringList texts;
    std::transform(names.begin(), names.end(), std::back_inserter(texts), [](const Name& name) { return name.text(); });
    return texts;
}

QString withNames(QString text, const std::vector<std::string>& paths, const QStringList& names) {
    const auto quoted = [](const QString& name) { return QLatin1Char('\'') + name + QLatin1Char('\''); };
    for (std::size_t i = 0; i < paths.size(); ++i) {
        text.replace(quoted(QString::fromStdString(paths[i])), quoted(names.at(static_cast<qsizetype>(i))));
    }
    return text;
}

QString withBareName(const QString& sentence) {
    const qsizetype begin = sentence.indexOf(QLatin1Char('\'')) + 1;
    const qsizetype end = sentence.indexOf(QStringLiteral("' "), begin); // a name may hold a quote
    const qsizetype slash = end < 0 ? -1 : sentence.lastIndexOf(QLatin1Char('/'), end);
    return begin > 0 && slash >= begin ? sentence.left(begin) + sentence.mid(slash + 1) : sentence;
}

} // namespace kxreport
