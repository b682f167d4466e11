// The desktop's media keys and player panels: requests over a private session bus reach
// the same commands as the menus, and the answers read the player's state.
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>
#include <QUrl>
#include <functional>

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
    // Runs events until `done` (the bus's own thread hands messages over), up to 5 s. No
    // nested event loop: a quit left over from an earlier test would end it at once.
    static bool pumpUntil(const std::function<bool()>& done) {
        QDeadlineTimer deadline(5000);
        while (!done() && !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            QThread::msleep(2);
        }
        return done();
    }
    // Waits for a call while the service, in this same thread, answers it.
    static QDBusMessage await(const QDBusPendingCall& call) {
        QDBusPendingCallWatcher watcher(call);
        pumpUntil([&] { return watcher.isFinished(); });
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
    bool dbusSend(const QString& address, const QString& method, const QStringList& args = {}) {
        const QString program = QStandardPaths::findExecutable("dbus-send");
        if (program.isEmpty()) return false;
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("DBUS_SESSION_BUS_ADDRESS", address);
        p.setProcessEnvironment(env);
        p.start(program,
                QStringList{"--session", "--print-reply", "--dest=" + MprisService::serviceName(),
                            kPath, kPlayer + u'.' + method} +
                    args);
        for (int i = 0; i < 500 && p.state() != QProcess::NotRunning; ++i) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            p.waitForFinished(5);
        }
        return p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    }
    std::unique_ptr<MprisService> service;
};

// What a panel hears: the player's PropertiesChanged and Seeked signals.
class SignalLog : public QObject {
    Q_OBJECT
  public:
    QList<QVariantMap> changed;
    QList<qlonglong> seeked;
  public slots:
    void onChanged(const QString& interface, const QVariantMap& properties, const QStringList&) {
        if (interface == kPlayer) changed << properties;
    }
    void onSeeked(qlonglong position) { seeked << position; }
};

}  // namespace

TEST_F(MprisTest, StatusMetadataAndSettingsFollowThePlayerAndTheWindows) {
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

    // An address handed over plays as a hand-off does; only local files are taken.
    const QString other = media("Other.wav");
    service->openUri(QUrl::fromLocalFile(other).toString());
    EXPECT_EQ(MP().fileName(), other);
    EXPECT_EQ(main->List1, QStringList{other});
    service->openUri("http://example.invalid/x.mp3");
    EXPECT_EQ(MP().fileName(), other);

    // Volume, loop and shuffle are the settings of the windows.
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

TEST_F(MprisTest, APanelSeesTheTrackAndSeeksInItOverTheSessionBus) {
    PrivateSessionBus bus;
    if (bus.address().isEmpty()) GTEST_SKIP() << "no session bus: " << bus.why().toStdString();
    if (QStandardPaths::findExecutable("dbus-send").isEmpty())
        GTEST_SKIP() << "dbus-send is not installed (package dbus)";
    QDBusConnection serverBus = QDBusConnection::connectToBus(bus.address(), "mpris-seek-service");
    QDBusConnection clientBus = QDBusConnection::connectToBus(bus.address(), "mpris-seek-client");
    ASSERT_TRUE(service->registerOn(serverBus));
    SignalLog log;
    ASSERT_TRUE(clientBus.connect({}, kPath, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                                  &log, SLOT(onChanged(QString, QVariantMap, QStringList))));
    ASSERT_TRUE(clientBus.connect({}, kPath, kPlayer, "Seeked", &log, SLOT(onSeeked(qlonglong))));
    EXPECT_FALSE(property(clientBus, "CanSeek").toBool());

    const QString song = media("Long Song.wav", 200);
    openByDialog(song);
    service->notifyChanges();
    ASSERT_TRUE(pumpUntil([&] { return !log.changed.isEmpty(); }));
    const QVariantMap news = log.changed.last();
    EXPECT_EQ(news.value("PlaybackStatus").toString(), "Playing");
    EXPECT_TRUE(news.value("CanSeek").toBool());
    EXPECT_FALSE(news.contains("Position"));
    const QVariantMap meta = qdbus_cast<QVariantMap>(news.value("Metadata"));
    EXPECT_EQ(meta.value("xesam:title").toString(), "Long Song.wav");
    EXPECT_EQ(meta.value("xesam:url").toString(), QUrl::fromLocalFile(song).toString());
    EXPECT_EQ(meta.value("mpris:length").toLongLong(), 200LL * 1000000);
    const QString track = qdbus_cast<QDBusObjectPath>(meta.value("mpris:trackid")).path();
    ASSERT_FALSE(track.isEmpty());

    // Forward 30 s, back 10 s, then before the start: the player and the face follow.
    ASSERT_TRUE(dbusSend(bus.address(), "Seek", {"int64:30000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 30);
    ASSERT_TRUE(dbusSend(bus.address(), "Seek", {"int64:-10000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 20);
    EXPECT_EQ(property(clientBus, "Position").toLongLong(), 20LL * 1000000);
    EXPECT_EQ(main->TimeFromThumb(main->TrackLength), 20);
    ASSERT_TRUE(dbusSend(bus.address(), "Seek", {"int64:-99000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 0);

    ASSERT_TRUE(dbusSend(bus.address(), "SetPosition", {"objpath:" + track, "int64:150000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 150);
    ASSERT_TRUE(pumpUntil([&] { return log.seeked.size() == 4; }));
    EXPECT_EQ(log.seeked, (QList<qlonglong>{30000000, 20000000, 0, 150000000}));
    // Another track's id, or a place past the end, is passed over.
    ASSERT_TRUE(dbusSend(bus.address(), "SetPosition",
                         {"objpath:/org/cantovel/track/other", "int64:5000000"}));
    ASSERT_TRUE(dbusSend(bus.address(), "SetPosition", {"objpath:" + track, "int64:201000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 150);

    // Paused, the sound does not move (as with the thumb), and the panel is told so.
    log.changed.clear();
    ASSERT_TRUE(dbusSend(bus.address(), "Pause"));
    EXPECT_FALSE(property(clientBus, "CanSeek").toBool());
    ASSERT_TRUE(dbusSend(bus.address(), "Seek", {"int64:10000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 150);

    service->unregister();
    QDBusConnection::disconnectFromBus("mpris-seek-service");
    QDBusConnection::disconnectFromBus("mpris-seek-client");
}

#include "MprisTest.moc"
