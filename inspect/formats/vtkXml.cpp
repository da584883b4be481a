// XML files of VTK, after "VTK XML formats" in the file format description of VTK 9.1.
#include "inspect/formats/vtkXml.h"

#include "inspect/formats/textFields.h"

#include <QtCore/QXmlStreamReader>
#include <QtCore/QtEndian>

#include <bit>

namespace KxInspect::detail {

namespace {

struct Number {
    const char* type;
    int size; ///< bytes
};

constexpr Number kNumbers[] = {{"Float32", 4}, {"Float64", 8}, {"UInt8", 1}};

double numberAt(const char* at, int size) {
    switch (size) {
    case 4:
        return static_cast<double>(std::bit_cast<float>(qFromLittleEndian<quint32>(at)));
    case 8:
        return std::bit_cast<double>(qFromLittleEndian<quint64>(at));
    default:
        return static_cast<double>(static_cast<unsigned char>(*at));
    }
}

class VtkReader {
public:
    VtkReader(const ErrorSource& source, const QByteArray& content, QLatin1String type)
        : source_(source), xml_(content), type_(type) {}

    VtkFile read() {
        while (!xml_.atEnd() && !xml_.hasError()) {
            if (xml_.readNext() == QXmlStreamReader::StartElement) {
                begin();
            }
        }
        if (xml_.hasError()) {
            failAt(ErrorKind::Damaged, xml_.errorString());
        }
        if (pieces_ != 1) {
            failAt(ErrorKind::Unsuitable, QStringLiteral("has %1 pieces, one is read").arg(pieces_));
        }
        return file_;
    }

private:
    void begin() {
        const QStringView name = xml_.name();
        const QXmlStreamAttributes attributes = xml_.attributes();
        if (name == QLatin1String("VTKFile")) {
            checkFile(attributes);
        } else if (!isFile_) {
            failAt(ErrorKind::Unsuitable, QStringLiteral("is not a file of VTK"));
        } else if (name == type_) {
            file_.grid = attributes;
        } else if (name == QLatin1String("Piece")) {
            file_.piece = attributes;
            ++pieces_;
        } else if (name == QLatin1String("DataArray")) {
            readArray(attributes);
        } else if (name == QLatin1String("AppendedData")) {
            failAt(ErrorKind::Unsuitable, QStringLiteral("has appended data; only data within their arrays are read"));
        } else {
            section_ = name.toString();
        }
    }

    void checkFile(const QXmlStreamAttributes& attributes) {
        isFile_ = attributes.value(QLatin1String("type")) == type_;
        if (!isFile_) {
            failAt(ErrorKind::Unsuitable, QStringLiteral("is no %1 of VTK").arg(type_));
        }
        if (attributes.hasAttribute(QLatin1String("compressor"))) {
            failAt(ErrorKind::Unsuitable, QStringLiteral("is compressed"));
        }
        if (attributes.value(QLatin1String("byte_order")) == QLatin1String("BigEndian")) {
            failAt(ErrorKind::Unsuitable, QStringLiteral("is big-endian; only little-endian files are read"));
        }
        sizeOfHead_ = attributes.value(QLatin1String("header_type")) == QLatin1String("UInt64") ? 8 : 4;
    }

    void readArray(const QXmlStreamAttributes& attributes) {
        VtkArray array;
        array.section = section_;
        array.name = attributes.value(QLatin1String("Name")).toString();
        if (attributes.hasAttribute(QLatin1String("NumberOfComponents"))) {
            array.components = attributes.value(QLatin1String("NumberOfComponents")).toInt();
        }
        const QStringView type = attributes.value(QLatin1String("type"));
        const QStringView format = attributes.value(QLatin1String("format"));
        const auto number = std::find_if(std::begin(kNumbers), std::end(kNumbers),
                                         [&](const Number& n) { return type == QLatin1String(n.type); });
        if (section_ != QLatin1String("Points") && section_ != QLatin1String("PointData")) {
            return; // the cells
        }
        if (number == std::end(kNumbers)) {
            return; // identifiers of other programs
        }
        if (format == QLatin1String("ascii")) {
            readText(array);
        } else if (format == QLatin1String("binary")) {
            readBytes(number->size, array);
        } else {
            failAt(ErrorKind::Unsuitable,
                   QStringLiteral("has an array of the format '%1'; ascii and binary are read").arg(format.left(40)));
        }
        file_.arrays.push_back(std::move(array));
    }

