#include "platform/mediaplayer/MpvMediaPlayer.h"

#include <mpv/client.h>
#include <mpv/stream_cb.h>

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMetaObject>
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "app/FileNames.h"
#include "platform/clock/Clock.h"
#include "platform/mediaplayer/MpvVideoSurface.h"
#include "playlist/PlaylistFile.h"

namespace cantovel {

namespace {

void setOption(mpv_handle* mpv, const char* name, const QByteArray& value) {
    mpv_set_option_string(mpv, name, value.constData());
}

void command(mpv_handle* mpv, std::initializer_list<const char*> args) {
    std::vector<const char*> argv(args);
    argv.push_back(nullptr);
    mpv_command(mpv, argv.data());
}

std::optional<double> doubleProperty(mpv_handle* mpv, const char* name) {
    double value = 0;
    if (!mpv || mpv_get_property(mpv, name, MPV_FORMAT_DOUBLE, &value) < 0) return std::nullopt;
    return value;
}

qint64 intProperty(mpv_handle* mpv, const char* name, qint64 fallback) {
    int64_t value = 0;
    if (!mpv || mpv_get_property(mpv, name, MPV_FORMAT_INT64, &value) < 0) return fallback;
    return value;
}

bool flagProperty(mpv_handle* mpv, const char* name) {
    int value = 0;
    return mpv && mpv_get_property(mpv, name, MPV_FORMAT_FLAG, &value) >= 0 && value;
}

QString stringProperty(mpv_handle* mpv, const char* name) {
    char* value = mpv ? mpv_get_property_string(mpv, name) : nullptr;
    if (!value) return {};
    QString text = QString::fromUtf8(value);
    mpv_free(value);
    return text;
}

// What playing a song costs, measured with PulseAudio: mpv's built-in scripts each run a Lua
// state in a thread of its own (4 MB between them) for an on-screen display never shown;
// and with its default 100 ms output buffer the sound server asks for data so often that
// the output and core threads were half of the process's CPU while playing. Half a second,
// as other desktop players keep, lets them sleep; pause and seek still act at once, a
// volume change is heard that much later.
void setLeanAudioOptions(mpv_handle* mpv) {
    setOption(mpv, "load-stats-overlay", "no");
    setOption(mpv, "load-osd-console", "no");
    setOption(mpv, "load-auto-profiles", "no");
    setOption(mpv, "pulse-buffer", "500");
}

// Observation ids: the change itself matters less than the wakeup it brings.
enum : uint64_t { ObserveEof = 1, ObserveWidth, ObserveHeight };

// mpv's volume in percent for the control's hundredths of a decibel below full.
double volumePercent(int volume) {
    return 100.0 + volume / 100.0;
}

// The left and right gains of a balance: the far side is turned down, the near one kept.
std::pair<double, double> balanceGains(int balance) {
    return {balance > 0 ? 1.0 - balance / 1000.0 : 1.0, balance < 0 ? 1.0 + balance / 1000.0 : 1.0};
}

}  // namespace

MpvMediaPlayer::MpvMediaPlayer(QObject* parent) : MediaPlayer(parent) {
    voOverride_ = QString::fromLocal8Bit(qgetenv("CANTOVEL_VO"));
    // mpv itself comes with the first file: a player made at start-up costs nothing.
}

MpvMediaPlayer::~MpvMediaPlayer() {
    delete surface_.data();
    destroyHandle();
}

bool MpvMediaPlayer::ensureHandle() {
    if (shutDown_ || !mpv_) {
        destroyHandle();
        createHandle();
        if (!mpv_) return false;
        prepareVideoOutput();
        mpv_set_property_string(mpv_, "pause", "yes");
    }
    return true;
}

void MpvMediaPlayer::createHandle() {
    mpv_ = mpv_create();
    if (!mpv_) return;
    const QByteArray ao = qgetenv("CANTOVEL_AO");
    setOption(mpv_, "config", "no");
    // CANTOVEL_MPV_LOG=<level> (for instance "v") shows mpv's own messages on the terminal.
    const QByteArray log = qgetenv("CANTOVEL_MPV_LOG");
    setOption(mpv_, "terminal", log.isEmpty() ? "no" : "yes");
    if (!log.isEmpty()) setOption(mpv_, "msg-level", "all=" + log);
    setOption(mpv_, "load-scripts", "no");
    setOption(mpv_, "ytdl", "no");
    setOption(mpv_, "osc", "no");
    // No key of mpv's own: above all not the one that quits when its window goes away.
    setOption(mpv_, "input-default-bindings", "no");
    setOption(mpv_, "input-builtin-bindings", "no");
    setOption(mpv_, "input-vo-keyboard", "no");
    setOption(mpv_, "input-cursor", "no");
    setOption(mpv_, "osd-level", "0");
    setOption(mpv_, "idle", "yes");
    setOption(mpv_, "force-window", "no");
    // The file stays open at its end, paused, so position and length can still be read.
    setOption(mpv_, "keep-open", "yes");
    setOption(mpv_, "pause", "yes");
    setOption(mpv_, "hr-seek", "yes");
    // An MP3's cover picture is no film.
    setOption(mpv_, "audio-display", "no");
    setOption(mpv_, "audio-client-name", "Cantovel");
    // Always two channels out: the balance's pan then never changes the output's format,
    // which would make the output start over in the middle of a file (and stall it).
    setOption(mpv_, "audio-channels", "stereo");
    setOption(mpv_, "ao", ao.isEmpty() ? QByteArray("pulse,alsa,null") : ao);
    setOption(mpv_, "vo", "null");
    setLeanAudioOptions(mpv_);
    currentVo_ = "null";
    if (qgetenv("CANTOVEL_MPV_UNTIMED") == "1") {
        setOption(mpv_, "untimed", "yes");
        setOption(mpv_, "ao-null-untimed", "yes");
    }
    if (mpv_initialize(mpv_) < 0) {
        mpv_terminate_destroy(mpv_);
        mpv_ = nullptr;
        return;
    }
    // mpv quits when the window it draws into goes away, unless that key means nothing.
    command(mpv_, {"keybind", "CLOSE_WIN", "ignore"});
    mpv_observe_property(mpv_, ObserveEof, "eof-reached", MPV_FORMAT_FLAG);
    mpv_observe_property(mpv_, ObserveWidth, "dwidth", MPV_FORMAT_INT64);
    mpv_observe_property(mpv_, ObserveHeight, "dheight", MPV_FORMAT_INT64);
    for (const Protocol& p : protocols_)
        mpv_stream_cb_add_ro(mpv_, p.name.constData(), p.userData, p.open);
    mpv_set_wakeup_callback(mpv_, &MpvMediaPlayer::wakeup, this);
    if (surface_) surface_->setCore(mpv_);
    applyVolume();
    applyBalance();
}

void MpvMediaPlayer::destroyHandle() {
    if (!mpv_) return;
    // The renderer goes before the core it draws for.
    if (surface_) surface_->setCore(nullptr);
    mpv_set_wakeup_callback(mpv_, nullptr, nullptr);
    // Joins mpv's threads; a drain already queued dies with this object or finds no events.
    mpv_terminate_destroy(mpv_);
    mpv_ = nullptr;
    shutDown_ = false;
}

void MpvMediaPlayer::wakeup(void* self) {
    auto* player = static_cast<MpvMediaPlayer*>(self);
    if (!player->drainQueued_.exchange(true))
        QMetaObject::invokeMethod(player, &MpvMediaPlayer::drainEvents, Qt::QueuedConnection);
}

void MpvMediaPlayer::drainEvents() {
    drainQueued_ = false;
    QPointer<MpvMediaPlayer> self(this);
    while (self && mpv_ && !shutDown_) {
        // The event is only valid until the next wait, which a handler may cause: each
        // case reads what it needs before it reports anything.
        mpv_event* raw = mpv_wait_event(mpv_, 0);
        if (raw->event_id == MPV_EVENT_NONE) break;
        handleEvent(*raw);
    }
    // The end of the file: any change of eof-reached wakes us, but mpv may fold a quick
    // 1-0-1 into no event at all, so the state itself is read here.
    // mpv also pauses itself at the end (keep-open); a seek that restarts the output there
    // (see setVideoOutput) leaves it paused on the last picture with the flag down.
    if (self && !playsSong() && PlayState() == mpPlaying && !seekPending() &&
        (atEnd() || flagProperty(mpv_, "pause")))
        changePlayState(mpStopped);
}

void MpvMediaPlayer::handleEvent(const mpv_event& event) {
    switch (event.event_id) {
        case MPV_EVENT_START_FILE:
            startedId_ = static_cast<mpv_event_start_file*>(event.data)->playlist_entry_id;
            break;
        case MPV_EVENT_FILE_LOADED:
            if (outcome_ == Outcome::Pending && startedId_ == entryId_) {
                if (hasAudioOrVideo()) {
                    outcome_ = Outcome::Loaded;
                } else {
                    outcome_ = Outcome::Failed;
                    failure_ = QStringLiteral("no audio or video");
                }
            }
            break;
        case MPV_EVENT_END_FILE: {
            const auto* end = static_cast<mpv_event_end_file*>(event.data);
            if (end->playlist_entry_id != entryId_) break;  // a file closed earlier
            if (outcome_ == Outcome::Pending) {
                outcome_ = Outcome::Failed;
                failure_ = QString::fromUtf8(mpv_error_string(end->error));
            } else if (outcome_ == Outcome::Loaded && end->reason != MPV_END_FILE_REASON_STOP) {
                // The file broke off while open: it is over, and mpv has closed it.
                outcome_ = Outcome::None;
                entryId_ = -1;
                changePlayState(mpStopped);
            }
            break;
        }
        case MPV_EVENT_SEEK:  // from here on mpv itself reads the target, and no longer the end
        case MPV_EVENT_PLAYBACK_RESTART:
            pendingSeek_.reset();
            break;
        case MPV_EVENT_VIDEO_RECONFIG:
            readImageSize();
            break;
        case MPV_EVENT_PROPERTY_CHANGE:
            if (event.reply_userdata == ObserveWidth || event.reply_userdata == ObserveHeight)
                readImageSize();
            break;
        case MPV_EVENT_SHUTDOWN:
            // mpv has quit on its own; the next open starts a new one.
            shutDown_ = true;
            break;
        default:
            break;
    }
}

int MpvMediaPlayer::setFileName(const QString& name) {
    setLastError(0);
    const quint64 serial = ++openSerial_;
    QPointer<MpvMediaPlayer> self(this);
    // A handler of the events below may close or replace the file itself: it then has the
    // last word.
    const auto superseded = [&] { return !self || serial != openSerial_; };
    closeFile();
    if (superseded()) return 0;
    fileName_ = name;
    if (name.isEmpty()) return 0;

    reportOpening();
    if (superseded()) return 0;
    // A media metafile (".m3u", ".asx", ...) opens as the first of its entries that opens,
    // as the classic control played them.
    const bool meta = PlaylistFile::IsMetafile(name);
    const QStringList targets = meta ? PlaylistFile::MetafileEntries(name) : QStringList{name};
    outcome_ = Outcome::Failed;
    failure_ = QStringLiteral("no entries");
    for (const QString& target : targets) {
        if (song_.open(target)) {
            outcome_ = Outcome::Loaded;
            entryId_ = -1;  // no late report of an entry mpv refused closes the song
            break;
        }
        if (!ensureHandle()) {
            failure_ = QStringLiteral("no player");
            break;
        }
        outcome_ = Outcome::Pending;
        failure_.clear();
        // mpv takes a file name as the kernel does: its bytes, whatever they are.
        const QByteArray path = NameToBytes(target);
        command(mpv_, {"loadfile", path.constData(), "replace"});
        entryId_ = intProperty(mpv_, "playlist/0/id", -1);
        waitForOutcome(superseded);
        if (superseded()) return 0;
        if (outcome_ != Outcome::Failed) break;
    }
    if (outcome_ == Outcome::Loaded && (playsSong() || mpv_)) {
        readImageSize();
        reportOpened();
        return 0;
    }
    const QString reason = outcome_ == Outcome::Pending ? QStringLiteral("timed out") : failure_;
    if (mpv_) command(mpv_, {"stop"});
    outcome_ = Outcome::None;
    entryId_ = -1;
    fileName_.clear();
    return reportRefused(reason);
}

void MpvMediaPlayer::waitForOutcome(const std::function<bool()>& superseded) {
    // The player's own wait: only mpv's events are handled, never the user's input or a
    // command from another start, so nothing can nest inside an open; they are handled
    // afterwards, in the order they came.
    QElapsedTimer waited;
    waited.start();
    while (mpv_ && !shutDown_ && outcome_ == Outcome::Pending && !superseded()) {
        const qint64 left = openTimeoutMs_ - waited.elapsed();
        if (left <= 0) break;
        const mpv_event* event = mpv_wait_event(mpv_, std::min<qint64>(left, 100) / 1000.0);
        if (event->event_id != MPV_EVENT_NONE) handleEvent(*event);
    }
}

void MpvMediaPlayer::closeFile() {
    if (playsSong())
        song_.close();
    else if (mpv_ && outcome_ != Outcome::None)
        command(mpv_, {"stop"});
    outcome_ = Outcome::None;
    entryId_ = -1;
    pendingSeek_.reset();
    imageWidth_ = imageHeight_ = 0;
    reportClosed();
}

void MpvMediaPlayer::prepareVideoOutput() {
    // Without an output of the caller's, the surface switches mpv's output as it is
    // shown and hidden.
    if (!voOverride_.isEmpty()) setVideoOutput(voOverride_.toUtf8().constData());
}

void MpvMediaPlayer::setVideoOutput(const char* vo) {
    // Each change starts mpv's video output afresh: only real changes are passed on.
    if (!mpv_ || currentVo_ == vo) return;
    currentVo_ = vo;
    mpv_set_property_string(mpv_, "vo", vo);
    // The new output starts with a seek to where the film stands. At the end of a film
    // that takes eof-reached from 1 to 0 and back, which mpv may fold into no change at
    // all, and the end would never be seen: observed afresh, the flag is reported anew.
    mpv_unobserve_property(mpv_, ObserveEof);
    mpv_observe_property(mpv_, ObserveEof, "eof-reached", MPV_FORMAT_FLAG);
    // mpv's own seek back for the new output's first picture can stall for good in a film
    // read through a stream of ours (a Video CD) when it comes mid-play, as it does on a
    // busy machine: a seek of ours to the same place replaces it.
    if (isOpen() && !atEnd()) seekTo(CurrentPosition());
}

void MpvMediaPlayer::addStreamProtocol(const char* protocol, void* userData, StreamOpener open) {
    protocols_.push_back({QByteArray(protocol), userData, open});
    if (mpv_) mpv_stream_cb_add_ro(mpv_, protocol, userData, open);
}

void MpvMediaPlayer::Play() {
    if (!isOpen() || PlayState() == mpPlaying) return;
    // After the end, play starts over.
    if (atEnd()) seekTo(0);
    setPaused(false);
    changePlayState(mpPlaying);
}

void MpvMediaPlayer::Pause() {
    if (!isOpen() || PlayState() != mpPlaying) return;
    setPaused(true);
    changePlayState(mpPaused);
}

void MpvMediaPlayer::Stop() {
    if (!isOpen()) return;
    setPaused(true);
    seekTo(0);
    changePlayState(mpStopped);
}

void MpvMediaPlayer::setPaused(bool paused) {
    if (!playsSong())
        mpv_set_property_string(mpv_, "pause", paused ? "yes" : "no");
    else if (paused)
        song_.pause();
    else
        song_.play();
}

void MpvMediaPlayer::songEnded() {
    if (playsSong() && song_.atEnd() && PlayState() == mpPlaying) changePlayState(mpStopped);
}

double MpvMediaPlayer::CurrentPosition() const {
    if (!isOpen()) return 0.0;
    if (playsSong()) return song_.position();
    if (seekPending()) return *pendingSeek_;
    return std::max(0.0, doubleProperty(mpv_, "time-pos").value_or(0.0));
}

void MpvMediaPlayer::setCurrentPosition(double seconds) {
    if (!isOpen()) return;
    seekTo(std::clamp(seconds, 0.0, std::max(0.0, Duration())));
}

void MpvMediaPlayer::seekTo(double seconds) {
    if (playsSong()) return song_.seek(seconds);
    const QByteArray target = QByteArray::number(seconds, 'f', 6);
    command(mpv_, {"seek", target.constData(), "absolute+exact"});
    pendingSeek_ = seconds;
    seekIssuedMs_ = Clock::get().msecs();
}

bool MpvMediaPlayer::seekPending() const {
    // A seek mpv never starts (a stream that cannot seek) stops counting after a while.
    return pendingSeek_ && Clock::get().msecs() - seekIssuedMs_ < 1000;
}

double MpvMediaPlayer::Duration() const {
    if (!isOpen()) return 0.0;
    if (playsSong()) return song_.duration();
    return doubleProperty(mpv_, "duration").value_or(0.0);
}

QString MpvMediaPlayer::mpvProperty(const char* name) const {
    return stringProperty(mpv_, name);
}

bool MpvMediaPlayer::atEnd() const {
    if (playsSong()) return song_.atEnd();
    return flagProperty(mpv_, "eof-reached");
}

bool MpvMediaPlayer::hasAudioOrVideo() const {
    const auto selected = [this](const char* name) {
        const QString id = stringProperty(mpv_, name);
        return !id.isEmpty() && id != QLatin1String("no");
    };
    return selected("aid") || selected("vid");
}

void MpvMediaPlayer::readImageSize() {
    const int width = int(intProperty(mpv_, "dwidth", 0));
    const int height = int(intProperty(mpv_, "dheight", 0));
    if (width == imageWidth_ && height == imageHeight_) return;
    imageWidth_ = width;
    imageHeight_ = height;
    fitVideoWidget();
}

void MpvMediaPlayer::fitVideoWidget() {
    if (!videoWidget_ || imageWidth_ <= 0 || imageHeight_ <= 0) return;
    double scale = 0;
    switch (DisplaySize()) {
        case mpDefaultSize:
            scale = 1.0;
            break;
        case mpHalfSize:
            scale = 0.5;
            break;
        case mpDoubleSize:
            scale = 2.0;
            break;
        default:
            return;  // the window decides the size
    }
    videoWidget_->resize(int(imageWidth_ * scale), int(imageHeight_ * scale));
}

void MpvMediaPlayer::setVideoWidget(QWidget* widget) {
    if (widget != videoWidget_) {
        delete surface_.data();
        videoWidget_ = widget;
        if (widget && drawsOnSurface()) {
            surface_ = new MpvVideoSurface(
                widget, [this](bool on) { setVideoOutput(on ? "libmpv" : "null"); });
            surface_->setCore(mpv_);
        }
    }
    fitVideoWidget();
}

bool MpvMediaPlayer::drawsOnSurface() const {
    // The desktops where Qt gives widgets OpenGL; tests run offscreen with mpv's null
    // output.
    static const QStringList withOpenGL{QStringLiteral("xcb"), QStringLiteral("wayland"),
                                        QStringLiteral("wayland-egl"), QStringLiteral("eglfs")};
    return voOverride_.isEmpty() && withOpenGL.contains(QGuiApplication::platformName());
}

void MpvMediaPlayer::applySongGains() {
    // mpv's mapping, so that a song sounds as loud as it did through mpv: the percentage
    // below, cubed.
    const double level = std::pow(volumePercent(Volume()) / 100.0, 3);
    const auto [left, right] = balanceGains(Balance());
    song_.setGains(float(level * left), float(level * right));
}

void MpvMediaPlayer::applyVolume() {
    applySongGains();
    if (!mpv_) return;
    double percent = volumePercent(Volume());
    mpv_set_property(mpv_, "volume", MPV_FORMAT_DOUBLE, &percent);
}

void MpvMediaPlayer::applyBalance() {
    applySongGains();
    if (!mpv_) return;
    const int b = Balance();
    if (b == 0) {
        mpv_set_property_string(mpv_, "af", "");
        return;
    }
    const auto [left, right] = balanceGains(b);
    const QByteArray chain = QStringLiteral(
                                 "lavfi=[aformat=channel_layouts=stereo,"
                                 "pan=stereo|c0=%1*c0|c1=%2*c1]")
                                 .arg(left, 0, 'f', 4)
                                 .arg(right, 0, 'f', 4)
                                 .toUtf8();
    mpv_set_property_string(mpv_, "af", chain.constData());
}

void MpvMediaPlayer::applyDisplaySize() {
    fitVideoWidget();
}

}  // namespace cantovel
