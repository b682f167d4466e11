// The playback session: the queue and how it moves on, loops, random play, audio CD
// tracks, and what the timers do.
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
    FakeCDReader& reader() { return *FakeCDReader::instances().last(); }
};

TEST_F(SessionTest, QueuePlaysAudioHiddenAndPassesOverAMovEntry) {
    const QString a = media(QStringLiteral("a.mp3"));
    const QString b = media(QStringLiteral("b.mov"));
    const QString c = media(QStringLiteral("c.wav"));
    run({a, b, c});

    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), a);
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPlaying);
    EXPECT_FALSE(formOf(loadedWindow<QueueView>())->isVisible());
    EXPECT_EQ(main->PlaylistRunning, VTrue);
    EXPECT_EQ(main->TrackLength, 10);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Stop"));
    EXPECT_EQ(main->TitleText(), QStringLiteral("a.mp3"));
    EXPECT_GE(clock().msecs(), 2000);  // the gap before an audio entry

    AM()->playToEnd();

    EXPECT_EQ(main->PlayIndex, 2);
    EXPECT_EQ(main->CurrentFile, c);
    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), c);
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPlaying);
    EXPECT_EQ(main->TitleText(), QStringLiteral("c.wav"));
    EXPECT_EQ(main->PlaylistRunning, VTrue);
}

TEST_F(SessionTest, VideoEntryShowsTheQueueWindow) {
    const QString a = media(QStringLiteral("a.avi"));
    const QString b = media(QStringLiteral("b.mp3"));
    run({a, b});
    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), a);
    EXPECT_TRUE(formOf(loadedWindow<QueueView>())->isVisible());
    EXPECT_EQ(clock().msecs(), 0);  // no gap before video

    AM()->playToEnd();
    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), b);
    EXPECT_FALSE(formOf(loadedWindow<QueueView>())->isVisible());
}

TEST_F(SessionTest, AStopInsideTheGapIsUndoneWhenTheGapEnds) {
    const QString a = media(QStringLiteral("a.mp3"));
    const QString b = media(QStringLiteral("b.mp3"));
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
    EXPECT_EQ(main->PlaylistRunning, VTrue);
    EXPECT_EQ(main->PlayQueue, (QStringList{a, b}));
    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), b);
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPlaying);
}

TEST_F(SessionTest, TheLastEntryEndsTheRunUnlessThePlaylistLoops) {
    const QString a = media(QStringLiteral("a.avi"));
    const QString b = media(QStringLiteral("b.avi"));
    run({a, b});
    AM()->playToEnd();
    EXPECT_EQ(AM()->fileName(), b);
    AM()->playToEnd();
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    EXPECT_TRUE(main->PlayQueue.isEmpty());
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
    EXPECT_EQ(AM()->fileName(), b);
    EXPECT_NE(AM()->PlayState(), MediaPlayer::mpPlaying);

    setting("Playlist Loop", QStringLiteral("True"));
    run({a, b});
    AM()->playToEnd();
    AM()->playToEnd();
    EXPECT_EQ(main->PlaylistRunning, VTrue);
    EXPECT_EQ(main->PlayIndex, 0);
    EXPECT_EQ(AM()->fileName(), a);
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPlaying);
}

TEST_F(SessionTest, RandomPlayNeverPicksTheFirstAndReplaysOnTheCount) {
    setting("Audio Randomize", QStringLiteral("True"));
    const QStringList files{media(QStringLiteral("a.avi")), media(QStringLiteral("b.avi")),
                            media(QStringLiteral("c.avi"))};
    run(files);
    QSet<long> picked;
    for (int i = 0; i < 300; ++i) {
        picked << main->PlayIndex;
        const QString before = main->CurrentFile;
        ASSERT_NE(AM(), nullptr);
        AM()->playToEnd();
        ASSERT_EQ(main->PlaylistRunning, VTrue) << "a random run never ends by itself";
        if (main->PlayIndex == 3) {
            // Past the queue: the file just played plays again.
            EXPECT_EQ(main->CurrentFile, before);
            EXPECT_EQ(AM()->fileName(), before);
            EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPlaying);
        }
    }
    EXPECT_EQ(picked, (QSet<long>{1, 2, 3}));
}

