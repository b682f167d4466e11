#include <gtest/gtest.h>

#include <memory>

#include "platform/Components.h"
#include "shell/CShellExecute.h"
#include "support/AppTest.h"
#include "support/FakeShell.h"

using namespace cantovel;

namespace {

class ShellExecuteTest : public test::AppTest {};

}  // namespace

TEST_F(ShellExecuteTest, LaunchesReachTheDesktopAndFailuresHaveTheirTexts) {
    auto shell = std::make_shared<test::FakeShell>();
    Components::provideService<Shell>(shell);
    CShellExecute se;
    long result = -1;
    bool running = true;
    se.LaunchProgram(nullptr, "lame", "-h \"my song.wav\" out.mp3", "/music", 1, result);
    EXPECT_EQ(result, 42);
    ASSERT_EQ(shell->started.size(), 1);
    EXPECT_EQ(shell->started[0].program, "lame");
    EXPECT_EQ(shell->started[0].arguments, QStringList({"-h", "my song.wav", "out.mp3"}));
    EXPECT_EQ(shell->started[0].workingFolder, "/music");
    EXPECT_EQ(se.ProcessHandle(), shell->started[0].pid);
    se.StillExecuting(running);
    EXPECT_TRUE(running);
    shell->finish(shell->started[0].pid);
    se.StillExecuting(running);
    EXPECT_FALSE(running);

    // A document goes to its handler, never run as a program; what keeps no process is
    // no longer executing.
    se.LaunchDocument(nullptr, "/music/list.ply", "", 1, result);
    se.LaunchEmail(nullptr, "", 1, result);
    se.LaunchEmail(nullptr, "someone@example.org", 1, result);
    se.LaunchFolder(nullptr, "/music", 1, result);
    se.Explore(nullptr, "/music/cd", 1, result);
    se.LaunchProgram(nullptr, "lame", "", "", 1, result);
    shell->openResult = 31;
    se.LaunchURL(nullptr, "http://example.org", 1, result);
    EXPECT_EQ(result, 31);
    EXPECT_EQ(se.HasProcess(), 0);
    se.StillExecuting(running);
    EXPECT_FALSE(running);
    EXPECT_EQ(shell->opened,
              QStringList({"/music/list.ply", "mailto:", "mailto:someone@example.org", "/music",
                           "/music/cd", "http://example.org"}));
    shell->startResult = 2;
    se.LaunchProgram(nullptr, "nothing", "", "", 1, result);
    EXPECT_EQ(result, 2);
    EXPECT_EQ(se.HasProcess(), 0);
    shell->printResult = 3;
    se.PrintDocument(nullptr, "/nowhere/a.txt", result);
    EXPECT_EQ(result, 3);
    EXPECT_EQ(shell->printed, QStringList({"/nowhere/a.txt"}));
    EXPECT_TRUE(msgBox().shown.isEmpty());

    const long codes[] = {0, 11, 2, 3, 5, 27, 30, 29, 28, 31, 8, 32, 26, 1, -5, 33};
    const QStringList texts =
        QString(
            "Memory Error|Bad Executeable Format|File not found|Path not found|Access Denied|"
            "Association incomplete|DDE Busy error|DDE failed|DEE time out|No association "
            "for this file|Out of Memory|Path could not be found|Sharing violation|Unknown "
            "Error!, Please try again...|Unknown Error!, Please try again...|")
            .split(u'|');
    for (int i = 0; i < texts.size(); ++i)
        EXPECT_EQ(CShellExecute::ErrorText(codes[i]), texts[i]) << codes[i];

    // A failure inside a member shows its box.
    Components::provideService<Shell>(std::shared_ptr<Shell>());
    se.LaunchURL(nullptr, "http://example.org", 1, result);
    EXPECT_EQ(result, 0);
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].title, "LaunchURL");
    EXPECT_TRUE(msgBox().shown[0].text.startsWith("Error: 440. "));
}
