// The CD audio player on a real disc image, with the null sound output.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <memory>

#include "platform/cdaudio/CdAudioPlayer.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// A two-track CUE/BIN image: `sectors` of each track, samples numbered so no two agree.
QString writeImage(const QString& dir, std::initializer_list<int> sectors) {
    QFile bin(dir + QStringLiteral("/disc.bin"));
    if (!bin.open(QIODevice::WriteOnly)) return {};
    QByteArray cue = "FILE \"disc.bin\" BINARY\n";
    qint64 at = 0;
    int number = 1;
    for (int n : sectors) {
        cue += QStringLiteral("  TRACK %1 AUDIO\n    INDEX 01 %2:%3:%4\n")
                   .arg(number++, 2, 10, QLatin1Char('0'))
                   .arg(at / 4500, 2, 10, QLatin1Char('0'))
                   .arg(at % 4500 / 75, 2, 10, QLatin1Char('0'))
                   .arg(at % 75, 2, 10, QLatin1Char('0'))
                   .toLatin1();
        QByteArray data(n * 2352, '\0');
        for (int i = 0; i < data.size(); ++i) data[i] = char((at * 2352 + i) * 7 / 3);
        bin.write(data);
        at += n;
    }
    QFile file(dir + QStringLiteral("/disc.cue"));
    if (!file.open(QIODevice::WriteOnly)) return {};
    file.write(cue);
    return file.fileName();
}

bool waitFor(const std::function<bool()>& done, int ms = 10000) {
    QElapsedTimer t;
    t.start();
    while (!done()) {
        if (t.elapsed() > ms) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

class CDReaderAudioTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        env.set("CANTOVEL_AO", QByteArray("null"));
        image = writeImage(dir.path(), {300, 150});
        ASSERT_FALSE(image.isEmpty());
    }
    ScopedEnv env;
    QTemporaryDir dir;
    QString image;
};

TEST_F(CDReaderAudioTest, PlaysATrackToItsEndAndStopsThere) {
    env.set("CANTOVEL_MPV_UNTIMED", QByteArray("1"));
    CdAudioPlayer player;
    ASSERT_TRUE(player.isValid());
    int finished = 0;
    QObject::connect(&player, &CdAudioPlayer::finished, [&] { ++finished; });
    ASSERT_TRUE(player.play(image, 300, 150));
    EXPECT_EQ(player.state(), CdAudioPlayer::Playing);
    ASSERT_TRUE(waitFor([&] { return finished > 0; }));
    EXPECT_EQ(player.state(), CdAudioPlayer::Stopped);
    EXPECT_EQ(player.position(), 450);
    EXPECT_TRUE(player.errorText().isEmpty());
}

TEST_F(CDReaderAudioTest, PositionRunsWithTheSoundAndHoldsWhilePaused) {
    CdAudioPlayer player;
    ASSERT_TRUE(player.play(image, 0, 300));
    ASSERT_TRUE(waitFor([&] { return player.position() >= 30; }, 5000));
    player.pause();
    waitFor([] { return false; }, 100);
    const qint64 held = player.position();
    EXPECT_GE(held, 30);
    EXPECT_LT(held, 300);
    waitFor([] { return false; }, 300);
    EXPECT_NEAR(double(player.position()), double(held), 2);
    player.resume();
    ASSERT_TRUE(waitFor([&] { return player.position() >= held + 15; }, 5000));
    player.stop();
    const qint64 stopped = player.position();
    waitFor([] { return false; }, 200);
    EXPECT_EQ(player.position(), stopped);
    EXPECT_EQ(player.state(), CdAudioPlayer::Stopped);
}

TEST_F(CDReaderAudioTest, AMissingDiscEndsThePlayWithAReason) {
    CdAudioPlayer player;
    int finished = 0;
    QObject::connect(&player, &CdAudioPlayer::finished, [&] { ++finished; });
    ASSERT_TRUE(player.play(dir.path() + QStringLiteral("/none.cue"), 0, 75));
    ASSERT_TRUE(waitFor([&] { return player.state() == CdAudioPlayer::Stopped; }));
    EXPECT_FALSE(player.errorText().isEmpty());
    EXPECT_EQ(finished, 0);
}

}  // namespace
