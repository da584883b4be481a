// The list of the vehicles of a train, from a file.
#include <KxInspect/Consist.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/formats/openFile.h"
#include "inspect/formats/textLines.h"
#include "inspect/formats/textNumber.h"
#include "inspect/identity/fileIdentity.h"

#include <QtCore/QBuffer>

#include <set>

namespace KxInspect {

namespace {

using namespace detail;

constexpr std::size_t kFields = 5;
constexpr std::string_view kHeader = "mark,number,class,axle distances,to next";
constexpr double kLeast = 500.0; // mm
constexpr double kMost = 40000.0;
constexpr std::size_t kMostVehicles = 1000;
constexpr std::size_t kMostAxles = 64; // of a vehicle
constexpr std::size_t kLongest = 200; // bytes of a text

class ConsistReader {
public:
    explicit ConsistReader(const std::string& path) : source_{"consist", path, {}} {}

    Consist read() {
        const QtPath where(source_.file);
        QFile file(where.text());
        openForReading(file, source_);
        const QByteArray content = readAll(file, source_);
        Consist consist;
        consist.file = source_.file;
        consist.source = identityOf(source_.file, {content.constData(), static_cast<std::size_t>(content.size())});
        QBuffer buffer;
        buffer.setData(content);
        buffer.open(QIODevice::ReadOnly);
        TextLines lines(buffer, source_);
        bool hasHeader = false;
        while (const std::optional<std::string_view> next = lines.next()) {
            place_ = lines.place();
            const std::string_view line = trimmed(*next);
            if (line.empty() || line.front() == '#') {
                continue;
            }
            if (!hasHeader) {
                checkHeader(line);
                hasHeader = true;
            } else {
                addVehicle(line, consist);
            }
        }
        place_ = {};
        if (consist.vehicles.empty()) {
            failAs(ErrorKind::Unsuitable, QStringLiteral("lists no vehicle"));
        }
        return consist;
    }

private:
    [[noreturn]] void failAs(ErrorKind kind, const QString& reason) const {
        const QString where = place_.line ? QStringLiteral(" in line %1").arg(*place_.line) : QString();
        fail(kind, source_, reason + where, place_);
    }

    static QString quoted(std::string_view text) {
        return QLatin1Char('\'') + QString::fromStdString(excerpt(text)) + QLatin1Char('\'');
    }

    void checkHeader(std::string_view line) const {
        if (line != kHeader) {
            failAs(ErrorKind::Damaged, QStringLiteral("begins with %1 in place of '%2'")
                                           .arg(quoted(line), QString::fromUtf8(kHeader.data(), kHeader.size())));
        }
    }

    std::vector<std::string> fieldsOf(std::string_view line) const {
        std::vector<std::string> fields = {{}};
        bool isQuoted = false;
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] == '"' && isQuoted && i + 1 < line.size() && line[i + 1] == '"') {
                fields.back() += line[++i];
            } else if (line[i] == '"') {
                isQuoted = !isQuoted;
            } else if (line[i] == ',' && !isQuoted) {
                fields.emplace_back();
            } else {
                fields.back() += line[i];
            }
        }
        if (isQuoted) {
            failAs(ErrorKind::Damaged, QStringLiteral("has a quote that does not end"));
        }
        if (fields.size() != kFields) {
            failAs(ErrorKind::Damaged, QStringLiteral("has %1 fields in place of %2").arg(fields.size()).arg(kFields));
        }
        for (std::string& field : fields) {
            field = std::string(trimmed(field));
            if (field.size() > kLongest && &field != &fields[3]) {
                failAs(ErrorKind::Unsuitable, QStringLiteral("has a text of more than %1 bytes").arg(kLongest));
            }
        }
        return fields;
    }

    double distance(std::string_view text) const {
        char sign = '.';
        double value = 0.0;
        if (parseDouble(text, sign, value) != FieldKind::Number) {
            failAs(ErrorKind::Damaged, QStringLiteral("has %1 in place of a distance").arg(quoted(text)));
        }
        if (!(value >= kLeast && value <= kMost)) {
            failAs(ErrorKind::Unsuitable,
                   QStringLiteral("gives a distance of %1 mm, which is outside %2 to %3 mm%4")
                       .arg(value)
                       .arg(kLeast)
                       .arg(kMost)
                       .arg(value > 0.0 && value < kLeast ? QStringLiteral(": is it in metres?") : QString()));
        }
        return value;
    }

    std::vector<double> distances(std::string_view text) const {
        std::vector<double> result;
        for (std::string_view rest = trimmed(text); !rest.empty(); rest = trimmed(rest)) {
            const std::size_t end = std::min(rest.find(' '), rest.size());
            result.push_back(distance(rest.substr(0, end)));
            rest.remove_prefix(end);
        }
        if (result.size() >= kMostAxles) {
            failAs(ErrorKind::Unsuitable, QStringLiteral("has more than %1 axles").arg(kMostAxles));
        }
        return result;
    }

    void addVehicle(std::string_view line, Consist& consist) {
        if (!consist.vehicles.empty() && !hasNext_) {
            failAs(ErrorKind::Damaged, QStringLiteral("follows a vehicle without a distance to the next one"));
        }
        const std::vector<std::string> fields = fieldsOf(line);
        ListedVehicle vehicle{fields[0], fields[1], fields[2], distances(fields[3]), 0.0};
        hasNext_ = !fields[4].empty();
        vehicle.toNext = hasNext_ ? distance(fields[4]) : 0.0;
        if (!vehicle.number.empty() && !numbers_.insert(vehicle.number).second) {
            failAs(ErrorKind::Unsuitable, QStringLiteral("lists the number %1 twice").arg(quoted(vehicle.number)));
        }
        if (consist.vehicles.size() == kMostVehicles) {
            failAs(ErrorKind::Unsuitable, QStringLiteral("lists more than %1 vehicles").arg(kMostVehicles));
        }
        consist.vehicles.push_back(std::move(vehicle));
    }

    ErrorSource source_;
    ErrorPlace place_;
    bool hasNext_ = false;
    std::set<std::string> numbers_;
};

} // namespace

Consist readConsist(const std::string& path) {
    return ConsistReader(path).read();
}

} // namespace KxInspect
