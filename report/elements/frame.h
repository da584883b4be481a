// What all pages have around their contents: the policy that allows nothing but the page itself, style, scripts, data.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

namespace kxreport {

/// Collects the scripts of a page and their data.
class Frame {
public:
    /// Adds scripts, without their ending, in their order. A page without scripts allows none.
    void addScripts(const QStringList& names);
    /// @return the name under which the scripts find the block
    QString addBlock(const QByteArray& codes);
    /// What the scripts read: settings and names of blocks.
    QJsonObject& data() { return data_; }

    /// The finished document, UTF-8.
    /// @param title escaped
    /// @param body markup inside <main>
    QByteArray html(const QString& title, const QByteArray& body) const;

private:
    QByteArray scripts() const;

    QByteArray script_;
    QJsonObject data_;
    std::vector<QByteArray> blocks_;
};

/// The text of a script ("plot") or style ("page.css") that is part of pages, without comments and indents. Empty for
/// another name.
QByteArray pageSource(const QString& name);

} // namespace kxreport
