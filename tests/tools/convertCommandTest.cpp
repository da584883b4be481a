// kxmath convert and info: what goes from kind to kind and back, and what is refused.
#include "tools/toolRun.h"

#include <KxMath/KxPointCloud.h>
#include <KxMath/KxProfileZ.h>

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <cmath>

namespace {

using namespace tool_test;
using namespace KxMath;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

class Convert : public testing::Test {
protected:
    QString path(const QString& name) const { return QDir(folder_.path()).filePath(name); }

    QByteArray bytes(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }

    void write(const QString& name, const QByteArray& content) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    /// Writes files of three kinds of points.
    void writeClouds() const {
        KxPointCloud<KxPointXY> flat;
        KxPointCloud<KxPointXYZ> spatial;
        KxPointCloud<KxPointXYZRGB> coloured;
        KxProfileZ profile(2.5f);
        for (int i = 0; i < 300; ++i) {
            const float x = 0.1f * static_cast<float>(i);
            const float y = i % 7 == 0 ? kNaN : std::sin(x) * 1e-3f;
            const float z = static_cast<float>(i / 100) / 3.0f;
            flat.points.append({0.5f * static_cast<float>(i), 0.25f}); // numbers that CSV holds exactly
            spatial.points.append({x, y, z});
            coloured.points.append({x, y, z, 0x00102030u * static_cast<unsigned>(i % 7)});
            profile.points.append({x, y});
        }
        flat.writeToFile(path("flat.bin"));
        spatial.writeToFile(path("spatial.bin"));
        coloured.writeToFile(path("coloured.bin"));
        QFile set(path("set.profiles"));
        ASSERT_TRUE(set.open(QIODevice::WriteOnly));
        profile.writeToFile(set);
        profile.z = 3.0f;
        profile.writeToFile(set);
    }

    ToolResult run(const QStringList& arguments) const { return runTool(folder_.path(), arguments); }

