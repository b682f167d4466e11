#include <gtest/gtest.h>

#include <memory>

#include "platform/Components.h"
#include "shell/BrowseForFolder.h"
#include "shell/CShellExecute.h"
#include "support/FakeFileDialogs.h"
#include "support/FakeMsgBox.h"
#include "support/FakeShell.h"

using namespace cantovel;

namespace {

class ShellExecuteTest : public ::testing::Test {
  protected:
    void SetUp() override {
        Components::provideService<Shell>(shell);
        Components::provideService<MsgBox>(boxes);
    }
    void TearDown() override { Components::clear(); }

    std::shared_ptr<test::FakeShell> shell = std::make_shared<test::FakeShell>();
    std::shared_ptr<test::FakeMsgBox> boxes = std::make_shared<test::FakeMsgBox>();
    CShellExecute se;
    long result = -1;
    bool running = true;
};

}  // namespace

TEST_F(ShellExecuteTest, ErrorTextsByCode) {
    const QList<std::pair<long, QString>> table = {
        {0, "Memory Error"},
        {11, "Bad Executeable Format"},
        {2, "File not found"},
        {3, "Path not found"},
        {5, "Access Denied"},
        {27, "Association incomplete"},
        {30, "DDE Busy error"},
        {29, "DDE failed"},
        {28, "DEE time out"},
        {31, "No association for this file"},
        {8, "Out of Memory"},
        {32, "Path could not be found"},
        {26, "Sharing violation"},
        {1, "Unknown Error!, Please try again..."},
        {-5, "Unknown Error!, Please try again..."},
        {33, ""},
        {42, ""},
    };
    for (const auto& [code, text] : table) EXPECT_EQ(CShellExecute::ErrorText(code), text) << code;
}

TEST_F(ShellExecuteTest, ProgramLaunchIsFollowedUntilItEnds) {
    se.LaunchProgram(nullptr, "lame", "-h \"my song.wav\" out.mp3", "/music", 1, result);
    EXPECT_EQ(result, 42);
    ASSERT_EQ(shell->started.size(), 1);
    EXPECT_EQ(shell->started[0].program, "lame");
    EXPECT_EQ(shell->started[0].arguments, QStringList({"-h", "my song.wav", "out.mp3"}));
    EXPECT_EQ(shell->started[0].workingFolder, "/music");
    EXPECT_EQ(se.HasProcess(), 1);
    EXPECT_EQ(se.ProcessHandle(), shell->started[0].pid);
    se.StillExecuting(running);
    EXPECT_TRUE(running);
    shell->finish(shell->started[0].pid);
    se.StillExecuting(running);
    EXPECT_FALSE(running);

    // A document goes to its handler, never run as a program.
    se.LaunchDocument(nullptr, "/music/list.ply", "", 1, result);
    EXPECT_EQ(shell->opened, QStringList{"/music/list.ply"});
    EXPECT_EQ(shell->started.size(), 1);
    se.StillExecuting(running);
    EXPECT_TRUE(running);
}

TEST_F(ShellExecuteTest, StillExecutingIsFalseAfterALaunchThatKeepsNoProcess) {
    se.LaunchProgram(nullptr, "lame", "", "", 1, result);
    ASSERT_EQ(se.HasProcess(), 1);
    se.LaunchURL(nullptr, "http://example.org", 1, result);
    EXPECT_EQ(result, 42);
    EXPECT_EQ(se.HasProcess(), 0);
    EXPECT_EQ(se.ProcessHandle(), 0);
    se.StillExecuting(running);
    EXPECT_FALSE(running);
    EXPECT_TRUE(shell->runningAsked.isEmpty());  // nothing to ask about

    // A failed launch keeps no process either.
    shell->startResult = 2;
    se.LaunchProgram(nullptr, "nothing", "", "", 1, result);
    EXPECT_EQ(result, 2);
    EXPECT_EQ(se.HasProcess(), 0);
}

TEST_F(ShellExecuteTest, OpenKindsReachTheDesktop) {
    se.LaunchEmail(nullptr, "", 1, result);
    se.LaunchEmail(nullptr, "someone@example.org", 1, result);
    se.LaunchFolder(nullptr, "/music", 1, result);
    se.Explore(nullptr, "/music/cd", 1, result);
    shell->openResult = 31;
    se.LaunchURL(nullptr, "http://example.org", 1, result);
    EXPECT_EQ(result, 31);
    EXPECT_EQ(shell->opened, QStringList({"mailto:", "mailto:someone@example.org", "/music",
                                          "/music/cd", "http://example.org"}));
    shell->printResult = 3;
    se.PrintDocument(nullptr, "/nowhere/a.txt", result);
    EXPECT_EQ(result, 3);
    EXPECT_EQ(shell->printed, QStringList({"/nowhere/a.txt"}));
    EXPECT_TRUE(boxes->shown.isEmpty());
}

TEST_F(ShellExecuteTest, AFailureInsideAMemberShowsItsBox) {
    Components::clear();
    Components::provideService<MsgBox>(boxes);  // no shell this time
    se.LaunchURL(nullptr, "http://example.org", 1, result);
    EXPECT_EQ(result, 0);
    ASSERT_EQ(boxes->shown.size(), 1);
    EXPECT_EQ(boxes->shown[0].title, "LaunchURL");
    EXPECT_TRUE(boxes->shown[0].text.startsWith("Error: 440. "))
        << boxes->shown[0].text.toStdString();
}

TEST_F(ShellExecuteTest, BrowseForFolderAsksWithPromptAndStart) {
    auto dialogs = std::make_shared<test::FakeFileDialogs>();
    Components::provideService<FileDialogs>(dialogs);
    dialogs->scriptFolder("/music/out");
    dialogs->scriptCancel();
    EXPECT_EQ(BrowseForFolder(nullptr, "Select Folder for MP3 Output:", "/music"), "/music/out");
    EXPECT_EQ(BrowseForFolder(nullptr, "Select Folder for MP3 Output:", "/music"), "");
    ASSERT_EQ(dialogs->calls.size(), 2);
    EXPECT_EQ(dialogs->calls[0].prompt, "Select Folder for MP3 Output:");
    EXPECT_EQ(dialogs->calls[0].startFolder, "/music");
}
