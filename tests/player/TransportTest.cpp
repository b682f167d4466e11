// Transport commands: the skin buttons, pause, replay, the thumb drag, delete and the recent
// files.
#include <gtest/gtest.h>

#include <QRegularExpression>

#include "PlayerTest.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class TransportTest : public PlayerTest {};

TEST_F(TransportTest, PlayStopAndOpenButtonsWorkByWhatIsLoaded) {
    dialogs->scriptCancel();
    main->imgButton_Click(1);
    EXPECT_EQ(dialogs->calls.size(), 1);  // nothing loaded: the open dialog
    main->imgButton_Click(3);             // idle: nothing to stop

    const QString song = media(QStringLiteral("Song.mp3"), 3);
    openByDialog(song);
    clock().advance(4000);  // played out
    MP().calls.clear();
    main->imgButton_Click(1);
    EXPECT_EQ(MP().calls, QStringList{"Play"});  // replayed as it is, no new open
    EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Stop"));
    main->imgButton_Click(3);
    EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Open..."));

    // Open File while playing stops first, then asks for a file.
    const QString next = media(QStringLiteral("Next.wav"));
    main->imgButton_Click(1);
    dialogs->scriptFiles({next});
    main->imgButton_Click(5);
    EXPECT_EQ(MP().fileName(), next);

    // With more than one row Play runs the list.
    main->imgButton_Click(3);
    main->List1 << media(QStringLiteral("Other.avi"));
    main->imgButton_Click(1);
    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), next);
}

TEST_F(TransportTest, PauseGoesToWhateverPlays) {
    main->imgButton_Click(2);
    EXPECT_TRUE(msgBox().shown.isEmpty());  // the button is off while idle
    temp->mnuPause_Click();
    temp->mnuPlayCurrent_Click();
    EXPECT_EQ(msgBox().texts(),
              (QStringList{"No file is currently playing to pause.",
                           "No file is currently loaded to play.\r\nSelect \"\"Play New File\"\" "
                           "to open\r\nthe desired media."}));

    openByDialog(media(QStringLiteral("Song.mp3")));
    clock().advance(1000);
    main->imgButton_Click(2);
    EXPECT_EQ(temp->mnuPause->text(), QStringLiteral("&Resume"));
    const double at = MP().CurrentPosition();
    clock().advance(3000);
    EXPECT_EQ(MP().CurrentPosition(), at);
    main->imgButton_Click(2);
    EXPECT_EQ(temp->mnuPause->text(), QStringLiteral("Pa&use"));

    main->List1 = {media(QStringLiteral("a.avi")), media(QStringLiteral("b.avi"))};
    main->mnuRunPlaylist();
    temp->mnuPause_Click();
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPaused);
    temp->mnuPause_Click();
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPlaying);
    temp->mnuStop_Click();

    const QString clip = media(QStringLiteral("Clip.avi"));
    main->OpenCommandLine(clip);
    auto* videoMP = static_cast<FakeMediaPlayer*>(video()->MP());
    temp->mnuPause_Click();
    EXPECT_EQ(videoMP->PlayState(), MediaPlayer::mpPaused);
    temp->mnuPause_Click();
    EXPECT_EQ(videoMP->PlayState(), MediaPlayer::mpPlaying);
    main->mnuStop();
    EXPECT_EQ(video(), nullptr);  // a stop closes the video window

    const QString film = media(QStringLiteral("Film.viv"));
    main->OpenCommandLine(film);
    temp->mnuPause_Click();
    temp->mnuPause_Click();
    EXPECT_EQ(FakeFilmPlayer::latest()->calls.filter(QRegularExpression("^[A-Z]")),
              (QStringList{"Film=" + film, "Play", "Stop", "Play"}));
    main->mnuStop();
    EXPECT_EQ(vivo(), nullptr);

    // A CD track resumes from where it stopped.
    FakeCDReader::setTracks({200, 180});
    openByDialog(file(QStringLiteral("Track02.cda")));
    clock().advance(10000);
    temp->mnuPause_Click();
    FakeCDReader& reader = *FakeCDReader::instances().last();
    EXPECT_EQ(reader.calls.last(), QStringLiteral("PauseAudio"));
    const qint64 pausedAt = CDReader::ToFrames(reader.Position());
    clock().advance(5000);
    temp->mnuPause_Click();
    EXPECT_EQ(reader.calls.last(),
              QStringLiteral("PlayAudioRange=%1+%2").arg(pausedAt).arg(180 * 75));
}

