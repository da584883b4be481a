// Profiles as text, compared with the conversions of the standard library. Files are in memory.
#include "profile/jobs.h"

#include <QtCore/QFile>

#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace kxbench {

namespace {

std::string slurp(const QString& name) {
    QFile file(name);
    file.open(QIODevice::ReadOnly);
    return file.readAll().toStdString();
}

void writeByToChars(ProfileJob& j) {
    std::string text;
    char number[32];
    const auto append = [&](float v, char end) {
        char* const last =
            std::to_chars(number, number + sizeof(number), static_cast<double>(v), std::chars_format::general, 6).ptr;
        std::replace(number, last, '.', ',');
        text.append(number, last);
        text += end;
    };
    for (const KxPointXY& p : std::as_const(j.profile.points)) {
        append(p.x, ';');
        append(p.y, '\n');
    }
    std::FILE* const file = std::fopen(memoryFile("csv").toLocal8Bit().constData(), "wb");
    if (std::fwrite(text.data(), 1, text.size(), file) != text.size() || std::fclose(file) != 0) {
        std::perror("benchmark");
        std::abort(); // its time would mean nothing
    }
}

void readByFromChars(ProfileJob& j) {
    std::string text = slurp(memoryFile("csv"));
    std::replace(text.begin(), text.end(), ',', '.');
    const char* at = text.data();
    const char* const end = at + text.size();
    j.profile.points.clear();
    while (at < end) {
        double x = 0.0;
        double y = 0.0;
        at = std::from_chars(at, end, x).ptr + 1;
        at = std::from_chars(at, end, y).ptr + 1;
        j.profile.points.append(KxPointXY(static_cast<float>(x), static_cast<float>(y)));
    }
}

[[maybe_unused]] const bool isRegistered = [] {
    const auto digestFile = [](ProfileJob&) {
        return digestValues(QByteArray::fromStdString(slurp(memoryFile("csv"))));
    };
    addProfile(
        "write CSV", "kx", [](ProfileJob& j) { j.profile.writeToCSVFile(memoryFile("csv")); }, digestFile, 10);
    addProfile("write CSV", "peer_to_chars", writeByToChars, digestFile, 10);
    const auto write = [](ProfileJob& j) {
        fillProfile(j);
        j.profile.writeToCSVFile(memoryFile("csv"));
    };
    add<ProfileJob>(
        "read CSV", kProfilePoints, "kx", 10, write,
        [](ProfileJob& j) { j.profile.readFromCSVFile(memoryFile("csv"), 0, 1); }, digestProfile);
    add<ProfileJob>("read CSV", kProfilePoints, "peer_from_chars", 10, write, readByFromChars, digestProfile);
    return true;
}();

} // namespace

} // namespace kxbench