    void readText(VtkArray& array) {
        const QByteArray text = xml_.readElementText(QXmlStreamReader::SkipChildElements).simplified().toLatin1();
        Fields fields({text.constData(), static_cast<std::size_t>(text.size())}, ' ');
        while (const std::optional<std::string_view> field = fields.next()) {
            char decimalSign = '.';
            double value = 0.0;
            if (parseDouble(*field, decimalSign, value) == FieldKind::Text) {
                failAt(ErrorKind::Damaged,
                       QStringLiteral("has no number: '%1'").arg(QString::fromStdString(excerpt(*field))));
            }
            array.values.push_back(value);
        }
    }

    /// The size of the data in bytes, then the data.
    void readBytes(int size, VtkArray& array) {
        const QByteArray bytes =
            QByteArray::fromBase64(xml_.readElementText(QXmlStreamReader::SkipChildElements).toLatin1().trimmed());
        quint64 claimed = 0;
        if (bytes.size() >= sizeOfHead_) {
            claimed = sizeOfHead_ == 8 ? qFromLittleEndian<quint64>(bytes.constData())
                                       : quint64(qFromLittleEndian<quint32>(bytes.constData()));
        }
        const auto present = static_cast<quint64>(std::max(bytes.size() - sizeOfHead_, qsizetype(0)));
        if (bytes.size() < sizeOfHead_ || claimed != present || present % static_cast<quint64>(size) != 0) {
            failAt(ErrorKind::Damaged,
                   QStringLiteral("has an array of %1 bytes instead of %2").arg(present).arg(claimed));
        }
        array.values.reserve(static_cast<std::size_t>(present) / static_cast<std::size_t>(size));
        for (const char* at = bytes.constData() + sizeOfHead_; at != bytes.constData() + bytes.size(); at += size) {
            array.values.push_back(numberAt(at, size));
        }
    }

    [[noreturn]] void failAt(ErrorKind kind, const QString& reason) const {
        fail(kind, source_, QStringLiteral("%1, in line %2").arg(reason).arg(xml_.lineNumber()),
             {xml_.characterOffset(), {}, xml_.lineNumber(), {}});
    }

    const ErrorSource& source_;
    QXmlStreamReader xml_;
    QLatin1String type_;
    VtkFile file_;
    QString section_;
    qsizetype sizeOfHead_ = 4;
    int pieces_ = 0;
    bool isFile_ = false;
};

} // namespace

const VtkArray* VtkFile::find(QLatin1String section, int components, const char* name) const {
    for (const VtkArray& array : arrays) {
        const bool isNamed = name == nullptr || array.name == QLatin1String(name);
        if (array.section == section && array.components == components && isNamed) {
            return &array;
        }
    }
    return nullptr;
}

VtkFile parseVtk(const ErrorSource& source, const QByteArray& content, QLatin1String type) {
    return VtkReader(source, content, type).read();
}

QByteArray formatVtkArray(const char* type, const char* name, int components, const QByteArray& bytes) {
    QByteArray head(8, '\0');
    qToLittleEndian(static_cast<quint64>(bytes.size()), head.data());
    return QByteArray("<DataArray type=\"") + type + "\" Name=\"" + name + "\" NumberOfComponents=\"" +
           QByteArray::number(components) + "\" format=\"binary\">" + (head + bytes).toBase64() + "</DataArray>\n";
}

} // namespace KxInspect::detail
