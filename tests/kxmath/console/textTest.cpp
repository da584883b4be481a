// Names of files on the command line, in CSV and on terminals.
#include "report/elements/fileNames.h"
#include "tools/kxmath/console/csv.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/printable.h"

#include <gtest/gtest.h>

namespace {

TEST(Csv, TextsAreQuotedAndNeverRun) {
    const std::pair<QString, QString> cases[] = {{"a.csv", "a.csv"},     {"", ""},
                                                 {"a,b", "\"a,b\""},     {"a;b", "a;b"},
                                                 {"a\"b", "\"a\"\"b\""}, {"a\nb", "\"a\nb\""},
                                                 {"a\rb", "\"a\rb\""},   {"=cmd|x", "'=cmd|x"},
                                                 {"+1", "'+1"},          {"-1,2", "\"'-1,2\""},
                                                 {"@SUM", "'@SUM"},      {"\t=1", "'\t=1"},
                                                 {"\n=1", "\"'\n=1\""},  {"a=1", "a=1"}};
    for (const auto& [text, field] : cases) {
        EXPECT_EQ(kxtool::csvField(text).toStdString(), field.toStdString());
    }
}

TEST(DistinctNames, HoldTheFoldersThatTellFilesApart) {
    const std::pair<std::vector<std::string>, QStringList> cases[] = {
        {{"a/x.whl", "a/y.whl"}, {"x.whl", "y.whl"}},
        {{"a/x.whl", "b/x.whl", "b/y.whl"}, {"a/x.whl", "b/x.whl", "y.whl"}},
        {{"/1/s/x", "/2/s/x", "/2/t/x"}, {"1/s/x", "2/s/x", "t/x"}},
        {{"x", "b/x", "b/x"}, {"x", "b/x", "b/x"}},
        {{"/x", "x", "./x"}, {"/x", "x", "./x"}},
    };
    for (const auto& [paths, names] : cases) {
        EXPECT_EQ(kxreport::distinctNames(paths).join(' ').toStdString(), names.join(' ').toStdString());
    }
}

TEST(Printable, ControlCharactersAreReplaced) {
    EXPECT_EQ(kxtool::printable(QStringLiteral("a\033[31m\n\t\u007f\u009b2Jé.bin")).toStdString(), "a?[31m????2Jé.bin");
}

TEST(FileNames, KeepAllBytes) {
    // Characters of 1 to 4 bytes, and what is none: cut ones, too long forms, surrogates, beyond U+10FFFF.
    const std::tuple<std::string, std::string> cases[] = {
        {"a/\xc3\xa9\xe2\x82\xac\xf0\x9f\x9a\x82.bin", "a/\xc3\xa9\xe2\x82\xac\xf0\x9f\x9a\x82.bin"},
        {"m\xfcller", "m%FCller"},
        {"\xc3", "%C3"},
        {"\xe2\x82z", "%E2%82z"},
        {"\xc0\xaf\xe0\x9f\xbf\xf0\x8f\xbf\xbf", "%C0%AF%E0%9F%BF%F0%8F%BF%BF"},
        {"\xed\xb3\xbc\xed\x9f\xbf", "%ED%B3%BC\xed\x9f\xbf"},
        {"\xf4\x8f\xbf\xbf\xf4\x90\x80\x80\xff", "\xf4\x8f\xbf\xbf%F4%90%80%80%FF"},
        {"a\xf0\x9f\x9a\x82\xb0", "a\xf0\x9f\x9a\x82%B0"}};
    for (const auto& [bytes, shown] : cases) {
        EXPECT_EQ(kxtool::toBytes(kxtool::fromBytes(bytes)), bytes) << shown;
        EXPECT_EQ(kxtool::printable(kxtool::fromBytes(bytes)).toStdString(), shown);
    }
}

} // namespace
