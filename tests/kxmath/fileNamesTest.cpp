// Names of files that are not UTF-8: every command reads and writes them, and its outputs name them by %XX.
#include "kxmath/commandInputs.h"

namespace {

using namespace tool_test;

using FileNames = CommandInputs;

TEST_F(FileNames, OfOtherBytesThanUtf8) {
    const ToolResult result = runProgram("bash", path(""), {KXMATH_FILE_NAMES_SCRIPT}, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    const QByteArray json = read("run-3/j-train-a%FCb");
    EXPECT_TRUE(json.contains("\"a%FCb_101.bin\"")) << json.left(2000).constData();
    EXPECT_EQ(QString::fromUtf8(json).toUtf8(), json);
}

} // namespace
