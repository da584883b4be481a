// What all pages have around their contents.
#include "report/elements/frame.h"

#include "report/elements/packedNumbers.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QJsonDocument>

namespace kxreport {

namespace {

/// The source of a content security policy that allows just this text.
QByteArray hashOf(const QByteArray& text) {
    return "'sha256-" + QCryptographicHash::hash(text, QCryptographicHash::Sha256).toBase64() + "'";
}

/// JSON inside an element of HTML: nothing in it ends the element.
QByteArray jsonText(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact).replace('<', "\\u003c");
}

} // namespace

void Frame::addScripts(const QStringList& names) {
    if (script_.isEmpty()) {
        script_ = "\"use strict\";\n";
    }
    for (const QString& name : names) {
        script_ += pageSource(name);
    }
}

QString Frame::addBlock(const QByteArray& codes) {
    blocks_.push_back(packed(codes));
    return QStringLiteral("block-%1").arg(blocks_.size());
}

QByteArray Frame::scripts() const {
    if (script_.isEmpty()) {
        return {};
    }
    QByteArray html = "<script type=\"application/json\" id=\"view\">" + jsonText(data_) + "</script>\n";
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
        html += "<script type=\"text/plain\" id=\"block-" + QByteArray::number(static_cast<qulonglong>(i) + 1) + "\">" +
                blocks_[i] + "</script>\n";
    }
    return html + "<script>" + script_ + "</script>\n";
}

QByteArray Frame::html(const QString& title, const QByteArray& body) const {
    QByteArray style = pageSource(QStringLiteral("page.css"));
    QByteArray policy = "default-src 'none'; img-src data:; ";
    if (!script_.isEmpty()) {
        style += pageSource(QStringLiteral("view.css"));
        policy += "script-src " + hashOf(script_) + "; ";
    }
    policy += "style-src " + hashOf(style);
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"" +
           policy +
           "\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<title>" +
           title.toUtf8() + "</title>\n<style>" + style + "</style>\n</head>\n<body>\n<main>\n" + body + "</main>\n" +
           scripts() + "</body>\n</html>\n";
}

} // namespace kxreport
