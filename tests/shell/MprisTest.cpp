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
    // The service on a private session bus, and a panel's connection to it.
    void SetUp() override {
        PlayerTest::SetUp();
        service = std::make_unique<MprisService>();
        bus = std::make_unique<PrivateSessionBus>();
        if (bus->address().isEmpty())
            GTEST_SKIP() << "no session bus: " << bus->why().toStdString();
        if (QStandardPaths::findExecutable("dbus-send").isEmpty())
            GTEST_SKIP() << "dbus-send is not installed (package dbus)";
        ASSERT_TRUE(
            service->registerOn(QDBusConnection::connectToBus(bus->address(), "mpris-service")));
        client = std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(bus->address(), "mpris-client"));
    }
    void TearDown() override {
        service.reset();
        client.reset();
        QDBusConnection::disconnectFromBus("mpris-service");
        QDBusConnection::disconnectFromBus("mpris-client");
        bus.reset();
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
    QDBusMessage call(const QString& interface, const QString& method,
                      const QVariantList& args = {}) {
        QDBusMessage m =
            QDBusMessage::createMethodCall(MprisService::serviceName(), kPath, interface, method);
        m.setArguments(args);
        return await(client->asyncCall(m, 5000));
    }
    QVariant property(const QString& name) {
        const QDBusMessage r = call("org.freedesktop.DBus.Properties", "Get", {kPlayer, name});
        if (r.type() != QDBusMessage::ReplyMessage || r.arguments().isEmpty()) {
            ADD_FAILURE() << "Get " << name.toStdString() << ": " << r.errorName().toStdString()
                          << " " << r.errorMessage().toStdString();
            return {};
        }
        return r.arguments().first().value<QDBusVariant>().variant();
    }
    // What a user's dbus-send does.
    bool dbusSend(const QString& method, const QStringList& args = {}) {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("DBUS_SESSION_BUS_ADDRESS", bus->address());
        p.setProcessEnvironment(env);
        p.start("dbus-send",
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
    std::unique_ptr<PrivateSessionBus> bus;
    std::unique_ptr<QDBusConnection> client;
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

TEST_F(MprisTest, APanelsCommandsAndSettingsReachThePlayerAndTheWindows) {
    const auto set = [&](const QString& name, const QVariant& value) {
        const QDBusMessage r = call("org.freedesktop.DBus.Properties", "Set",
                                    {kPlayer, name, QVariant::fromValue(QDBusVariant(value))});
        EXPECT_EQ(r.type(), QDBusMessage::ReplyMessage) << r.errorMessage().toStdString();
    };
    EXPECT_EQ(property("PlaybackStatus").toString(), "Stopped");
    EXPECT_FALSE(property("CanPause").toBool());
    const QVariantMap none = qdbus_cast<QVariantMap>(property("Metadata"));
    EXPECT_EQ(qdbus_cast<QDBusObjectPath>(none.value("mpris:trackid")).path(),
              "/org/mpris/MediaPlayer2/TrackList/NoTrack");

    const QString song = media("Song.wav", 60);
    openByDialog(song);
    ASSERT_TRUE(dbusSend("Pause"));
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPaused);
    EXPECT_EQ(temp->mnuPause->text(), "&Resume");
    EXPECT_EQ(property("PlaybackStatus").toString(), "Paused");
    ASSERT_TRUE(dbusSend("PlayPause"));
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);
    ASSERT_TRUE(dbusSend("Stop"));
    EXPECT_EQ(property("PlaybackStatus").toString(), "Stopped");
    // Play after a stop plays the current file again.
    ASSERT_TRUE(dbusSend("Play"));
    EXPECT_EQ(property("PlaybackStatus").toString(), "Playing");
    EXPECT_EQ(MP().fileName(), song);

    // An address handed over plays as a hand-off does; only local files are taken.
    const QString other = media("Other.wav");
    ASSERT_TRUE(dbusSend("OpenUri", {"string:" + QUrl::fromLocalFile(other).toString()}));
    EXPECT_EQ(MP().fileName(), other);
    EXPECT_EQ(main->List1, QStringList{other});
    ASSERT_TRUE(dbusSend("OpenUri", {"string:http://example.invalid/x.mp3"}));
    EXPECT_EQ(MP().fileName(), other);

    // Volume, loop and shuffle are the settings of the windows.
    main->PlayerVolume = 80;
    EXPECT_DOUBLE_EQ(property("Volume").toDouble(), 0.8);
    set("Volume", 0.25);
    EXPECT_EQ(main->PlayerVolume, 25);
    set("Volume", 3.0);
    EXPECT_EQ(main->PlayerVolume, 100);
    EXPECT_EQ(property("LoopStatus").toString(), "None");
    set("LoopStatus", "Track");
    EXPECT_EQ(ReadAppSetting("Loop Other", ""), "1");
    EXPECT_EQ(property("LoopStatus").toString(), "Track");
    set("LoopStatus", "Playlist");
    EXPECT_EQ(ReadAppSetting("Loop Other", ""), "0");
    set("LoopStatus", "Sometimes");
    EXPECT_EQ(property("LoopStatus").toString(), "Playlist");
    EXPECT_FALSE(property("Shuffle").toBool());
    set("Shuffle", true);
    EXPECT_TRUE(PlayerSettings::audioRandomize());
    EXPECT_EQ(call("org.mpris.MediaPlayer2", "Raise").type(), QDBusMessage::ReplyMessage);
}

TEST_F(MprisTest, APanelSeesTheTrackAndSeeksInItOverTheSessionBus) {
    SignalLog log;
    ASSERT_TRUE(client->connect({}, kPath, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                                &log, SLOT(onChanged(QString, QVariantMap, QStringList))));
    ASSERT_TRUE(client->connect({}, kPath, kPlayer, "Seeked", &log, SLOT(onSeeked(qlonglong))));
    EXPECT_FALSE(property("CanSeek").toBool());

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
    ASSERT_TRUE(dbusSend("Seek", {"int64:30000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 30);
    ASSERT_TRUE(dbusSend("Seek", {"int64:-10000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 20);
    EXPECT_EQ(property("Position").toLongLong(), 20LL * 1000000);
    EXPECT_EQ(main->TimeFromThumb(main->TrackLength), 20);
    ASSERT_TRUE(dbusSend("Seek", {"int64:-99000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 0);

    ASSERT_TRUE(dbusSend("SetPosition", {"objpath:" + track, "int64:150000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 150);
    ASSERT_TRUE(pumpUntil([&] { return log.seeked.size() == 4; }));
    EXPECT_EQ(log.seeked, (QList<qlonglong>{30000000, 20000000, 0, 150000000}));
    // Another track's id, or a place past the end, is passed over.
    ASSERT_TRUE(dbusSend("SetPosition", {"objpath:/org/cantovel/track/other", "int64:5000000"}));
    ASSERT_TRUE(dbusSend("SetPosition", {"objpath:" + track, "int64:201000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 150);

    // Paused, the sound does not move (as with the thumb), and the panel is told so.
    log.changed.clear();
    ASSERT_TRUE(dbusSend("Pause"));
    EXPECT_FALSE(property("CanSeek").toBool());
    ASSERT_TRUE(dbusSend("Seek", {"int64:10000000"}));
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 150);
}

#include "MprisTest.moc"
