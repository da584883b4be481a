// Points from text files.
#include "inspect/formats/textFile.h"

#include "inspect/formats/gaugeText.h"

#include <limits>

namespace KxInspect::detail {

namespace {

class SetSink : public PointSink {
public:
    explicit SetSink(PointSet& set) : set_(set) {}
    void begin(std::int64_t most, bool hasZ) override {
        set_.points.clear();
        set_.points.reserve(static_cast<std::size_t>(most));
        set_.hasZ = hasZ;
    }
    void add(float x, float y, float z) override { set_.points.push_back({x, y, z}); }

private:
    PointSet& set_;
};

class ProfileSink : public PointSink {
public:
    explicit ProfileSink(Profile& profile) : points_(profile.points) {}
    void begin(std::int64_t most, bool) override {
        points_.clear();
        points_.reserve(static_cast<std::size_t>(most));
    }
    void add(float x, float y, float) override { points_.push_back({x, y}); }

private:
    std::vector<Point>& points_;
};

TextForm readText(QFile& file, const ErrorSource& source, FileKind kind, const TextOptions& options, TextUse use,
                  PointSink& sink) {
    checkTextOptions(options, use);
    TextLines lines(file, source);
    return kind == FileKind::Gauge ? readGaugeText(lines, options, sink) : readTextTable(lines, options, use, sink);
}

} // namespace

PointSet readTextPoints(QFile& file, const ErrorSource& source, FileKind kind, const TextOptions& options) {
    PointSet set;
    SetSink sink(set);
    set.text = readText(file, source, kind, options, TextUse::Points, sink);
    return set;
}

Profile readTextProfile(QFile& file, const ErrorSource& source, FileKind kind, const TextOptions& options,
                        std::optional<TextForm>& form) {
    Profile profile;
    ProfileSink sink(profile);
    form = readText(file, source, kind, options, TextUse::Profile, sink);
    return profile;
}

} // namespace KxInspect::detail
