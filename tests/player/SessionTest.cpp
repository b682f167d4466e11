// The playback session: how a queue moves on and loops, a file that loops, and audio CD
// tracks.
#include <QTest>

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

TEST_F(SessionTest, AQueueEndsAfterItsLastEntryUnlessItLoopsAndALoopingFileStopsForTheUser) {
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
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPlaying);
    EXPECT_EQ(AM()->fileName(), a);

    // A queue with nothing playable ends instead of going round for ever.
    run({file(QStringLiteral("notes.txt")), file(QStringLiteral("cover.jpg"))});
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Open..."));

    // A looping file plays again at its end, and on after Ctrl+S; the menu's Stop ends it.
    setting("Loop Other", QStringLiteral("1"));
    openByDialog(media(QStringLiteral("Song.mp3"), 3));
    clock().advance(3500);
    EXPECT_EQ(MP().calls.count(QStringLiteral("Play")), 2);
    QTest::keyClick(main, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);
    temp->mnuStop->trigger();
    clock().advance(5000);
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpStopped);

    // A stop given in the gap before a song is undone when the gap ends.
    const QString c = media(QStringLiteral("c.mp3")), d = media(QStringLiteral("d.mp3"));
    run({c, d});
    Timer stopper(700);
    QObject::connect(&stopper, &Timer::timeout, [&] {
        stopper.setEnabled(false);
        temp->mnuStop->trigger();
    });
    stopper.setEnabled(true);
    AM()->playToEnd();
    EXPECT_FALSE(stopper.isEnabled());
    EXPECT_EQ(AM()->fileName(), d);
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPlaying);
}

TEST_F(SessionTest, AudioCDTracksCountFromOneFromTheDialogAndInAQueueAndADiscMayNotBeReady) {
    FakeCDReader::setTracks({200, 180, 240, 150, 300, 100});
    FakeCDReader::disc().readyAfterMs.reset();
    const QString track5 = file(QStringLiteral("Track05.cda"));
    openByDialog(track5);
    EXPECT_EQ(msgBox().texts(), QStringList{"CD not ready (15 second timeout)."});
    EXPECT_GE(clock().msecs(), 15000);
    msgBox().reset();
    FakeCDReader::disc().directoryRead = false;
    FakeCDReader::disc().readyAfterMs = 0;
    openByDialog(track5);
    EXPECT_EQ(msgBox().texts(), QStringList{"Unable to read CD directory."});

    FakeCDReader::disc().directoryRead = true;
    FakeCDReader::disc().readyAfterMs = 3000;
    openByDialog(track5);
    EXPECT_EQ(reader().calls.last(), QStringLiteral("PlayAudioTrack=4"));
    EXPECT_EQ(main->TitleText(), QStringLiteral("Audio Track #5"));
    EXPECT_EQ(main->TrackLength, 300);
    clock().advance(60000);
    EXPECT_GT(main->imgPlayProgress.rect.left(), 16);
    clock().advance(241000);  // past the track's end
    EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Open..."));

    run({track5});
    EXPECT_EQ(reader().calls.last(), QStringLiteral("PlayAudioTrack=5"));
    EXPECT_EQ(main->TrackLength, 100);
    temp->mnuStop->trigger();

    // F7 and F6 seek over the tracks, wrapping at the ends.
    FakeCDReader::setTracks({200, 180, 240});
    openByDialog(file(QStringLiteral("Track03.cda")));
    QTest::keyClick(main, Qt::Key_F7);
    EXPECT_EQ(reader().calls.last(), QStringLiteral("PlayAudioTrack=0"));
    EXPECT_EQ(main->TitleText(), QStringLiteral("Audio Track #1"));
    QTest::keyClick(main, Qt::Key_F6);
    EXPECT_EQ(main->TrackLength, 240);
}

}  // namespace
