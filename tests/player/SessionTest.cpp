// The playback session: the queue and how it moves on, loops, random play, audio CD tracks,
// and what the timers do.
#include <gtest/gtest.h>

#include <QSet>

#include "PlayerTest.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class SessionTest : public PlayerTest {
  protected:
    // Lists the files and starts a run over them.
    void run(const QStringList& files) {
        main->List1 = files;
        main->mnuRunPlaylist();
    }
    bool queueWindowShows() { return formOf(loadedWindow<QueueView>())->isVisible(); }
    FakeCDReader& reader() { return *FakeCDReader::instances().last(); }
};

TEST_F(SessionTest, AStopInsideTheGapIsUndoneWhenTheGapEnds) {
    const QString a = media(QStringLiteral("a.mp3")), b = media(QStringLiteral("b.mp3"));
    run({a, b});
    bool stopped = false;
    Timer stopper(700);
    QObject::connect(&stopper, &Timer::timeout, [&] {
        stopper.setEnabled(false);
        EXPECT_EQ(main->PlaylistRunning, VFalse);  // off during the gap
        temp->mnuStop_Click();
        stopped = true;
    });
    stopper.setEnabled(true);
    AM()->playToEnd();  // the next entry's gap begins

    ASSERT_TRUE(stopped);
    EXPECT_EQ(main->PlayQueue, (QStringList{a, b}));
    EXPECT_EQ(playing(AM()), b);
}

TEST_F(SessionTest, TheLastEntryEndsTheRunUnlessThePlaylistLoops) {
    const QString a = media(QStringLiteral("a.avi")), b = media(QStringLiteral("b.avi"));
    run({a, b});
    // Seeking wraps at both ends of the queue.
    temp->mnuSeekPrev->trigger();
    EXPECT_EQ(main->TitleText(), QStringLiteral("b.avi"));
    temp->mnuSeekNext->trigger();
    EXPECT_EQ(AM()->fileName(), a);
    const qint64 before = clock().msecs();
    AM()->playToEnd();
    EXPECT_EQ(clock().msecs(), before);  // no gap before a film
    AM()->playToEnd();
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Open..."));
    EXPECT_NE(AM()->PlayState(), MediaPlayer::mpPlaying);

    setting("Playlist Loop", QStringLiteral("True"));
    run({a, b});
    AM()->playToEnd();
    AM()->playToEnd();
    EXPECT_EQ(playing(AM()), a);

    // A queue with nothing playable ends instead of going round for ever.
    run({file(QStringLiteral("notes.txt")), file(QStringLiteral("cover.jpg"))});
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Open..."));
}

TEST_F(SessionTest, RandomPlayNeverPicksTheFirstAndReplaysOnTheCount) {
    setting("Audio Randomize", QStringLiteral("True"));
    run({media(QStringLiteral("a.avi")), media(QStringLiteral("b.avi")),
         media(QStringLiteral("c.avi"))});
    QSet<long> picked;
    for (int i = 0; i < 300; ++i) {
        picked << main->PlayIndex;
        const QString before = main->CurrentFile;
        ASSERT_NE(AM(), nullptr);
        AM()->playToEnd();
        ASSERT_EQ(main->PlaylistRunning, VTrue) << "a random run never ends by itself";
        if (main->PlayIndex == 3) {
            // Past the queue: the file just played plays again.
            EXPECT_EQ(playing(AM()), before);
        }
    }
    EXPECT_EQ(picked, (QSet<long>{1, 2, 3}));
}

TEST_F(SessionTest, LoopOtherReplaysUntilTheUserStops) {
    setting("Loop Other", QStringLiteral("1"));
    openByDialog(media(QStringLiteral("Song.mp3"), 3));
    clock().advance(3500);
    EXPECT_EQ(MP().calls.count(QStringLiteral("Play")), 2);
    main->mnuStop();  // as the Ctrl+S key does, without StopRequested: it plays on
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);
    temp->mnuStop_Click();
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpStopped);
    clock().advance(5000);
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpStopped);
}

TEST_F(SessionTest, AudioCDTracksFromTheDialogCountFromOneInAQueueAsTheyStand) {
    FakeCDReader::setTracks({200, 180, 240, 150, 300, 100});
    FakeCDReader::disc().readyAfterMs = 3000;
    openByDialog(file(QStringLiteral("Track05.cda")));
    EXPECT_EQ(reader().calls, (QStringList{"Open", "PlayAudioTrack=4"}));
    EXPECT_EQ(main->TitleText(), QStringLiteral("Audio Track #5"));
    EXPECT_EQ(main->TrackLength, 300);
    clock().advance(60000);
    EXPECT_GT(main->imgPlayProgress.rect.left(), 16);
    clock().advance(241000);  // past the track's end
    EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Open..."));

    run({file(QStringLiteral("Track05.cda"))});
    EXPECT_EQ(reader().calls.last(), QStringLiteral("PlayAudioTrack=5"));
    EXPECT_EQ(main->TrackLength, 100);
    temp->mnuStop_Click();

    // Seek wraps over the tracks.
    FakeCDReader::setTracks({200, 180, 240});
    openByDialog(file(QStringLiteral("Track03.cda")));
    temp->mnuSeekNext_Click();
    EXPECT_EQ(reader().calls.last(), QStringLiteral("PlayAudioTrack=0"));
    EXPECT_EQ(main->TitleText(), QStringLiteral("Audio Track #1"));
    temp->mnuSeekPrev_Click();
    EXPECT_EQ(main->TrackLength, 240);
}

TEST_F(SessionTest, ADiscThatIsNotReadyOrUnreadableIsTold) {
    FakeCDReader::setTracks({200});
    FakeCDReader::disc().readyAfterMs.reset();
    const QString track = file(QStringLiteral("Track01.cda"));
    openByDialog(track);
    EXPECT_EQ(msgBox().texts(), QStringList{"CD not ready (15 second timeout)."});
    EXPECT_GE(clock().msecs(), 15000);
    msgBox().reset();
    FakeCDReader::disc().readyAfterMs = 0;
    FakeCDReader::disc().directoryRead = false;
    openByDialog(track);
    EXPECT_EQ(msgBox().texts(), QStringList{"Unable to read CD directory."});
}

}  // namespace
