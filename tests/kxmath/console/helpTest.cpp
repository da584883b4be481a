// Help of the program and of every command: what it lists, and its width.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandDescription.h"
#include "tools/kxmath/console/helpText.h"
#include "tools/kxmath/help/topics.h"

#include <KxInspect/PointFile.h>

#include <QtCore/QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>

namespace {

struct Help {
    int code;
    QString text;
};

Help helpOf(const QStringList& arguments) {
    testing::internal::CaptureStdout();
    const int code = kxtool::runMain(QStringList("kxmath") + arguments);
    return {code, QString::fromStdString(testing::internal::GetCapturedStdout())};
}

/// The names of arguments in the first paragraph of a help: capitals that are no value of an option.
QStringList argumentsOf(const QString& help) {
    QString usage = help.left(help.indexOf("\n\n"));
    usage.remove(QRegularExpression("--[a-z0-9-]+ [A-Z.,]+"));
    const QRegularExpression name("\\b[A-Z][A-Z0-9]*\\b");
    QStringList names;
    for (auto found = name.globalMatch(usage); found.hasNext();) {
        names.append(found.next().captured());
    }
    return names;
}

TEST(Help, ListsCommandsAndOptionsIn80Columns) {
    std::vector<Help> helps = {helpOf({"help"})};
    EXPECT_EQ(helpOf({"--help"}).text, helps.front().text);
    EXPECT_EQ(helpOf({"help", "help"}).text, helps.front().text);
    int longest = 0; // name
    for (const kxtool::Command& command : kxtool::allCommands()) {
        longest = std::max(longest, int(std::strlen(command.name)));
    }
    for (const kxtool::Command& command : kxtool::allCommands()) {
        helps.push_back(helpOf({"help", command.name}));
        EXPECT_EQ(helpOf({command.name, "--help"}).text, helps.back().text);
        EXPECT_TRUE(helps.back().text.startsWith(QString("Usage: kxmath %1 ").arg(command.name)));
        EXPECT_TRUE(helps.back().text.contains("--help"));
        EXPECT_TRUE(helps.front().text.contains(
            QString("\n  %1  %2").arg(command.name, -longest).arg(QString(command.summary).left(40))));
        for (const QString& part : kxtool::describeCommand(command.run).parts) {
            helps.push_back(helpOf({"help", command.name, part}));
            EXPECT_TRUE(helps.back().text.startsWith(QString("Usage: kxmath %1 %2 ").arg(command.name, part)));
        }
    }
    EXPECT_EQ(argumentsOf(helps.front().text), QStringList("COMMAND"));
    const QString withoutOutput[] = {"settings init|", "settings check", "store add", "store check"};
    for (std::size_t i = 1; i < helps.size(); ++i) {
        const QString& text = helps[i].text;
        const bool hasNone = std::any_of(std::begin(withoutOutput), std::end(withoutOutput), [&](const QString& start) {
            return text.startsWith("Usage: kxmath " + start);
        });
        EXPECT_NE(text.contains("\n  -o"), hasNone) << text.left(40).toStdString();
    }
    for (const auto& [code, text] : helps) {
        EXPECT_EQ(code, 0);
        for (const QString& argument : argumentsOf(text)) {
            EXPECT_TRUE(argument == "COMMAND" || text.contains(QRegularExpression("\n  (REC1 )?" + argument + "\\b")))
                << argument.toStdString() << " in " << text.left(40).toStdString();
        }
        for (const QString& line : text.split('\n')) {
            EXPECT_LE(line.size(), 80) << line.toStdString();
        }
    }
}

TEST(Help, TellsEachTopicIn80Columns) {
    const QString list = helpOf({"help"}).text;
    for (const kxtool::HelpTopic& topic : kxtool::helpTopics()) {
        const auto [code, text] = helpOf({"help", topic.name});
        EXPECT_EQ(code, 0);
        EXPECT_TRUE(list.contains(QString("\n  %1 ").arg(topic.name))) << topic.name;
        EXPECT_EQ(text.simplified(), QString(topic.text).simplified()) << topic.name;
        for (const QString& line : text.split('\n')) {
            EXPECT_LE(line.size(), 80) << line.toStdString();
        }
        for (const kxtool::Command& command : kxtool::allCommands()) {
            EXPECT_STRNE(command.name, topic.name) << "its help would hide the topic";
        }
    }
}

TEST(Help, TellsTheEndingsOfAllKindsOfFiles) {
    const QRegularExpression ending("(?<=\\s)\\.[a-z]+\\b");
    std::set<KxInspect::FileKind> kinds;
    for (auto found = ending.globalMatch(helpOf({"help", "files"}).text); found.hasNext();) {
        const std::string name = "a" + found.next().captured().toStdString();
        const auto kind = KxInspect::kindByFileName(name);
        ASSERT_TRUE(kind) << name;
        kinds.insert(*kind);
    }
    EXPECT_EQ(kinds.size(), std::size(KxInspect::kFileKinds));
}

TEST(Help, WrapsParagraphsAndEntriesAndLeavesDrawings) {
    const QString drawing = "  ____    ____\n  |  |    |  |\n";
    const QString wide(30, 'w');
    const QString text = wide + ' ' + wide + '\n' + wide + " end\n\n" + drawing + "\n  a  first\n  b  " + wide + ' ' +
                         wide + '\n' + "     " + wide + "\n  c  last\n";
    EXPECT_EQ(kxtool::wrapped(text), text) << "all lines fit";
    const QString more = wide + ' ' + wide + ' ' + wide;
    EXPECT_EQ(kxtool::wrapped(more + "\nend\n\n" + drawing + "  b  " + more + "\n     end\n  c  last"),
              wide + ' ' + wide + '\n' + wide + " end\n\n" + drawing + "  b  " + wide + ' ' + wide + "\n     " + wide +
                  " end\n  c  last");
    EXPECT_EQ(kxtool::wrapped("  b  short\n     " + more), "  b  short " + wide + ' ' + wide + "\n     " + wide)
        << "only the second line is wide";
}

} // namespace
