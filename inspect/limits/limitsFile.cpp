// Limits from an INI file. Nothing in it is passed over: a limit with a misspelled name would never be reached.
#include <KxInspect/Limits.h>

#include "inspect/base/error.h"
#include "inspect/base/nearestName.h"
#include "inspect/base/paths.h"
#include "inspect/formats/openFile.h"
#include "inspect/formats/textLines.h"
#include "inspect/formats/textNumber.h"
#include "inspect/identity/fileIdentity.h"

#include <QtCore/QBuffer>

#include <array>

namespace KxInspect {

namespace {

using namespace detail;

/// A key of a section, in the order in which limits rise.
struct BoundKey {
    const char* name;
    std::optional<double> LimitBounds::*bound;
};
constexpr std::array<BoundKey, 4> kBoundKeys = {{{"alarmLow", &LimitBounds::alarmLow},
                                                 {"warningLow", &LimitBounds::warningLow},
                                                 {"warningHigh", &LimitBounds::warningHigh},
                                                 {"alarmHigh", &LimitBounds::alarmHigh}}};

const MeasureInfo* findMeasure(std::string_view name) {
    for (const MeasureInfo& info : measureInfos()) {
        if (info.name == name) {
            return &info;
        }
    }
    return nullptr;
}

QString toText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

class LimitsReader {
public:
    explicit LimitsReader(const std::string& path) : source_{"limits", path, {}} {}

    Limits read() {
        const QtPath where(source_.file);
        QFile file(where.text());
        openForReading(file, source_);
        const QByteArray content = readAll(file, source_);
        limits_.file = source_.file;
        limits_.source = identityOf(source_.file, {content.constData(), static_cast<std::size_t>(content.size())});
        QBuffer buffer;
        buffer.setData(content);
        buffer.open(QIODevice::ReadOnly);
        TextLines lines(buffer, source_);
        while (const std::optional<std::string_view> next = lines.next()) {
            place_ = lines.place();
            const std::string_view line = trimmed(*next);
            if (!line.empty() && line.front() != ';' && line.front() != '#') {
                readLine(line);
            }
        }
        endSection();
        if (limits_.measures.empty()) {
            place_ = {};
            failAs(ErrorKind::Unsuitable, QStringLiteral("hold no limit"));
        }
        return std::move(limits_);
    }

private:
    [[noreturn]] void failAs(ErrorKind kind, const QString& reason) const {
        const QString where = place_.line ? QStringLiteral(", in line %1").arg(*place_.line) : QString();
        fail(kind, source_, reason + where, place_);
    }

    /// "hold the unknown WHAT 'NAME': is 'NEAREST' meant?"
    [[noreturn]] void failUnknown(const char* what, std::string_view name, const QStringList& known) const {
        const QString nearest = nearestName(toText(name), known);
        failAs(ErrorKind::Unsuitable,
               QStringLiteral("hold the unknown %1 '%2'%3")
                   .arg(QLatin1String(what), QString::fromStdString(excerpt(name)),
                        nearest.isEmpty() ? QString() : QStringLiteral(": is '%1' meant?").arg(nearest)));
    }

    void readLine(std::string_view line) {
        if (line.front() == '[') {
            endSection();
            beginSection(line);
            return;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) {
            failAs(ErrorKind::Damaged, QStringLiteral("have '%1', which is neither a section nor a key with a value")
                                           .arg(QString::fromStdString(excerpt(line))));
        }
        if (info_ == nullptr) {
            failAs(ErrorKind::Damaged, QStringLiteral("have a key before the first section"));
        }
        readBound(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }

    /// [measure] or [measure/class]
    void beginSection(std::string_view line) {
        if (line.back() != ']') {
            failAs(ErrorKind::Damaged, QStringLiteral("have a section without ']'"));
        }
        const std::string_view name = line.substr(1, line.size() - 2);
        const std::size_t slash = name.find('/');
        const std::string_view measure = trimmed(name.substr(0, slash));
        info_ = findMeasure(measure);
        if (info_ == nullptr) {
            QStringList known;
            for (const MeasureInfo& info : measureInfos()) {
                known.append(toQt(info.name));
            }
            failUnknown("measure", measure, known);
        }
        section_ = {info_->name, {}, {}};
        if (slash != std::string_view::npos) {
            section_.vehicleClass = std::string(trimmed(name.substr(slash + 1)));
            if (section_.vehicleClass.empty()) {
                failAs(ErrorKind::Damaged, QStringLiteral("have a section without the class behind '/'"));
            }
        }
        for (const MeasureLimits& other : limits_.measures) {
            if (other.measure == section_.measure && other.vehicleClass == section_.vehicleClass) {
                failAs(ErrorKind::Unsuitable, QStringLiteral("have the section [%1] twice").arg(toText(name)));
            }
        }
    }

    void readBound(std::string_view key, std::string_view text) {
        const BoundKey* found = nullptr;
        QStringList known;
        for (const BoundKey& bound : kBoundKeys) {
            known.append(QLatin1String(bound.name));
            found = bound.name == key ? &bound : found;
        }
        if (found == nullptr) {
            failUnknown("key", key, known);
        }
        if (section_.bounds.*found->bound) {
            failAs(ErrorKind::Unsuitable, QStringLiteral("give '%1' twice").arg(toText(key)));
        }
        char sign = '.';
        double value = 0.0;
        if (parseDouble(text, sign, value) != FieldKind::Number) {
            failAs(ErrorKind::Unsuitable, QStringLiteral("hold no number in '%1'").arg(toText(key)));
        }
        if (!(value >= info_->min && value <= info_->max)) {
            const QString unit = toQt(info_->unit);
            failAs(ErrorKind::Unsuitable, QStringLiteral("give %1 %2 for '%3' of %4, which is outside %5 to %6 %2")
                                              .arg(QString::number(value), unit, toText(key), toQt(info_->name),
                                                   QString::number(info_->min), QString::number(info_->max)));
        }
        section_.bounds.*found->bound = value;
    }

    void endSection() {
        if (info_ == nullptr) {
            return;
        }
        const BoundKey* last = nullptr;
        for (const BoundKey& key : kBoundKeys) {
            const std::optional<double>& bound = section_.bounds.*key.bound;
            if (bound && last != nullptr && *bound < *(section_.bounds.*last->bound)) {
                failAs(ErrorKind::Unsuitable,
                       QStringLiteral("give a '%1' of %2 that is below its '%3'")
                           .arg(QLatin1String(key.name), toQt(info_->name), QLatin1String(last->name)));
            }
            last = bound ? &key : last;
        }
        if (last == nullptr) {
            failAs(ErrorKind::Unsuitable,
                   QStringLiteral("hold a section of %1 without a limit").arg(toQt(info_->name)));
        }
        limits_.measures.push_back(section_);
    }

    ErrorSource source_;
    ErrorPlace place_;
    Limits limits_;
    const MeasureInfo* info_ = nullptr; ///< of the section that is being read
    MeasureLimits section_;
};

} // namespace

Limits readLimits(const std::string& path) {
    return LimitsReader(path).read();
}

} // namespace KxInspect
