// Transport commands: the skin buttons, pause, replay, the thumb drag and delete.
#include <gtest/gtest.h>

#include "PlayerTest.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const QString kNothingToPlay = QStringLiteral(
    "No file is currently loaded to play.\r\nSelect \"\"Play New File\"\" to open\r\nthe desired "
    "media.");

class TransportTest : public PlayerTest {};

TEST_F(TransportTest, PlayButtonOpensRunsOrReplaysByWhatIsLoaded) {
    dialogs->scriptCancel();
    main->imgButton_Click(1);
    EXPECT_EQ(dialogs->calls.size(), 1);  // nothing loaded: the open dialog

    const QString song = media(QStringLiteral("Song.mp3"), 3);
    openByDialog(song);
    clock().advance(4000);  // played out
    MP().calls.clear();
    main->imgButton_Click(1);
    EXPECT_EQ(dialogs->calls.size(), 2);
    EXPECT_EQ(MP().calls, QStringList{"Play"});  // replayed as it is, no new open
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Stop"));
    EXPECT_TRUE(main->Timer3.isEnabled());
    EXPECT_EQ(main->TrackLength, 3);

    main->List1 << media(QStringLiteral("Other.avi"));
    main->imgButton_Click(1);
    EXPECT_EQ(main->PlaylistRunning, VTrue);
    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), song);
}

TEST_F(TransportTest, StopAndOpenButtonsStopOnlyWhatIsLoaded) {
    const QString song = media(QStringLiteral("Song.mp3"));
    main->imgButton_Click(3);  // idle: nothing happens
    EXPECT_EQ(main->StopRequested, VFalse);

    openByDialog(song);
    main->imgButton_Click(3);
    EXPECT_EQ(main->StopRequested, VTrue);
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpStopped);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));

    // Open File while playing stops first, then asks for a file.
    const QString next = media(QStringLiteral("Next.wav"));
    main->imgButton_Click(1);  // replays Song
    dialogs->scriptFiles({next});
    main->imgButton_Click(5);
    EXPECT_EQ(dialogs->calls.size(), 2);
    EXPECT_EQ(MP().fileName(), next);
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);
}

TEST_F(TransportTest, PauseWithNothingLoadedSpeaksOnlyThroughTheMenu) {
    main->imgButton_Click(2);
    EXPECT_TRUE(msgBox().shown.isEmpty());  // the item is off while idle

    temp->mnuPause_Click();
    EXPECT_EQ(msgBox().texts(), QStringList{"No file is currently playing to pause."});
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Information);
    EXPECT_EQ(caption(temp->mnuPause), QStringLiteral("Pa&use"));
}

TEST_F(TransportTest, PauseAndResumeAFile) {
    openByDialog(media(QStringLiteral("Song.mp3")));
    clock().advance(1000);
    main->imgButton_Click(2);
    EXPECT_EQ(caption(temp->mnuPause), QStringLiteral("&Resume"));
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPaused);
    EXPECT_FALSE(main->Timer1.isEnabled());
    EXPECT_FALSE(main->Timer3.isEnabled());
    const double at = MP().CurrentPosition();
    clock().advance(3000);
    EXPECT_EQ(MP().CurrentPosition(), at);

    main->imgButton_Click(2);
    EXPECT_EQ(caption(temp->mnuPause), QStringLiteral("Pa&use"));
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);
    EXPECT_TRUE(main->Timer1.isEnabled());
    EXPECT_TRUE(main->Timer3.isEnabled());
}

TEST_F(TransportTest, PauseInAQueuePausesTheQueuePlayer) {
    main->List1 = {media(QStringLiteral("a.avi")), media(QStringLiteral("b.avi"))};
    main->mnuRunPlaylist();
    temp->mnuPause_Click();
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPaused);
    temp->mnuPause_Click();
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPlaying);
}

TEST_F(TransportTest, PauseOnACDResumesFromWhereItStopped) {
    FakeCDReader::setTracks({200, 180});
    openByDialog(file(QStringLiteral("Track02.cda")));
    clock().advance(10000);
    temp->mnuPause_Click();
    FakeCDReader& reader = *FakeCDReader::instances().last();
    EXPECT_EQ(reader.calls.last(), QStringLiteral("PauseAudio"));
    EXPECT_FALSE(main->CDR_Timer.isEnabled());
    EXPECT_FALSE(main->Timer2.isEnabled());
    const qint64 pausedAt = CDReader::ToFrames(reader.Position());

    clock().advance(5000);
    temp->mnuPause_Click();
    EXPECT_EQ(reader.calls.last(),
              QStringLiteral("PlayAudioRange=%1+%2").arg(pausedAt).arg(180 * 75));
    EXPECT_TRUE(main->CDR_Timer.isEnabled());
    EXPECT_TRUE(main->Timer2.isEnabled());
}

