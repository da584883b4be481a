// Settings from INI files, every value checked: QSettings itself reads what is no number as 0.
#pragma once

#include <KxInspect/Settings.h>

#include <QtCore/QSettings>
#include <QtCore/QTemporaryFile>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// Throws an Error about a key of settings.
/// @param reason its predicate: "lack the key 'a'"
[[noreturn]] void failSettings(const std::string& file, const std::string& key, const QString& reason);

/// "lack the key 'KEY'"
QString lacksKey(const QString& key);

/// An INI file that is only read. Values that are missing, wrong or out of range are absent and are noted as faults.
class IniFile {
public:
    enum class Need { Required, Optional };

    /// Opens and parses the file. Throws an Error when that fails.
    explicit IniFile(const std::string& path);

    std::optional<float> number(const QString& key, Need need);
    std::optional<int> wholeNumber(const QString& key, Need need);
    std::optional<Line> line(const QString& slopeKey, const QString& interceptKey, Need need = Need::Required);

    /// The number of the word, among those that the key may hold, that it holds; absent where it is missing or holds another.
    std::optional<std::size_t> word(const QString& key);

    /// The serial number of a sensor, which the first one must have; 0 ends the list of sensors.
    int serial(int sensor);

    QSettings& store() { return store_; }
    const std::vector<SettingFault>& faults() const { return faults_; }
    const InputFile& identity() const { return identity_; }

    /// Sentences about the keys that nobody reads.
    std::vector<std::string> warnings() const;

private:
    QVariant value(const QString& key, Need need);
    bool isInRange(const QString& key, double value); ///< notes the fault where it is not
    void addFault(const QString& key, const QString& reason);

    std::string path_;
    InputFile identity_;
    std::unique_ptr<QTemporaryFile> copy_; ///< null where the file itself is read
    QSettings store_;
    std::vector<SettingFault> faults_;
};

/// readDefectSettings(); faults of limits are only noted unless `isStrict`.
DefectSettings readDefects(const std::string& path, bool isStrict);

/// Calls `read(number, serial)` for each sensor of a file.
template <typename Read>
void forEachSensor(IniFile& file, Read read) {
    constexpr int kEnd = 50; // the library looks no further
    for (int number = 1; number < kEnd; ++number) {
        const int serial = file.serial(number);
        if (serial == 0) {
            return;
        }
        read(number, serial);
    }
}

} // namespace KxInspect::detail