TEST_F(TransportTest, DraggingTheThumbSeeksThePlayingFileOrTheQueue) {
    openByDialog(media(QStringLiteral("Song.mp3"), 10));
    MP().calls.clear();
    main->imgPlayProgress_MouseMove(0, 0, 100, 0);  // no button: only the anchor
    EXPECT_TRUE(MP().calls.isEmpty());
    main->imgPlayProgress_MouseMove(0, 0, 0, 0);
    main->imgPlayProgress_MouseMove(1, 0, 124, 0);
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 140);
    EXPECT_EQ(MP().calls, QStringList{"CurrentPosition=5"});
    main->imgPlayProgress_MouseMove(1, 0, 500, 0);
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 248);  // the travel ends before the width
    main->imgPlayProgress_MouseMove(1, 0, -500, 0);
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 16);

    main->List1 = {media(QStringLiteral("a.avi"), 20), media(QStringLiteral("b.avi"))};
    main->mnuRunPlaylist();
    main->imgPlayProgress_MouseMove(0, 0, 0, 0);
    main->imgPlayProgress_MouseMove(1, 0, 62, 0);
    EXPECT_EQ(AM()->calls.last(), QStringLiteral("CurrentPosition=5"));
}

TEST_F(TransportTest, DeleteSendsTheFileToTheTrashWhateverTheAnswerOrSaysWhyNot) {
    temp->mnuDelete->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList{"No file is currently loaded to delete."});
    for (const int answer : {Mb::No, Mb::Yes}) {
        const QString song = media(answer == Mb::No ? "No.mp3" : "Yes.mp3");
        openByDialog(song);
        msgBox().reset();
        msgBox().script({answer});
        temp->mnuDelete->trigger();
        ASSERT_EQ(msgBox().shown.size(), 1);
        EXPECT_EQ(msgBox().shown[0].text, "Are you sure you want to delete:  " + song + "?");
        EXPECT_EQ(shell->trashed.last(), song);
        EXPECT_TRUE(main->TitleText().isEmpty());
    }

    // A Trash that refuses leaves the file where it was, and loaded.
    const QString kept = media("Keep.wav");
    openByDialog(kept);
    shell->trashResult = false;
    msgBox().reset();
    msgBox().script({Mb::Yes});
    temp->mnuDelete->trigger();
    ASSERT_EQ(msgBox().texts().size(), 2);
    EXPECT_EQ(msgBox().texts()[1],
              "The file '" + kept + "' could not be moved to the Trash, so it was not deleted.");
    EXPECT_EQ(main->CurrentFile, kept);
    EXPECT_EQ(main->lblTitle[0].Caption, "Keep.wav");
    EXPECT_TRUE(QFile::exists(kept));

    msgBox().reset();
    FakeCDReader::setTracks({200});
    openByDialog(file(QStringLiteral("Track01.cda")));
    temp->mnuDelete->trigger();
    EXPECT_EQ(msgBox().texts(),
              QStringList{"CD-ROM media is read-only, and cannot be deleted from."});
    EXPECT_EQ(shell->trashed.size(), 3);  // the CD track was not among them
}

TEST_F(TransportTest, ClearingTheRecentFilesEmptiesTheListAndSaysSo) {
    temp->mnuClearCantovelMRU->trigger();
    ASSERT_EQ(mru->added.size(), 4);
    for (const auto& entry : mru->added)
        EXPECT_TRUE(entry.first.isEmpty() && entry.second.isEmpty());
    EXPECT_EQ(msgBox().texts(),
              QStringList{"Cantovel's Most Recently Used (MRU) files list has been successfully "
                          "cleared."});
    temp->MRU.reset();  // no list to clear is the error path
    mru = nullptr;
    temp->mnuClearCantovelMRU->trigger();
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_TRUE(msgBox().shown[1].text.startsWith("An error occurred while attempting to clear"));
}

}  // namespace
