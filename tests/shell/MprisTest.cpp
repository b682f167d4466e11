// The desktop's media keys and player panels: requests over a private session bus reach
// the same commands as the menus, and the answers read the player's state.
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QUrl>

#include "player/PlayerSettings.h"
#include "player/PlayerTest.h"
#include "shell/MprisService.h"
#include "support/AudioFixtures.h"
#include "support/PrivateSessionBus.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const QString kPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString kPlayer = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

class MprisTest : public PlayerTest {
  protected:
    // The service on a private session bus, and a panel's connection to it.
    void SetUp() override {
        PlayerTest::SetUp();
        service = std::make_unique<MprisService>();
        bus = std::make_unique<PrivateSessionBus>();
        if (bus->address().isEmpty())
            GTEST_SKIP() << "no session bus: " << bus->why().toStdString();
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
    // A panel's call, answered by the service in this same thread while the test waits.
    QDBusMessage call(const QString& interface, const QString& method,
                      const QVariantList& args = {}) {
        QDBusMessage m =
            QDBusMessage::createMethodCall(MprisService::serviceName(), kPath, interface, method);
        m.setArguments(args);
        QDBusPendingCallWatcher watcher(client->asyncCall(m, 5000));
        waitUntil([&] { return watcher.isFinished(); });
        const QDBusMessage r = watcher.reply();
        EXPECT_EQ(r.type(), QDBusMessage::ReplyMessage)
            << method.toStdString() << ": " << r.errorMessage().toStdString();
        return r;
    }
    QDBusMessage command(const QString& method, const QVariantList& args = {}) {
        return call(kPlayer, method, args);
    }
    QVariant property(const QString& name) {
        const QDBusMessage r = call(kProperties, "Get", {kPlayer, name});
        return r.arguments().isEmpty() ? QVariant()
                                       : r.arguments().first().value<QDBusVariant>().variant();
    }
    void set(const QString& name, const QVariant& value) {
        call(kProperties, "Set", {kPlayer, name, QVariant::fromValue(QDBusVariant(value))});
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

qlonglong us(double seconds) {
    return qlonglong(seconds * 1000000);
}

}  // namespace

TEST_F(MprisTest, APanelSeesTheTrackAndItsCommandsAndSettingsReachThePlayerAndTheWindows) {
    SignalLog log;
    ASSERT_TRUE(client->connect({}, kPath, kProperties, "PropertiesChanged", &log,
                                SLOT(onChanged(QString, QVariantMap, QStringList))));
    ASSERT_TRUE(client->connect({}, kPath, kPlayer, "Seeked", &log, SLOT(onSeeked(qlonglong))));
    EXPECT_EQ(property("PlaybackStatus").toString(), "Stopped");
    const QVariantMap none = qdbus_cast<QVariantMap>(property("Metadata"));
    EXPECT_EQ(qdbus_cast<QDBusObjectPath>(none.value("mpris:trackid")).path(),
              "/org/mpris/MediaPlayer2/TrackList/NoTrack");

    const QString song = media("Long Song.wav", 200);
    openByDialog(song);
    service->notifyChanges();
    ASSERT_TRUE(waitUntil([&] { return !log.changed.isEmpty(); }));
    const QVariantMap news = log.changed.last();
    EXPECT_EQ(news.value("PlaybackStatus").toString(), "Playing");
    EXPECT_TRUE(news.value("CanSeek").toBool());
    EXPECT_FALSE(news.contains("Position"));
    const QVariantMap meta = qdbus_cast<QVariantMap>(news.value("Metadata"));
    EXPECT_EQ(meta.value("xesam:title").toString(), "Long Song.wav");
    EXPECT_EQ(meta.value("xesam:url").toString(), QUrl::fromLocalFile(song).toString());
    EXPECT_EQ(meta.value("mpris:length").toLongLong(), us(200));
    const auto track = qdbus_cast<QDBusObjectPath>(meta.value("mpris:trackid"));
    ASSERT_FALSE(track.path().isEmpty());

    // Forward 30 s, back 10 s, then before the start: the player and the face follow.
    command("Seek", {us(30)});
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 30);
    command("Seek", {us(-10)});
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 20);
    EXPECT_EQ(property("Position").toLongLong(), us(20));
    EXPECT_EQ(main->TimeFromThumb(main->TrackLength), 20);
    command("Seek", {us(-99)});
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 0);
    command("SetPosition", {QVariant::fromValue(track), us(150)});
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 150);
    ASSERT_TRUE(waitUntil([&] { return log.seeked.size() == 4; }));
    EXPECT_EQ(log.seeked, (QList<qlonglong>{us(30), us(20), 0, us(150)}));
    // Another track's id, or a place past the end, is passed over.
    command("SetPosition",
            {QVariant::fromValue(QDBusObjectPath("/org/cantovel/track/other")), us(5)});
    command("SetPosition", {QVariant::fromValue(track), us(201)});
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 150);

    // Paused, the sound does not move (as with the thumb).
    command("Pause");
    EXPECT_EQ(temp->mnuPause->text(), "&Resume");
    EXPECT_EQ(property("PlaybackStatus").toString(), "Paused");
    EXPECT_FALSE(property("CanSeek").toBool());
    command("Seek", {us(10)});
    EXPECT_DOUBLE_EQ(MP().CurrentPosition(), 150);
    command("PlayPause");
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);
    command("Stop");
    EXPECT_EQ(property("PlaybackStatus").toString(), "Stopped");
    // Play after a stop plays the current file again.
    command("Play");
    EXPECT_EQ(property("PlaybackStatus").toString(), "Playing");
    EXPECT_TRUE(property("CanPause").toBool());
    EXPECT_EQ(MP().fileName(), song);

    // An address handed over plays as a hand-off does; only local files are taken.
    const QString other = media("Other.wav");
    command("OpenUri", {QUrl::fromLocalFile(other).toString()});
    EXPECT_EQ(MP().fileName(), other);
    EXPECT_EQ(main->List1, QStringList{other});
    command("OpenUri", {"http://example.invalid/x.mp3"});
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
    call("org.mpris.MediaPlayer2", "Raise");
}

#include "MprisTest.moc"
