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
    temp->mnuSeekNext->trigger();
    EXPECT_EQ(AM()->fileName(), s[1]);
    EXPECT_EQ(main->TitleText(), QStringLiteral("b.mp3"));
    AM()->playToEnd();
    EXPECT_EQ(AM()->fileName(), s[2]);
    AM()->playToEnd();
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));

    // One row with random play: the only pick is 1, past the queue; the file in hand stays.
    setting("Audio Randomize", QStringLiteral("True"));
    editor->mnuNew();
    rows({s[0]});
    main->CurrentFile = QStringLiteral("/before.mp3");
    main->mnuRunPlaylist();
    EXPECT_EQ(main->PlayIndex, 1);
    EXPECT_EQ(main->CurrentFile, QStringLiteral("/before.mp3"));
    EXPECT_FALSE(temp->mnuSeekNext->isEnabled());
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
