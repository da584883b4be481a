// Names of files in CSV and on terminals.
#include "tools/kxmath/console/csv.h"
#include "tools/kxmath/console/printable.h"

#include <gtest/gtest.h>

namespace {

TEST(Csv, TextsAreQuotedAndNeverRun) {
    const std::pair<QString, QString> cases[] = {{"a.csv", "a.csv"},     {"", ""},
                                                 {"a;b", "\"a;b\""},     {"a,b", "a,b"},
                                                 {"a\"b", "\"a\"\"b\""}, {"a\nb", "\"a\nb\""},
                                                 {"a\rb", "\"a\rb\""},   {"=cmd|x", "'=cmd|x"},
                                                 {"+1", "'+1"},          {"-1;2", "\"'-1;2\""},
                                                 {"@SUM", "'@SUM"},      {"\t=1", "'\t=1"},
                                                 {"\n=1", "\"'\n=1\""},  {"a=1", "a=1"}};
    for (const auto& [text, field] : cases) {
        EXPECT_EQ(kxtool::csvField(text, ';').toStdString(), field.toStdString());
    }
    EXPECT_EQ(kxtool::csvField("a,b", ',').toStdString(), "\"a,b\"");
}

TEST(Printable, ControlCharactersAreReplaced) {
    EXPECT_EQ(kxtool::printable(QStringLiteral("a\033[31m\n\t\u007f\u009b2Jé.bin")).toStdString(), "a?[31m????2Jé.bin");
}

} // namespace
