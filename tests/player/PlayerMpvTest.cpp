// The player core on the real libmpv player, with null audio and video outputs and
// untimed play, on files the tests make.
#include <gtest/gtest.h>

#include <QFile>
#include <sndfile.h>

#include "PlayerTest.h"
#include "platform/clock/QtClock.h"
#include "platform/mediaplayer/MpvMediaPlayer.h"
#include "support/AudioFixtures.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class PlayerMpvTest : public PlayerTest {
  protected:
    void installPlayers() override {
        env.set("CANTOVEL_AO", QByteArray("null"));
        env.set("CANTOVEL_VO", QByteArray("null"));
        env.set("CANTOVEL_MPV_UNTIMED", QByteArray("1"));
        // Real time: mpv works on its own threads.
        Components::provideService<Clock>(std::make_shared<QtClock>());
        Components::provideFactory<MediaPlayer>([this] {
            auto player = std::make_unique<MpvMediaPlayer>();
            MediaPlayer* p = player.get();
            QObject::connect(p, &MediaPlayer::PlayStateChange, p, [this, p](int from, int to) {
                if (from == MediaPlayer::mpPlaying && to == MediaPlayer::mpStopped)
                    ended << p->fileName();
            });
            return player;
        });
    }
    void TearDown() override {
        PlayerTest::TearDown();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    bool waitFor(const std::function<bool()>& done, int ms = 30000) {
        return Clock::get().wait(ms, done);
    }
    QString path(const QString& name) const { return tempDir() + u'/' + name; }

    ScopedEnv env;
    // Files whose play reached their end, in order.
    QStringList ended;
};

TEST_F(PlayerMpvTest, OpenReportsTheLengthAndTheEndReturnsToIdle) {
    const QString wav = path(QStringLiteral("Tone.wav"));
    ASSERT_TRUE(writeTone(wav, 3.0));

    openByDialog(wav);

    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(main->TrackLength, 3);
    EXPECT_EQ(main->TitleText(), QStringLiteral("Tone.wav"));
    ASSERT_TRUE(waitFor([&] { return caption(temp->mnuPlay) == QLatin1String("&Open..."); }));
    EXPECT_EQ(ended, QStringList{wav});
    EXPECT_EQ(main->CurrentFile, wav);
    EXPECT_FALSE(main->Timer3.isEnabled());
    EXPECT_TRUE(temp->mnuPlayCurrent->isEnabled());
}

TEST_F(PlayerMpvTest, DamagedTruncatedAndEmptyFilesGiveTheMessageAndNoUserFileIsTouched) {
    const QString wav = path(QStringLiteral("Whole.wav"));
    ASSERT_TRUE(writeTone(wav, 1.0));
    QFile whole(wav);
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const QByteArray header = whole.read(30);  // cut inside the format chunk
    const QString playError = QStringLiteral(
        "An error occurred attempting to play the current file.  The file is invalid, corrupt, "
        "or an unsupported format.");
    const struct {
        const char* name;
        QByteArray bytes;
        QString message;
    } cases[] = {
        {"Broken.mp3", QByteArray(4096, '\x5a'), playError},
        {"Empty.mp3", {}, playError},
        {"Empty.wav", {}, playError},
        {"Cut.wav", header, playError},
        {"Empty.avi", {}, playError},
        {"Empty.ply",
         {},
         QStringLiteral("The selected playlist does not contain any media files.  In order to "
                        "proceed, load the Playlist Editor and create your playllist.  Be sure "
                        "to save your playlist afterwards.")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const QString file = path(QString::fromLatin1(c.name));
        ASSERT_TRUE(writeBytes(file, c.bytes));
        msgBox().reset();
        openByDialog(file);
        Clock::get().wait(300, [] { return false; });  // late events of the player
        EXPECT_EQ(msgBox().texts(), QStringList{c.message});
        EXPECT_TRUE(main->List1.isEmpty());
        EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
        QFile back(file);
        ASSERT_TRUE(back.open(QIODevice::ReadOnly));
        EXPECT_EQ(back.readAll(), c.bytes);
    }
}

TEST_F(PlayerMpvTest, AQueueRunsThroughInOrderWithMetafilesPlayedOrPassedOver) {
    const QString a = path(QStringLiteral("a.wav"));
    const QString b = path(QStringLiteral("b.mp3"));
    const QString c = path(QStringLiteral("c.mpa"));  // sound, but played as video
    ASSERT_TRUE(writeTone(a, 0.5));
    ASSERT_TRUE(writeMp3Tone(b, 0.6));
    ASSERT_TRUE(writeMp3Tone(c, 0.7));
    // Metafiles play their entries; one whose entries are all missing is refused, told,
    // and the run goes on.
    const QString m3u = path(QStringLiteral("list.m3u"));
    const QString asx = path(QStringLiteral("show.asx"));
    const QString wax = path(QStringLiteral("sound.wax"));
    const QString wvx = path(QStringLiteral("gone.asx"));
    ASSERT_TRUE(writeBytes(m3u, "#EXTM3U\r\nmissing.wav\r\nb.mp3\r\n"));
    ASSERT_TRUE(writeBytes(asx, "<ASX version=\"3.0\"><Entry><REF HREF=\"a.wav\"/></Entry></ASX>"));
    ASSERT_TRUE(
        writeBytes(wax, ("<asx><entry><ref href='file://" + b + "'/></entry></asx>").toUtf8()));
    ASSERT_TRUE(writeBytes(wvx, "<asx><entry><ref href=\"nothing.wmv\"/></entry></asx>"));
    main->List1 = {a, m3u, asx, wvx, wax, c};

    main->mnuRunPlaylist();
    ASSERT_TRUE(waitFor([&] { return main->PlayQueue.isEmpty(); }, 60000));

    EXPECT_EQ(ended, (QStringList{a, m3u, asx, wax, c}));
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
    EXPECT_EQ(msgBox().texts(), QStringList{QStringLiteral(
                                    "An error occurred attempting to play the current file.  "
                                    "The file is invalid, corrupt, or an unsupported format.")});
}

}  // namespace

TEST_F(PlayerMpvTest, AFlacChosenInTheOpenDialogPlaysToItsEnd) {
    const QString flac = path(QStringLiteral("Tone.flac"));
    ASSERT_TRUE(writeTone(flac, 2.0, 44100, 2, SF_FORMAT_FLAC | SF_FORMAT_PCM_16));

    openByDialog(flac);

    // The dialog's first filter, "All Media Formats", offers it.
    ASSERT_EQ(dialogs->calls.size(), 1);
    const QStringList filter = dialogs->calls[0].request.filter.split(u'|');
    ASSERT_GE(filter.size(), 2);
    EXPECT_EQ(filter[0], QStringLiteral("All Media Formats"));
    for (const char* pattern : {"*.flac", "*.ogg", "*.oga", "*.opus", "*.m4a", "*.aac", "*.wma"})
        EXPECT_TRUE(filter[1].split(u';').contains(QLatin1String(pattern))) << pattern;
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(main->TrackLength, 2);
    ASSERT_TRUE(waitFor([&] { return caption(temp->mnuPlay) == QLatin1String("&Open..."); }));
    EXPECT_EQ(ended, QStringList{flac});
}
