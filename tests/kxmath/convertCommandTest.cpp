// kxmath convert and info: conversions between all kinds and back, and refusals.
#include "kxmath/toolRun.h"

namespace {

using namespace tool_test;

class Convert : public ToolTest {
protected:
    Convert() : Convert("convert") {}

    /// Writes files of all kinds of points.
    explicit Convert(const char* command) : ToolTest(command) {
        KxPointCloud<KxPointXY> flat;
        KxPointCloud<KxPointXYZ> spatial;
        KxPointCloud<KxPointXYZRGB> coloured;
        KxProfileZ profile;
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
        KxProfileZSet set;
        set.profiles = {profile, profile};
        set.setZ(2.5f, 0.5f);
        set.writeToFile(path("set.profiles"));
    }
};

TEST_F(Convert, ComesBackBitForBit) {
    const std::pair<QString, QStringList> cases[] = {
        {"flat.bin", {"a.csv", "a.xyz"}},
        {"spatial.bin", {"a.xyz", "a.xyzf", "a.ply", "a.pcd", "a.profiles"}},
        {"coloured.bin", {"a.ply", "a.pcd"}},
        {"set.profiles", {"a.bin", "a.xyz", "a.profiles"}}};
    for (const auto& [file, others] : cases) {
        for (const QString& other : others) {
            const QString back = "back." + file.section('.', 1);
            run({file, other});
            run({other, back});
            EXPECT_EQ(read(back), read(file)) << file.toStdString() << " by way of " << other.toStdString();
        }
    }
}

TEST_F(Convert, ReadsWhatOtherProgramsWrite) {
    write("a.ply", "ply\nformat ascii 1.0\ncomment made elsewhere\nelement vertex 2\nproperty double x\n"
                   "property uchar intensity\nproperty double y\nproperty double z\nelement face 0\n"
                   "property list uchar int vertex_indices\nend_header\n1.5 7 2 3\n-1 8 0.25 1e3\n");
    write("a.pcd", "# .PCD v.7\nVERSION .7\nFIELDS x y z rgb\nSIZE 4 4 4 4\nTYPE F F F U\nCOUNT 1 1 1 1\nWIDTH 1\n"
                   "HEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS 1\nDATA ascii\n1 nan 3 4278190335\n");
    write("a.txt", "x y z\n1,2,3\n4,5,6\n7, 8, 9\n");
    run({"a.ply", "ply.xyz"});
    EXPECT_EQ(read("ply.xyz"), "1.5 2 3\n-1 0.25 1000\n");
    run({"a.pcd", "pcd.bin"});
    EXPECT_EQ(read("pcd.bin").toHex(), "0401000000"
                                       "0000803f0000c07f00004040"
                                       "ff0000ff");
    const ToolResult streamed = runShell(path(""), "$KXMATH convert --from xyz - --to xyz - < a.txt | cat");
    EXPECT_EQ(streamed.output, "1 2 3\n4 5 6\n7 8 9\n") << streamed.errors.constData();
}

TEST_F(Convert, FindsKindAndFormOfText) {
    write("commas.dat", "x,y,z,nx,ny,nz\n-3.5 , 0.5 , -1 , 0,1,0\n2,3,4,0,0,1\n");
    run({"commas.dat", "a.xyz"});
    EXPECT_EQ(read("a.xyz"), "-3.5 0.5 -1\n2 3 4\n");
    write("table.csv", "1,5\t2\t9\t7\n3\t4,25\t9\t8\n");
    run({"table.csv", "a.xyz", "--columns", "4,1"});
    EXPECT_EQ(read("a.xyz"), "7 1.5\n8 3\n");
    write("tabs.txt", "\t1\t2\n\t3\t4\n");
    expectRefusals({{{"tabs.txt", "a.xyz"}, 3, "in two ways"}, {{"table.csv", "a.xyz"}, 3, "has 4 columns"}});
    run({"tabs.txt", "a.xyz", "--separator", "tab"});
    EXPECT_EQ(read("a.xyz"), "nan 1 2\nnan 3 4\n");
    run({"tabs.txt", "a.xyz", "--separator", "blank", "--decimal", "comma"});
    EXPECT_EQ(read("a.xyz"), "1 2\n3 4\n");
    QFile::copy(path("coloured.bin"), path("renamed.ply")); // the content tells more than the name
    run({"renamed.ply", "a.bin"});
    EXPECT_EQ(read("a.bin"), read("coloured.bin"));
}

class Info : public Convert {
protected:
    Info() : Convert("info") {}
};

TEST_F(Info, ListsWhatFilesHold) {
    const QByteArray whole = read("flat.bin") + read("spatial.bin") + read("coloured.bin") + read("set.profiles");
    write("mixed.bin", whole);
    const ToolResult mixed = run({"mixed.bin"});
    for (const char* const part : {"1 x 2-D cloud section", "1 x 3-D cloud section", "1 x cloud section with colours",
                                   "2 x profile record", "1500 points, 172 of them not finite", "x from 0 to 149.5"}) {
        EXPECT_TRUE(mixed.output.contains(part)) << part << "\n" << mixed.output.constData();
    }
    write("w.whl", "Stock...: 7\n\n1.5 2 0\n-3 - 0 worn\n");
    const QByteArray gauge = run({"w.whl"}).output;
    for (const char* const part :
         {"1 x gauge file", "  columns: 3, separator: blanks, decimal sign: '.', title lines: 2, remarks left out: 1\n",
          "2 points, 1 of them not finite"}) {
        EXPECT_TRUE(gauge.contains(part)) << part << "\n" << gauge.constData();
    }
    write("bad.csv", "1;2\n3;abc\n");
    EXPECT_TRUE(run({"bad.csv"}, 3).errors.contains("line 2, column 2: 'abc'"));
    write("cut.bin", whole.chopped(1));
    const ToolResult cut = run({"flat.bin", "cut.bin"}, 3);
    const QByteArray lastRecord = QByteArray::number(whole.size() - read("set.profiles").size() / 2);
    EXPECT_TRUE(cut.errors.contains("at byte " + lastRecord)) << cut.errors.constData();
    write("empty.bin", "");
    run({"empty.bin"}, 1);
    write("empty.csv", "");
    run({"empty.csv"}, 1);
    expectRefusals({{{"missing.bin"}, 3, "cannot be read"}, {{}, 2, "1 or more files needed"}});
}

TEST_F(Info, JsonHoldsWhatTheTextShows) {
    write("c.csv", "x;y\n1,5;-2\n0,25;nan\n0,35;3\n0,75;1\n");
    const QByteArray record("\x05\x01\x00\x00\x00\x48\x41\x00\x00\x20\xc1\x00\x00\x5d\x42", 15);
    write("cut.bin", record + record.chopped(1));
    QJsonObject found = json({"c.csv", "cut.bin", "gone.xyz"}, 3).toObject();
    found.remove("version");
    const QByteArray nothing = R"("kind": null, "medianSpacingMm": null, "missingPoints": null, "parts": null,
        "points": null, "text": null, "xRangeMm": null, "yRangeMm": null, "zRangeMm": null)";
    const QByteArray expected = R"({"command": "info", "files": [
        {"file": "c.csv", "kind": "csv", "points": 4, "missingPoints": 1, "error": null, "medianSpacingMm": 0.4,
         "parts": [{"kind": "wholeFile", "count": 1}], "xRangeMm": [0.25, 1.5], "yRangeMm": [-2, 3], "zRangeMm": null,
         "text": {"columns": 2, "separator": ";", "decimalSign": ",", "titleLines": 1, "remarks": 0}},
        {"file": "cut.bin", "kind": null, "points": 1, "missingPoints": 0, "medianSpacingMm": null, "text": null,
         "parts": [{"kind": "profileRecord", "count": 1}], "xRangeMm": [-10, -10], "yRangeMm": [55.25, 55.25],
         "zRangeMm": [12.5, 12.5], "error": {"byte": 15, "record": 2, "line": null, "column": null,
         "message": "'cut.bin' is damaged at byte 15, after 1 whole records: the record that begins there is cut short by the end of the file at byte 29, its 1 points end at byte 30"}},
        {"file": "gone.xyz", "error": {"byte": null, "record": null, "line": null, "column": null,
         "message": "'gone.xyz' cannot be read: No such file or directory"}, )" +
                                nothing + "}]}";
    const QByteArray text = QJsonDocument(found).toJson();
    EXPECT_EQ(text.toStdString(), QJsonDocument::fromJson(expected).toJson().toStdString());
}

} // namespace