    QTemporaryDir folder_;
};

TEST_F(Convert, ComesBackBitForBit) {
    writeClouds();
    const struct {
        const char* file;
        const char* other;
    } cases[] = {{"flat.bin", "a.csv"},         {"flat.bin", "a.xyz"},         {"flat.bin", "a.profiles"},
                 {"spatial.bin", "a.xyz"},      {"spatial.bin", "a.xyzf"},     {"spatial.bin", "a.ply"},
                 {"spatial.bin", "a.pcd"},      {"spatial.bin", "a.profiles"}, {"coloured.bin", "a.ply"},
                 {"coloured.bin", "a.pcd"},     {"set.profiles", "a.bin"},     {"set.profiles", "a.xyz"},
                 {"set.profiles", "a.profiles"}};
    for (const auto& c : cases) {
        const QString back = QLatin1String("back.") + QString(c.file).section('.', 1);
        ASSERT_EQ(run({"convert", c.file, c.other}).exitCode, 0) << c.file << c.other;
        const ToolResult result = run({"convert", c.other, back});
        ASSERT_EQ(result.exitCode, 0) << c.file << c.other << result.errors.constData();
        const bool isFlatFromRecords = QByteArray(c.file) == "flat.bin" && QByteArray(c.other) == "a.profiles";
        if (!isFlatFromRecords) { // records have a z, so that these points come back as a 3-D cloud
            EXPECT_EQ(bytes(back), bytes(c.file)) << c.file << " by way of " << c.other;
        }
    }
}

TEST_F(Convert, ReadsWhatOtherProgramsWrite) {
    write("a.ply", "ply\nformat ascii 1.0\ncomment made elsewhere\nelement vertex 2\nproperty double x\n"
                   "property uchar intensity\nproperty double y\nproperty double z\nelement face 0\n"
                   "property list uchar int vertex_indices\nend_header\n1.5 7 2 3\n-1 8 0.25 1e3\n");
    write("a.pcd", "# .PCD v.7\nVERSION .7\nFIELDS x y z rgb\nSIZE 4 4 4 4\nTYPE F F F U\nCOUNT 1 1 1 1\nWIDTH 1\n"
                   "HEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS 1\nDATA ascii\n1 nan 3 4278190335\n");
    write("a.txt", "x y z\n1,2,3\n4;5;6\n\n7\t8\t9\n");
    ASSERT_EQ(run({"convert", "a.ply", "ply.xyz"}).exitCode, 0);
    EXPECT_EQ(bytes("ply.xyz"), "1.5 2 3\n-1 0.25 1000\n");
    ASSERT_EQ(run({"convert", "a.pcd", "pcd.bin"}).exitCode, 0);
    EXPECT_EQ(bytes("pcd.bin").toHex(), "0401000000"
                                        "0000803f"
                                        "0000c07f"
                                        "00004040"
                                        "ff0000ff");
    const ToolResult streamed = runShell(folder_.path(), "$KXMATH convert --from xyz - --to xyz - < a.txt | cat");
    EXPECT_EQ(streamed.output, "1 2 3\n4 5 6\n7 8 9\n") << streamed.errors.constData();
}

TEST_F(Convert, RefusesWithOneLineAndTheRightCode) {
    writeClouds();
    write("cut.bin", bytes("spatial.bin").chopped(1));
    write("surplus.bin", bytes("spatial.bin") + "x");
    write("cut.profiles", bytes("set.profiles").chopped(9));
    write("odd.xyzf", "12345");
    write("claim.ply", "ply\nformat binary_little_endian 1.0\nelement vertex 4000000000\nproperty float x\n"
                       "property float y\nend_header\n12345678");
    write("big.ply", "ply\nformat binary_big_endian 1.0\nelement vertex 0\nend_header\n");
    write("open.ply", "ply\nformat ascii 1.0\n");
    write("list.ply", "ply\nformat ascii 1.0\nelement vertex 1\nproperty list uchar int x\nend_header\n1\n");
    write("fields.pcd", "FIELDS x y\nSIZE 4\nPOINTS 1\nDATA ascii\n1 2\n");
    write("packed.pcd", "FIELDS x y\nSIZE 4 4\nTYPE F F\nPOINTS 1\nDATA binary_compressed\n");
    write("empty.xyz", "");
    const struct {
        QStringList arguments;
        int exitCode;
    } cases[] = {
        {{"missing.bin", "a.xyz"}, 3},
        {{"cut.bin", "a.xyz"}, 3},
        {{"surplus.bin", "a.xyz"}, 3},
        {{"cut.profiles", "a.xyz"}, 3},
        {{"odd.xyzf", "a.xyz"}, 3},
        {{"claim.ply", "a.xyz"}, 3},
        {{"big.ply", "a.xyz"}, 3},
        {{"open.ply", "a.xyz"}, 3},
        {{"list.ply", "a.xyz"}, 3},
        {{"fields.pcd", "a.xyz"}, 3},
        {{"packed.pcd", "a.xyz"}, 3},
        {{"empty.xyz", "a.bin"}, 3},
        {{"spatial.bin"}, 2},
        {{"spatial.bin", "a.abc"}, 2},
        {{"spatial.bin", "spatial.bin"}, 2},
        {{"spatial.bin", "-"}, 2},
        {{"-", "a.xyz"}, 2},
        {{"spatial.bin", "a.xyz", "--to", "abc"}, 2},
        {{"spatial.bin", "a.csv"}, 4},
        {{"spatial.bin", "no/folder/a.xyz"}, 4},
    };
    for (const auto& c : cases) {
        const ToolResult result = run(QStringList("convert") + c.arguments);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments.join(' ').toStdString() << result.errors.constData();
        EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.constData();
    }
    EXPECT_EQ(run({"convert", "--help"}).exitCode, 0);
}

TEST_F(Convert, InfoTellsWhatIsInFiles) {
    writeClouds();
    write("mixed.bin", bytes("flat.bin") + bytes("spatial.bin") + bytes("coloured.bin") + bytes("set.profiles"));
    const ToolResult mixed = run({"info", "mixed.bin"});
    EXPECT_EQ(mixed.exitCode, 0) << mixed.errors.constData();
    for (const char* const part : {"1 x 2-D cloud section", "1 x 3-D cloud section", "1 x cloud section with colours",
                                   "2 x profile record", "1500 points, 172 of them not numbers", "x from 0 to 149.5"}) {
        EXPECT_TRUE(mixed.output.contains(part)) << part << "\n" << mixed.output.constData();
    }
    write("cut.bin", bytes("mixed.bin").chopped(1));
    const ToolResult cut = run({"info", "flat.bin", "cut.bin"});
    EXPECT_EQ(cut.exitCode, 3);
    const qsizetype lastRecord = bytes("mixed.bin").size() - bytes("set.profiles").size() / 2;
    EXPECT_TRUE(cut.errors.contains("at byte " + QByteArray::number(lastRecord))) << cut.errors.constData();
    write("empty.bin", "");
    EXPECT_EQ(run({"info", "empty.bin"}).exitCode, 1);
    EXPECT_EQ(run({"info", "missing.bin"}).exitCode, 3);
    EXPECT_EQ(run({"info"}).exitCode, 2);
    EXPECT_EQ(run({"info", "--help"}).exitCode, 0);
}

} // namespace