TEST_F(SessionTest, SeekWrapsAtBothEndsOfTheQueue) {
    const QString a = media(QStringLiteral("a.avi"));
    const QString b = media(QStringLiteral("b.avi"));
    const QString c = media(QStringLiteral("c.avi"));
    run({a, b, c});
    EXPECT_TRUE(temp->mnuSeekNext->isEnabled());

    temp->mnuSeekPrev_Click();
    EXPECT_EQ(main->PlayIndex, 2);
    EXPECT_EQ(AM()->fileName(), c);
    EXPECT_EQ(main->TitleText(), QStringLiteral("c.avi"));

    temp->mnuSeekNext_Click();
    EXPECT_EQ(main->PlayIndex, 0);
    EXPECT_EQ(AM()->fileName(), a);
    EXPECT_EQ(main->TitleText(), QStringLiteral("a.avi"));

    // One row leaves the seek commands off.
    run({a});
    EXPECT_FALSE(temp->mnuSeekNext->isEnabled());
    EXPECT_FALSE(temp->mnuSeekPrev->isEnabled());
}

TEST_F(SessionTest, SeekOnASingleFileDoesNothing) {
    const QString song = media(QStringLiteral("Song.mp3"));
    openByDialog(song);
    MP().calls.clear();
    temp->mnuSeekNext_Click();
    temp->mnuSeekPrev_Click();
    EXPECT_TRUE(MP().calls.isEmpty());
    EXPECT_EQ(main->CurrentFile, song);
    EXPECT_EQ(AM(), nullptr);
}

TEST_F(SessionTest, AQueueWithNothingPlayableEndsInsteadOfGoingRoundForEver) {
    run({file(QStringLiteral("notes.txt")), file(QStringLiteral("cover.jpg"))});
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
    EXPECT_EQ(AM(), nullptr);
}

TEST_F(SessionTest, LoopOtherReplaysUntilTheUserStops) {
    setting("Loop Other", QStringLiteral("1"));
    const QString song = media(QStringLiteral("Song.mp3"), 3);
    openByDialog(song);
    clock().advance(3500);
    EXPECT_EQ(MP().calls.count(QStringLiteral("Play")), 2);
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Stop"));

    temp->mnuStop_Click();
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpStopped);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
    clock().advance(5000);
    EXPECT_EQ(MP().calls.count(QStringLiteral("Play")), 2);
}

TEST_F(SessionTest, AStopThatIsNotTheUsersLetsLoopOtherReplay) {
    setting("Loop Other", QStringLiteral("1"));
    openByDialog(media(QStringLiteral("Song.mp3"), 3));
    main->mnuStop();  // as the Ctrl+S key does, without StopRequested
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);
}

TEST_F(SessionTest, AudioCDTrackFromTheDialogCountsFromOne) {
    FakeCDReader::setTracks({200, 180, 240, 150, 300});
    FakeCDReader::disc().readyAfterMs = 3000;
    openByDialog(file(QStringLiteral("Track05.cda")));

    EXPECT_GE(clock().msecs(), 3000);
    EXPECT_EQ(reader().calls, (QStringList{"Open", "PlayAudioTrack=4"}));
    EXPECT_EQ(main->CurrentTrack, 4);
    EXPECT_EQ(main->TitleText(), QStringLiteral("Audio Track #5"));
    EXPECT_EQ(main->TrackLength, 300);
    EXPECT_TRUE(main->CDR_Timer.isEnabled());
    EXPECT_TRUE(main->Timer2.isEnabled());
    EXPECT_FALSE(main->Timer3.isEnabled());

    clock().advance(60000);
    EXPECT_GT(main->imgPlayProgress.rect.left(), 16);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Stop"));
    clock().advance(241000);  // past the track's end
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
    EXPECT_FALSE(main->CDR_Timer.isEnabled());
    EXPECT_FALSE(main->Timer2.isEnabled());
}

