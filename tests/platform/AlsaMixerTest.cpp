// The ALSA master volume on a real mixer: a private PulseAudio server with a null sink,
// reached through ALSA's pulse control plugin (its "Master" runs 0..65536, so a percent is
// not a whole number of steps).
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>

#include "app/Forms.h"
#include "app/SubMain.h"
#include "platform/Components.h"
#include "platform/mixer/AlsaMixer.h"
#include "player/frmMain.h"
#include "support/AppTest.h"
#include "support/FakeMediaPlayer.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class AlsaMixerTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        const QString program = QStandardPaths::findExecutable(QStringLiteral("pulseaudio"));
        if (program.isEmpty()) GTEST_SKIP() << "pulseaudio is not installed: no mixer to test on";
        const QString socket = tempDir() + QStringLiteral("/pulse.sock");
        server.start(program, {QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
                               QStringLiteral("--exit-idle-time=-1"),
                               QStringLiteral("--use-pid-file=no"), QStringLiteral("-L"),
                               QStringLiteral("module-null-sink"), QStringLiteral("-L"),
                               QStringLiteral("module-native-protocol-unix auth-anonymous=1 "
                                              "socket=") +
                                   socket});
        env.set("PULSE_SERVER", QByteArray("unix:") + QFile::encodeName(socket));
        for (int i = 0; i < 100 && !QFile::exists(socket); ++i) QThread::msleep(100);
        if (!QFile::exists(socket)) GTEST_SKIP() << "pulseaudio did not start: no mixer to test on";
        mixer = std::make_shared<AlsaMixer>("pulse");
        if (mixer->GetMasterVolume() < 0) GTEST_SKIP() << "ALSA's pulse plugin is missing";
        Components::provideService<Mixer>(mixer);
        FakeMediaPlayer::install();
    }
    void TearDown() override {
        unloadTheProgram();
        if (server.state() != QProcess::NotRunning) {
            server.kill();
            server.waitForFinished();
        }
        AppTest::TearDown();
    }

    QProcess server;
    ScopedEnv env;
    std::shared_ptr<AlsaMixer> mixer;
};

TEST_F(AlsaMixerTest, EveryLevelReadsBackAsWrittenAndStartsKeepIt) {
    for (long level = 0; level <= 100; ++level) {
        ASSERT_TRUE(mixer->SetMasterVolume(level));
        ASSERT_EQ(mixer->GetMasterVolume(), level);
    }

    // Each start reads the master volume and writes it back.
    ASSERT_TRUE(mixer->SetMasterVolume(29));
    for (int start = 0; start < 5; ++start) {
        ASSERT_EQ(SubMain({QStringLiteral("cantovel")}), -1);
        ASSERT_NE(frmMain::instance(), nullptr);
        EXPECT_EQ(frmMain::instance()->MasterVolume, 29) << "start " << start;
        UnloadAllForms();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_EQ(mixer->GetMasterVolume(), 29);
}

}  // namespace
