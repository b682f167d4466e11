// The player core on the real libmpv player, on files the tests make.
#include <sndfile.h>
#include <QFile>

#include "PlayerTest.h"
#include "playlist/frmPlaylist.h"
#include "support/AudioFixtures.h"
#include "support/RealMpv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const QString kPlayError = QStringLiteral(
    "An error occurred attempting to play the current file.  The file is invalid, corrupt, or an "
    "unsupported format.");

QString loadError(const QString& name) {
    return "An error occurred attempting to load \"" + name +
           "\".  The file is most likely corrupt, invalid, or an unsupported format.";
}

class PlayerMpvTest : public PlayerTest {
  protected:
    void installPlayers() override {
        RealMpv::install(env, true, [this](MediaPlayer* p) {
            QObject::connect(p, &MediaPlayer::PlayStateChange, p, [this, p](int from, int to) {
                if (from == MediaPlayer::mpPlaying && to == MediaPlayer::mpStopped)
                    ended << p->fileName();
            });
        });
    }
    QString path(const QString& name) const { return tempDir() + u'/' + name; }

    ScopedEnv env;
    QStringList ended;  // files whose play reached their end, in order
};

TEST_F(PlayerMpvTest, DamagedTruncatedAndEmptyFilesGiveTheMessageOfTheirWayAndStayUntouched) {
    const QString wav = path(QStringLiteral("Whole.wav"));
    ASSERT_TRUE(writeTone(wav, 1.0));
    QFile whole(wav);
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const QByteArray header = whole.read(30);  // cut inside the format chunk
    const std::tuple<const char*, QByteArray, QString> cases[] = {
        {"Broken.mp3", QByteArray(4096, '\x5a'), kPlayError},
        {"Cut.wav", header, kPlayError},
        {"Empty.avi", {}, kPlayError},
    };
    for (const auto& [name, bytes, message] : cases) {
        SCOPED_TRACE(name);
        const QString file = path(QString::fromLatin1(name));
        ASSERT_TRUE(writeBytes(file, bytes));
        msgBox().reset();
        openByDialog(file);
        Clock::get().wait(300, [] { return false; });  // late events of the player
        EXPECT_EQ(msgBox().texts(), QStringList{message});
        EXPECT_TRUE(main->List1.isEmpty());
        EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Open..."));
        QFile back(file);
        ASSERT_TRUE(back.open(QIODevice::ReadOnly));
        EXPECT_EQ(back.readAll(), bytes);
    }

    // From the command line or a second start the message names the file; a second start's
    // name joins the playlist window's rows, and goes with the refusal.
    msgBox().reset();
    main->OpenCommandLine(path(QStringLiteral("Broken.mp3")));
    EXPECT_EQ(msgBox().texts(), QStringList{loadError("Broken.mp3")});
    auto* playlist = new frmPlaylist();
    main->Form_LinkExecute(path(QStringLiteral("Gone.mp3")));
    EXPECT_EQ(msgBox().texts().last(), loadError("Gone.mp3"));
    EXPECT_EQ(playlist->lstPlayList->texts(), QStringList{});
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
    const QString m3u = path("list.m3u"), asx = path("show.asx"), wax = path("sound.wax");
    const QString wvx = path(QStringLiteral("gone.asx"));
    ASSERT_TRUE(writeBytes(m3u, "#EXTM3U\r\nmissing.wav\r\nb.mp3\r\n"));
    ASSERT_TRUE(writeBytes(asx, "<ASX version=\"3.0\"><Entry><REF HREF=\"a.wav\"/></Entry></ASX>"));
    ASSERT_TRUE(
        writeBytes(wax, ("<asx><entry><ref href='file://" + b + "'/></entry></asx>").toUtf8()));
    ASSERT_TRUE(writeBytes(wvx, "<asx><entry><ref href=\"nothing.wmv\"/></entry></asx>"));
    main->List1 = {a, m3u, asx, wvx, wax, c};

    main->mnuRunPlaylist();
    ASSERT_TRUE(RealMpv::waitFor([&] { return main->PlayQueue.isEmpty(); }, 60000));

    EXPECT_EQ(ended, (QStringList{a, m3u, asx, wax, c}));
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Open..."));
    EXPECT_EQ(msgBox().texts(), QStringList{kPlayError});
}

}  // namespace