TEST_F(SessionTest, AudioCDInAQueueTakesTheNumberAsItStands) {
    FakeCDReader::setTracks({200, 180, 240, 150, 300, 100});
    run({file(QStringLiteral("Track05.cda"))});
    EXPECT_EQ(reader().calls.last(), QStringLiteral("PlayAudioTrack=5"));
    EXPECT_EQ(main->CurrentTrack, 5);
    EXPECT_EQ(main->TrackLength, 100);
    EXPECT_EQ(main->PlaylistRunning, VTrue);
    EXPECT_TRUE(main->Timer1.isEnabled());
}

TEST_F(SessionTest, ADiscThatIsNotReadyOrUnreadableIsTold) {
    FakeCDReader::setTracks({200});
    FakeCDReader::disc().readyAfterMs.reset();
    const QString track = file(QStringLiteral("Track01.cda"));
    openByDialog(track);
    EXPECT_EQ(msgBox().texts(), QStringList{"CD not ready (15 second timeout)."});
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Exclamation);
    EXPECT_GE(clock().msecs(), 15000);
    EXPECT_FALSE(main->CDR_Timer.isEnabled());

    msgBox().reset();
    FakeCDReader::disc().readyAfterMs = 0;
    FakeCDReader::disc().directoryRead = false;
    openByDialog(track);
    EXPECT_EQ(msgBox().texts(), QStringList{"Unable to read CD directory."});
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Exclamation);
}

TEST_F(SessionTest, SeekOnACDWrapsOverTheTracks) {
    FakeCDReader::setTracks({200, 180, 240});
    openByDialog(file(QStringLiteral("Track03.cda")));
    EXPECT_EQ(main->CurrentTrack, 2);
    temp->mnuSeekNext_Click();
    EXPECT_EQ(main->CurrentTrack, 0);
    EXPECT_EQ(reader().calls.last(), QStringLiteral("PlayAudioTrack=0"));
    EXPECT_EQ(main->TitleText(), QStringLiteral("Audio Track #1"));
    EXPECT_EQ(main->TrackLength, 200);
    temp->mnuSeekPrev_Click();
    EXPECT_EQ(main->CurrentTrack, 2);
    EXPECT_EQ(main->TrackLength, 240);
}

TEST_F(SessionTest, ThumbFollowsTheTimeOverItsTravel) {
    // 16 at the start; the width of the thumb (20) is taken off the far end.
    main->ThumbFromTime(0, 10);
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 16);
    main->ThumbFromTime(5, 10);
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 140);
    EXPECT_EQ(main->TimeFromThumb(10), 5);
    main->ThumbFromTime(-3, 10);
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 16);
    main->ThumbFromTime(4, 0);  // nothing loaded: the thumb stays
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 16);
}

TEST_F(SessionTest, TheDisplayTimerReadsTheQueuePlayerWhileARunIsOn) {
    const QString a = media(QStringLiteral("a.avi"), 10);
    run({a});
    clock().advance(5050);
    // The thumb stands for about five seconds of ten.
    EXPECT_NEAR(main->imgPlayProgress.rect.left(), 140, 3);
    EXPECT_TRUE(main->Timer3.isEnabled());
}

TEST_F(SessionTest, AnyPlayerPlayingLooksAtEveryPlayer) {
    EXPECT_FALSE(main->AnyPlayerPlaying());
    openByDialog(media(QStringLiteral("Song.mp3")));
    EXPECT_TRUE(main->AnyPlayerPlaying());
    temp->mnuStop_Click();
    EXPECT_FALSE(main->AnyPlayerPlaying());
    run({media(QStringLiteral("a.avi"))});
    EXPECT_TRUE(main->AnyPlayerPlaying());
    AM()->Pause();
    EXPECT_FALSE(main->AnyPlayerPlaying());
}

}  // namespace
