// Commands whose memory runs out: one sentence and exit code 6, or the whole result.
#include "kxmath/commandInputs.h"

namespace {

using namespace tool_test;

using LittleMemory = CommandInputs;

TEST_F(LittleMemory, EndsInWordsOrWithTheResult) {
    for (const char* const command :
         {"convert large.bin o.ply", "convert large.bin o.bin", "convert large.bin o.csv", "info large.bin",
          "wheel wheel.csv", "conicity CONICITY", "calibrate large.bin --position 2", "grid scan.bin --step 0.5",
          "train TRAIN --report o.html", "simulate simulated --cars 1 --rate 500"}) {
        int refusals = 0;
        // Less than this GLib does not start with, which Qt loads.
        for (const int largest : {20000, 40000, 80000, 160000, 320000}) {
            SCOPED_TRACE(testing::Message() << command << ", blocks up to " << largest);
            const QString before =
                QStringLiteral("export LD_PRELOAD='%1' KXMATH_LARGEST=%2; ").arg(KXMATH_ALLOCATOR).arg(largest);
            const ToolResult result =
                runShell(path(""), lineFor(command, before) + "; code=$?; unset LD_PRELOAD; echo $code >code");
            const QByteArray code = read("code").trimmed();
            if (code == "6") {
                ++refusals;
                const QByteArray name = QByteArray(command).split(' ').front();
                EXPECT_TRUE(result.errors == "kxmath " + name + ": not enough memory\n" ||
                            result.errors == "kxmath: not enough memory\n")
                    << result.errors.constData();
            } else {
                EXPECT_TRUE(code == "0" || code == "1") << code.constData() << result.errors.constData();
            }
        }
        EXPECT_GT(refusals, 0) << command;
    }
}

} // namespace
