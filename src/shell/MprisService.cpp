#include "shell/MprisService.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include "app/AppState.h"
#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "player/MediaClasses.h"
#include "player/PlayerSettings.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "shell/MprisPlayer.h"
#include "shell/MprisRoot.h"
#include "shell/WindowHelpers.h"
#include "shell/frmTrayIcon.h"

namespace cantovel {

namespace {

const QString PlayerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");

frmTemp* menus() {
    return frmMain::instance() ? Forms::find<frmTemp>() : nullptr;
}

}  // namespace

MprisService::MprisService(QObject* parent) : QObject(parent) {
    new MprisRoot(this);
    new MprisPlayer(this);
    connect(&tmrWatch, &Timer::timeout, this, &MprisService::notifyChanges);
}

MprisService::~MprisService() {
    unregister();
}

bool MprisService::registerOn(const QDBusConnection& bus) {
    unregister();
    if (!bus.isConnected()) return false;
    bus_ = bus;
    if (!bus_.registerObject(objectPath(), this, QDBusConnection::ExportAdaptors)) return false;
    if (!bus_.registerService(serviceName())) {
        bus_.unregisterObject(objectPath());
        return false;
    }
    registered_ = true;
    last_ = snapshot();
    tmrWatch.setEnabled(true);
    return true;
}

void MprisService::unregister() {
    if (!registered_) return;
    registered_ = false;
    tmrWatch.setEnabled(false);
    bus_.unregisterService(serviceName());
    bus_.unregisterObject(objectPath());
}

// ---- What the player reports ----

QString MprisService::playbackStatus() const {
    const frmTemp* t = menus();
    // The menus' captions hold the command state, as everywhere in the player.
    if (!t || t->mnuPlay->text() == QLatin1String("&Open...")) return QStringLiteral("Stopped");
    if (t->mnuPause->text() == QLatin1String("&Resume")) return QStringLiteral("Paused");
    return QStringLiteral("Playing");
}

QString MprisService::trackId() const {
    const frmMain* main = frmMain::instance();
    if (!main || main->CurrentFile.isEmpty())
        return QStringLiteral("/org/mpris/MediaPlayer2/TrackList/NoTrack");
    // A queue may hold one file twice: its place tells the entries apart.
    const int entry = main->PlaylistRunning ? main->PlayIndex : -1;
    return QStringLiteral("/org/cantovel/track/t%1_%2")
        .arg(qHash(main->CurrentFile), 0, 16)
        .arg(entry + 1);
}

QVariantMap MprisService::metadata() const {
    const QVariant id = QVariant::fromValue(QDBusObjectPath(trackId()));
    const frmMain* main = frmMain::instance();
    if (!main || main->CurrentFile.isEmpty()) return {{QStringLiteral("mpris:trackid"), id}};
    const QString& file = main->CurrentFile;
    QString title = main->TitleText();
    if (title.isEmpty()) title = QFileInfo(file).fileName();
    QVariantMap meta{
        {QStringLiteral("mpris:trackid"), id},
        {QStringLiteral("xesam:title"), title},
        {QStringLiteral("xesam:url"), QUrl::fromLocalFile(file).toString()},
    };
    // A length not yet reported is left out rather than told as zero.
    if (main->TrackLength > 0)
        meta.insert(QStringLiteral("mpris:length"), qlonglong(main->TrackLength) * 1000000);
    return meta;
}

double MprisService::volume() const {
    const frmMain* main = frmMain::instance();
    return main ? main->PlayerVolume / 100.0 : 0.0;
}

qint64 MprisService::position() const {
    frmMain* main = frmMain::instance();
    if (!main || playbackStatus() == QLatin1String("Stopped")) return 0;
    // Where the player cannot tell, the thumb can.
    if (!canSeek()) return qint64(main->TimeFromThumb(main->TrackLength)) * 1000000;
    return qint64(main->playerPosition() * 1000000);
}

QString MprisService::loopStatus() const {
    if (PlayerSettings::loopOther()) return QStringLiteral("Track");
    if (PlayerSettings::playlistLoop()) return QStringLiteral("Playlist");
    return QStringLiteral("None");
}

bool MprisService::shuffle() const {
    return PlayerSettings::audioRandomize();
}

bool MprisService::canGoNext() const {
    const frmTemp* t = menus();
    return t && t->mnuSeekNext->isEnabled();
}

bool MprisService::canGoPrevious() const {
    const frmTemp* t = menus();
    return t && t->mnuSeekPrev->isEnabled();
}

bool MprisService::canPlay() const {
    const frmTemp* t = menus();
    return t && (playbackStatus() != QLatin1String("Stopped") || t->mnuPlayCurrent->isEnabled());
}

bool MprisService::canPause() const {
    return playbackStatus() == QLatin1String("Playing");
}

bool MprisService::canSeek() const {
    const frmMain* main = frmMain::instance();
    const QString status = playbackStatus();
    if (!main || status == QLatin1String("Stopped") || main->TrackLength <= 0) return false;
    const QString ext = MediaClasses::extensionOf(main->CurrentFile);
    if (MediaClasses::isAudioCD(ext) || MediaClasses::isVivo(ext)) return false;
    // The thumb's rule: a paused sound outside a queue does not move.
    return main->PlaylistRunning || MediaClasses::isVideo(ext) ||
           status == QLatin1String("Playing");
}

// ---- What the desktop asks ----

void MprisService::play() {
    frmTemp* t = menus();
    if (!t) return;
    const QString status = playbackStatus();
    if (status == QLatin1String("Paused"))
        t->mnuPause_Click();
    else if (status == QLatin1String("Stopped") && t->mnuPlayCurrent->isEnabled())
        t->mnuPlayCurrent_Click();
    notifyChanges();
}

void MprisService::pause() {
    if (frmTemp* t = menus(); t && playbackStatus() == QLatin1String("Playing"))
        t->mnuPause_Click();
    notifyChanges();
}

void MprisService::playPause() {
    if (playbackStatus() == QLatin1String("Playing"))
        pause();
    else
        play();
}

void MprisService::stop() {
    if (frmTemp* t = menus(); t && playbackStatus() != QLatin1String("Stopped")) t->mnuStop_Click();
    notifyChanges();
}

void MprisService::next() {
    if (frmTemp* t = menus(); t && t->mnuSeekNext->isEnabled()) t->mnuSeekNext_Click();
    notifyChanges();
}

void MprisService::previous() {
    if (frmTemp* t = menus(); t && t->mnuSeekPrev->isEnabled()) t->mnuSeekPrev_Click();
    notifyChanges();
}

void MprisService::openUri(const QString& uri) {
    frmMain* main = frmMain::instance();
    if (!main) return;
    const QUrl url(uri);
    const QString path = url.isLocalFile()        ? url.toLocalFile()
                         : url.scheme().isEmpty() ? uri
                                                  : QString();
    // Only files can be played; another scheme is passed over.
    if (path.isEmpty()) return;
    // A path from the desktop is what a later start hands over.
    main->Form_LinkExecute(path);
    notifyChanges();
}

void MprisService::seek(qint64 offset) {
    const frmMain* main = frmMain::instance();
    if (!canSeek()) return;
    const qint64 target = std::max<qint64>(position() + offset, 0);
    if (target > qint64(main->TrackLength) * 1000000) {
        next();
        return;
    }
    seekTo(double(target) / 1000000);
}

void MprisService::setPosition(const QString& id, qint64 place) {
    const frmMain* main = frmMain::instance();
    if (!canSeek() || id != trackId()) return;
    if (place < 0 || place > qint64(main->TrackLength) * 1000000) return;
    seekTo(double(place) / 1000000);
}

void MprisService::seekTo(double seconds) {
    frmMain* main = frmMain::instance();
    main->SeekTo(seconds);
    // The face follows at once, as after a drag of the thumb.
    main->ShowPosition(seconds, double(main->TrackLength));
    emit seeked(position());
}

void MprisService::setVolume(double value) {
    frmMain* main = frmMain::instance();
    if (!main) return;
    main->PlayerVolume = quint8(qRound(qBound(0.0, value, 1.0) * 100));
    main->ApplyPlayerVolume();
    main->PaintVolumes();
    notifyChanges();
}

void MprisService::setLoopStatus(const QString& status) {
    if (status != QLatin1String("None") && status != QLatin1String("Track") &&
        status != QLatin1String("Playlist"))
        return;
    SaveAppSetting(QStringLiteral("Loop Other"),
                   status == QLatin1String("Track") ? QStringLiteral("1") : QStringLiteral("0"));
    SaveAppSetting(QStringLiteral("Playlist Loop"), CStr(status == QLatin1String("Playlist")));
    notifyChanges();
}

void MprisService::setShuffle(bool on) {
    SaveAppSetting(QStringLiteral("Audio Randomize"), CStr(on));
    notifyChanges();
}

void MprisService::raise() {
    if (frmTrayIcon* tray = Forms::find<frmTrayIcon>(); tray && tray->cSysTray1.InTray())
        tray->mnuRestore_Click();
    if (frmMain* main = frmMain::instance()) ForceFrontWindow(main, true);
}

void MprisService::quit() {
    // The answer to the bus goes out before the program closes.
    QTimer::singleShot(0, this, [] {
        if (frmTemp* t = menus()) t->mnuExit_Click();
    });
}

// ---- Changes ----

QVariantMap MprisService::snapshot() const {
    return {
        {QStringLiteral("PlaybackStatus"), playbackStatus()},
        {QStringLiteral("Metadata"), metadata()},
        {QStringLiteral("Volume"), volume()},
        {QStringLiteral("LoopStatus"), loopStatus()},
        {QStringLiteral("Shuffle"), shuffle()},
        {QStringLiteral("CanGoNext"), canGoNext()},
        {QStringLiteral("CanGoPrevious"), canGoPrevious()},
        {QStringLiteral("CanPlay"), canPlay()},
        {QStringLiteral("CanPause"), canPause()},
        {QStringLiteral("CanSeek"), canSeek()},
    };
}

void MprisService::notifyChanges() {
    if (!registered_) return;
    const QVariantMap now = snapshot();
    QVariantMap changed;
    for (auto it = now.begin(); it != now.end(); ++it)
        if (last_.value(it.key()) != it.value()) changed.insert(it.key(), it.value());
    last_ = now;
    if (changed.isEmpty()) return;
    QDBusMessage signal =
        QDBusMessage::createSignal(objectPath(), QStringLiteral("org.freedesktop.DBus.Properties"),
                                   QStringLiteral("PropertiesChanged"));
    signal << PlayerInterface << changed << QStringList();
    bus_.send(signal);
}

// ---- The running instance's service ----

namespace {
QPointer<MprisService>& runningService() {
    static QPointer<MprisService> service;
    return service;
}
}  // namespace

void StartMprisService() {
    if (runningService()) return;
    // Only a session that has a bus gets the service: asking for one without it would
    // start a bus of the program's own.
    const QString runtimeBus = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") &&
        (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR") || !QFileInfo::exists(runtimeBus)))
        return;
    auto* service = new MprisService(QCoreApplication::instance());
    if (!service->registerOn(QDBusConnection::sessionBus())) {
        delete service;
        return;
    }
    runningService() = service;
}

void StopMprisService() {
    delete runningService().data();
}

}  // namespace cantovel
