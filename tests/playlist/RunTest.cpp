// Running the editor's list as a queue, and playing one row by a double click.
#include <gtest/gtest.h>

#include "PlaylistTest.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class RunTest : public PlaylistTest {};

TEST_F(RunTest, ASavedAndLoadedListRunsInOrderAndStopsAfterTheLast) {
    const QStringList s = songs(3);
    rows(s);
    dialogs->scriptFiles({tempDir() + "/three.m3u"});
    editor->mnuSave();
    editor->mnuNew();
    dialogs->scriptFiles({tempDir() + "/three.m3u"});
    editor->mnuLoad();

    main->imgButton_Click(1);  // Play
    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), s[0]);
    EXPECT_EQ(main->TitleText(), QStringLiteral("a.mp3"));
    temp->mnuSeekNext_Click();
    EXPECT_EQ(AM()->fileName(), s[1]);
    EXPECT_EQ(main->TitleText(), QStringLiteral("b.mp3"));
    AM()->playToEnd();
    EXPECT_EQ(AM()->fileName(), s[2]);
    AM()->playToEnd();
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
}

TEST_F(RunTest, OneRowWithRandomPlayKeepsTheFileInHand) {
    setting("Audio Randomize", QStringLiteral("True"));
    const QStringList s = songs(1);
    rows(s);
    main->CurrentFile = QStringLiteral("/before.mp3");
    main->mnuRunPlaylist();
    // The only pick is 1, past the one-row queue.
    EXPECT_EQ(main->PlayIndex, 1);
    EXPECT_EQ(main->CurrentFile, QStringLiteral("/before.mp3"));
    EXPECT_FALSE(temp->mnuSeekNext->isEnabled());
    EXPECT_FALSE(temp->mnuSeekPrev->isEnabled());
}

TEST_F(RunTest, ADoubleClickPlaysOneRowWithNoRun) {
    const QStringList s = songs(3);
    rows(s);
    select({1});
    editor->lstPlayList_DblClick();
    EXPECT_EQ(main->CurrentFile, s[1]);
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    EXPECT_EQ(main->StopRequested, VTrue);
    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), s[1]);
    EXPECT_EQ(main->TitleText(), QStringLiteral("b.mp3"));
    AM()->playToEnd();
    EXPECT_EQ(AM()->fileName(), s[1]) << "nothing follows a row played alone";

    // A file the player refuses names itself.
    const QString bad = file("bad.wav");
    rows({bad});
    select({3});
    editor->lstPlayList_DblClick();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text, QStringLiteral("An error occurred attempting to load \"") +
                                          bad +
                                          QStringLiteral("\".  The file is most likely corrupt, "
                                                         "invalid, or an unsupported format."));
}

}  // namespace