TEST_F(TransportTest, PauseOnVideoAndVivoGoesToTheirPlayers) {
    main->show();
    const QString clip = media(QStringLiteral("Clip.avi"));
    main->OpenCommandLine(clip);
    auto* videoMP = static_cast<FakeMediaPlayer*>(video()->MP());
    temp->mnuPause_Click();
    EXPECT_EQ(videoMP->PlayState(), MediaPlayer::mpPaused);
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpClosed);
    temp->mnuPause_Click();
    EXPECT_EQ(videoMP->PlayState(), MediaPlayer::mpPlaying);

    main->mnuStop();
    EXPECT_EQ(video(), nullptr);  // a stop closes the video window

    const QString film = media(QStringLiteral("Film.viv"));
    main->OpenCommandLine(film);
    temp->mnuPause_Click();
    temp->mnuPause_Click();
    EXPECT_EQ(vivo()->calls, (QStringList{"Open=" + film, "Play", "Stop", "Play"}));
    main->mnuStop();
    EXPECT_EQ(vivo(), nullptr);
}

TEST_F(TransportTest, ReplayWithNothingLoadedTellsHowToOpen) {
    temp->mnuPlayCurrent_Click();
    EXPECT_EQ(msgBox().texts(), QStringList{kNothingToPlay});
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Information);
}

TEST_F(TransportTest, DraggingTheThumbSeeksThePlayingFile) {
    openByDialog(media(QStringLiteral("Song.mp3"), 10));
    MP().calls.clear();

    main->imgPlayProgress_MouseMove(0, 0, 100, 0);  // no button: only the anchor
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 16);
    EXPECT_TRUE(MP().calls.isEmpty());

    main->imgPlayProgress_MouseMove(0, 0, 0, 0);
    main->imgPlayProgress_MouseMove(1, 0, 124, 0);
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 140);
    EXPECT_EQ(MP().calls, QStringList{"CurrentPosition=5"});

    main->imgPlayProgress_MouseMove(1, 0, 500, 0);
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 248);  // the travel ends before the width
    main->imgPlayProgress_MouseMove(1, 0, -500, 0);
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 16);
    EXPECT_EQ(MP().CurrentPosition(), 0);
}

TEST_F(TransportTest, DraggingInAQueueSeeksTheQueuePlayer) {
    main->List1 = {media(QStringLiteral("a.avi"), 20), media(QStringLiteral("b.avi"))};
    main->mnuRunPlaylist();
    main->imgPlayProgress_MouseMove(0, 0, 0, 0);
    main->imgPlayProgress_MouseMove(1, 0, 62, 0);
    EXPECT_EQ(AM()->calls.last(), QStringLiteral("CurrentPosition=5"));
}

TEST_F(TransportTest, DeleteAnsweredNoStillSendsTheFileToTheTrash) {
    const QString song = media(QStringLiteral("Song.mp3"));
    openByDialog(song);
    msgBox().script({Mb::No});

    temp->mnuDelete_Click();

    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text, "Are you sure you want to delete:  " + song + "?");
    EXPECT_EQ(msgBox().shown[0].buttons(), Mb::YesNo);
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Question);
    EXPECT_EQ(shell->trashed, QStringList{song});
    EXPECT_TRUE(main->CurrentFile.isEmpty());
    EXPECT_TRUE(MP().fileName().isEmpty());
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
    EXPECT_TRUE(main->TitleText().isEmpty());
}

TEST_F(TransportTest, DeleteAnsweredYesSendsTheFileOnce) {
    const QString song = media(QStringLiteral("Song.mp3"));
    openByDialog(song);
    msgBox().script({Mb::Yes});
    temp->mnuDelete_Click();
    EXPECT_EQ(shell->trashed, QStringList{song});
    EXPECT_TRUE(main->CurrentFile.isEmpty());
}

TEST_F(TransportTest, DeleteRefusesWithNothingLoadedOrACDTrack) {
    temp->mnuDelete_Click();
    EXPECT_EQ(msgBox().texts(), QStringList{"No file is currently loaded to delete."});

    msgBox().reset();
    FakeCDReader::setTracks({200});
    openByDialog(file(QStringLiteral("Track01.cda")));
    temp->mnuDelete_Click();
    EXPECT_EQ(msgBox().texts(),
              QStringList{"CD-ROM media is read-only, and cannot be deleted from."});
    EXPECT_TRUE(shell->trashed.isEmpty());
}

}  // namespace

namespace {

TEST_F(TransportTest, ClearingTheRecentFilesEmptiesTheListAndSaysSo) {
    temp->mnuClearCantovelMRU->trigger();
    ASSERT_EQ(mru->added.size(), 4);
    for (const auto& entry : mru->added)
        EXPECT_TRUE(entry.first.isEmpty() && entry.second.isEmpty());
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text,
              "Cantovel's Most Recently Used (MRU) files list has been successfully cleared.");
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Information);
    EXPECT_TRUE(msgBox().shown[0].foreground());

    // No list to clear is the error path.
    temp->MRU.reset();
    mru = nullptr;
    temp->mnuClearCantovelMRU->trigger();
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_TRUE(msgBox().shown[1].text.startsWith("An error occurred while attempting to clear"));
    EXPECT_EQ(msgBox().shown[1].icon(), Mb::Exclamation);
}

}  // namespace
