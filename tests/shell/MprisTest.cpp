// The desktop's media keys and player panels: requests over a private session bus reach
// the same commands as the menus, and the answers read the player's state.
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEventLoop>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>

#include "player/PlayerSettings.h"
#include "player/PlayerTest.h"
#include "shell/MprisService.h"
#include "support/PrivateSessionBus.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const QString kPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString kPlayer = QStringLiteral("org.mpris.MediaPlayer2.Player");

class MprisTest : public PlayerTest {
  protected:
    void SetUp() override {
        PlayerTest::SetUp();
        service = std::make_unique<MprisService>();
    }
    void TearDown() override {
        service.reset();
        PlayerTest::TearDown();
    }
    // Waits for a call while the service, in this same thread, answers it.
    static QDBusMessage await(const QDBusPendingCall& call) {
        QDBusPendingCallWatcher watcher(call);
        QEventLoop loop;
        QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(5000, &loop, &QEventLoop::quit);
        if (!watcher.isFinished()) loop.exec();
        return watcher.reply();
    }
    QDBusMessage call(const QDBusConnection& bus, const QString& interface, const QString& method,
                      const QVariantList& args = {}) {
        QDBusMessage m =
            QDBusMessage::createMethodCall(MprisService::serviceName(), kPath, interface, method);
        m.setArguments(args);
        return await(bus.asyncCall(m, 5000));
    }
    QVariant property(const QDBusConnection& bus, const QString& name) {
        const QDBusMessage r = call(bus, "org.freedesktop.DBus.Properties", "Get", {kPlayer, name});
        if (r.type() != QDBusMessage::ReplyMessage || r.arguments().isEmpty()) {
            ADD_FAILURE() << "Get " << name.toStdString() << ": " << r.errorName().toStdString()
                          << " " << r.errorMessage().toStdString();
            return {};
        }
        return r.arguments().first().value<QDBusVariant>().variant();
    }
    // What a user's dbus-send does.
    bool dbusSend(const QString& address, const QString& method) {
        const QString program = QStandardPaths::findExecutable("dbus-send");
        if (program.isEmpty()) return false;
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("DBUS_SESSION_BUS_ADDRESS", address);
        p.setProcessEnvironment(env);
        p.start(program, {"--session", "--print-reply", "--dest=" + MprisService::serviceName(),
                          kPath, kPlayer + u'.' + method});
        for (int i = 0; i < 500 && p.state() != QProcess::NotRunning; ++i) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            p.waitForFinished(5);
        }
        return p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    }
    std::unique_ptr<MprisService> service;
};

}  // namespace

TEST_F(MprisTest, StatusAndMetadataFollowThePlayer) {
    EXPECT_EQ(service->playbackStatus(), "Stopped");
    EXPECT_FALSE(service->canPause());
    EXPECT_EQ(service->metadata().value("mpris:trackid").value<QDBusObjectPath>().path(),
              "/org/mpris/MediaPlayer2/TrackList/NoTrack");

    const QString song = media("My Song.wav", 125);
    openByDialog(song);
    EXPECT_EQ(service->playbackStatus(), "Playing");
    const QVariantMap meta = service->metadata();
    EXPECT_EQ(meta.value("xesam:title").toString(), "My Song.wav");
    EXPECT_EQ(meta.value("xesam:url").toString(), QUrl::fromLocalFile(song).toString());
    EXPECT_EQ(meta.value("mpris:length").toLongLong(), 125LL * 1000000);

    service->pause();
    EXPECT_EQ(service->playbackStatus(), "Paused");
    EXPECT_EQ(temp->mnuPause->text(), "&Resume");
    service->playPause();
    EXPECT_EQ(service->playbackStatus(), "Playing");
    service->stop();
    EXPECT_EQ(service->playbackStatus(), "Stopped");
    // Play after a stop plays the current file again.
    service->play();
    EXPECT_EQ(service->playbackStatus(), "Playing");
    EXPECT_EQ(MP().fileName(), song);
}

TEST_F(MprisTest, VolumeLoopAndShuffleAreTheSettingsOfTheWindows) {
    main->PlayerVolume = 80;
    EXPECT_DOUBLE_EQ(service->volume(), 0.8);
    service->setVolume(0.25);
    EXPECT_EQ(main->PlayerVolume, 25);
    service->setVolume(3);
    EXPECT_EQ(main->PlayerVolume, 100);

    EXPECT_EQ(service->loopStatus(), "None");
    service->setLoopStatus("Track");
    EXPECT_EQ(ReadAppSetting("Loop Other", ""), "1");
    EXPECT_EQ(service->loopStatus(), "Track");
    service->setLoopStatus("Playlist");
    EXPECT_EQ(ReadAppSetting("Loop Other", ""), "0");
    EXPECT_EQ(service->loopStatus(), "Playlist");
    service->setLoopStatus("Sometimes");
    EXPECT_EQ(service->loopStatus(), "Playlist");

    EXPECT_FALSE(service->shuffle());
    service->setShuffle(true);
    EXPECT_TRUE(PlayerSettings::audioRandomize());
}

TEST_F(MprisTest, OpenUriPlaysTheFileAsAHandOffDoes) {
    const QString song = media("Other.wav");
    service->openUri(QUrl::fromLocalFile(song).toString());
    EXPECT_EQ(MP().fileName(), song);
    EXPECT_EQ(main->List1, QStringList{song});
    service->openUri("http://example.invalid/x.mp3");
    EXPECT_EQ(MP().fileName(), song);
}

TEST_F(MprisTest, DbusSendPausesAndResumesOverTheSessionBus) {
    PrivateSessionBus bus;
    if (bus.address().isEmpty()) GTEST_SKIP() << "no session bus: " << bus.why().toStdString();
    QDBusConnection serverBus = QDBusConnection::connectToBus(bus.address(), "mpris-test-service");
    QDBusConnection clientBus = QDBusConnection::connectToBus(bus.address(), "mpris-test-client");
    ASSERT_TRUE(service->registerOn(serverBus));

    openByDialog(media("Song.wav", 60));
    ASSERT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);
    ASSERT_TRUE(dbusSend(bus.address(), "Pause"));
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPaused);
    EXPECT_EQ(property(clientBus, "PlaybackStatus").toString(), "Paused");
    ASSERT_TRUE(dbusSend(bus.address(), "PlayPause"));
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);

    EXPECT_EQ(property(clientBus, "PlaybackStatus").toString(), "Playing");
    EXPECT_EQ(property(clientBus, "LoopStatus").toString(), "None");
    const QDBusMessage set = call(clientBus, "org.freedesktop.DBus.Properties", "Set",
                                  {kPlayer, "Volume", QVariant::fromValue(QDBusVariant(0.5))});
    EXPECT_EQ(set.type(), QDBusMessage::ReplyMessage) << set.errorMessage().toStdString();
    EXPECT_EQ(main->PlayerVolume, 50);
    EXPECT_EQ(call(clientBus, "org.mpris.MediaPlayer2", "Raise").type(),
              QDBusMessage::ReplyMessage);

    service->unregister();
    QDBusConnection::disconnectFromBus("mpris-test-service");
    QDBusConnection::disconnectFromBus("mpris-test-client");
}
