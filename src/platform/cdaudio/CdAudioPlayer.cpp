#include "platform/cdaudio/CdAudioPlayer.h"

#include <cdio/cdio.h>
#include <mpv/client.h>

#include <QMetaObject>
#include <QPointer>
#include <algorithm>
#include <cstring>
#include <vector>

#include "app/FileNames.h"
#include "platform/cdaudio/CdioQuiet.h"
#include "platform/cddrives/DiscSectorStream.h"
#include "platform/mpv/MpvStream.h"

namespace cantovel {

namespace {

constexpr const char* kProtocol = "cantovelcd";

void setOption(mpv_handle* mpv, const char* name, const char* value) {
    mpv_set_option_string(mpv, name, value);
}

void command(mpv_handle* mpv, std::initializer_list<const char*> args) {
    std::vector<const char*> argv(args);
    argv.push_back(nullptr);
    mpv_command(mpv, argv.data());
}

}  // namespace

CdAudioPlayer::CdAudioPlayer(QObject* parent) : QObject(parent) {
    quietCdio();
    mpv_ = mpv_create();
    if (!mpv_) return;
    const QByteArray ao = qgetenv("CANTOVEL_AO");
    setOption(mpv_, "config", "no");
    setOption(mpv_, "terminal", "no");
    setOption(mpv_, "load-scripts", "no");
    setOption(mpv_, "ytdl", "no");
    setOption(mpv_, "input-default-bindings", "no");
    setOption(mpv_, "idle", "yes");
    setOption(mpv_, "force-window", "no");
    setOption(mpv_, "vo", "null");
    setOption(mpv_, "audio-client-name", "Cantovel");
    setOption(mpv_, "ao", ao.isEmpty() ? "pulse,alsa,null" : ao.constData());
    // What the stream gives is the disc's audio as it stands in the sectors.
    setOption(mpv_, "demuxer", "rawaudio");
    setOption(mpv_, "demuxer-rawaudio-format", "s16le");
    setOption(mpv_, "demuxer-rawaudio-rate", "44100");
    setOption(mpv_, "demuxer-rawaudio-channels", "2");
    if (qgetenv("CANTOVEL_MPV_UNTIMED") == "1") {
        setOption(mpv_, "untimed", "yes");
        setOption(mpv_, "ao-null-untimed", "yes");
    }
    if (mpv_initialize(mpv_) < 0 ||
        mpv_stream_cb_add_ro(mpv_, kProtocol, this, &CdAudioPlayer::openStream) < 0) {
        mpv_terminate_destroy(mpv_);
        mpv_ = nullptr;
        return;
    }
    mpv_set_wakeup_callback(mpv_, &CdAudioPlayer::wakeup, this);
}

CdAudioPlayer::~CdAudioPlayer() {
    if (!mpv_) return;
    mpv_set_wakeup_callback(mpv_, nullptr, nullptr);
    mpv_terminate_destroy(mpv_);
}

int CdAudioPlayer::openStream(void*, char* uri, mpv_stream_cb_info* info) {
    // cantovelcd://<first>/<count>/<device, percent-encoded>; read on mpv's reading thread
    // with a disc handle of the play's own.
    const QString text = QString::fromUtf8(uri).mid(int(std::strlen(kProtocol)) + 3);
    const QStringList parts = text.split(QLatin1Char('/'));
    if (parts.size() != 3) return MPV_ERROR_LOADING_FAILED;
    const QByteArray device = QByteArray::fromPercentEncoding(parts[2].toLatin1());
    auto stream =
        std::make_unique<DiscSectorStream>(NameFromBytes(device), DiscSectorStream::kAudio);
    const qint64 count = parts[1].toLongLong();
    if (!stream->isOpen() || count <= 0) return MPV_ERROR_LOADING_FAILED;
    stream->setStretch(lsn_t(parts[0].toLongLong()), count);
    return handStreamToMpv(std::move(stream), info);
}

bool CdAudioPlayer::play(const QString& device, qint64 first, qint64 count) {
    if (!mpv_) return false;
    if (state_ != Stopped) stop();
    error_.clear();
    device_ = device;
    first_ = first;
    count_ = std::max<qint64>(count, 0);
    stoppedAt_ = first_;
    ++serial_;
    if (count_ == 0) {
        // Nothing to sound: the play is over where it began, as at the end of a stretch.
        setState(Stopped);
        QMetaObject::invokeMethod(
            this,
            [this, serial = serial_] {
                if (serial == serial_ && state_ == Stopped) emit finished();
            },
            Qt::QueuedConnection);
        return true;
    }
    const QByteArray uri = QByteArray(kProtocol) + "://" + QByteArray::number(first_) + '/' +
                           QByteArray::number(count_) + '/' +
                           NameToBytes(device).toPercentEncoding();
    int no = 0;
    mpv_set_property(mpv_, "pause", MPV_FORMAT_FLAG, &no);
    mpv_node result{};
    const char* args[] = {"loadfile", uri.constData(), nullptr};
    if (mpv_command_ret(mpv_, args, &result) < 0) return false;
    entryId_ = -1;
    if (result.format == MPV_FORMAT_NODE_MAP)
        for (int i = 0; i < result.u.list->num; ++i)
            if (std::strcmp(result.u.list->keys[i], "playlist_entry_id") == 0)
                entryId_ = result.u.list->values[i].u.int64;
    mpv_free_node_contents(&result);
    setState(Playing);
    return true;
}

void CdAudioPlayer::pause() {
    if (!mpv_ || state_ != Playing) return;
    int yes = 1;
    mpv_set_property(mpv_, "pause", MPV_FORMAT_FLAG, &yes);
    setState(Paused);
}

void CdAudioPlayer::resume() {
    if (!mpv_ || state_ != Paused) return;
    int no = 0;
    mpv_set_property(mpv_, "pause", MPV_FORMAT_FLAG, &no);
    setState(Playing);
}

void CdAudioPlayer::stop() {
    if (!mpv_ || state_ == Stopped) return;
    stoppedAt_ = position();
    entryId_ = -1;
    command(mpv_, {"stop"});
    setState(Stopped);
}

qint64 CdAudioPlayer::timePosition() const {
    double seconds = 0;
    if (mpv_get_property(mpv_, "time-pos", MPV_FORMAT_DOUBLE, &seconds) < 0) return first_;
    const qint64 sector = first_ + qint64(seconds * 75);
    return std::clamp(sector, first_, first_ + count_);
}

qint64 CdAudioPlayer::position() const {
    if (!mpv_ || state_ == Stopped) return stoppedAt_;
    return timePosition();
}

void CdAudioPlayer::setVolume(int percent) {
    volume_ = std::clamp(percent, 0, 100);
    if (!mpv_) return;
    double v = volume_;
    mpv_set_property(mpv_, "volume", MPV_FORMAT_DOUBLE, &v);
}

void CdAudioPlayer::setState(State state) {
    if (state_ == state) return;
    state_ = state;
    emit stateChanged(state);
}

void CdAudioPlayer::wakeup(void* self) {
    auto* player = static_cast<CdAudioPlayer*>(self);
    if (!player->drainQueued_.exchange(true))
        QMetaObject::invokeMethod(player, &CdAudioPlayer::drainEvents, Qt::QueuedConnection);
}

void CdAudioPlayer::drainEvents() {
    drainQueued_ = false;
    QPointer<CdAudioPlayer> self(this);
    while (self && mpv_) {
        mpv_event* event = mpv_wait_event(mpv_, 0);
        if (event->event_id == MPV_EVENT_NONE) break;
        if (event->event_id != MPV_EVENT_END_FILE) continue;
        const auto* end = static_cast<mpv_event_end_file*>(event->data);
        if (entryId_ < 0 || end->playlist_entry_id != entryId_) continue;  // an earlier play
        entryId_ = -1;
        if (end->reason == MPV_END_FILE_REASON_EOF) {
            stoppedAt_ = first_ + count_;
            setState(Stopped);
            if (self) emit finished();
        } else {
            stoppedAt_ = first_;
            error_ = end->reason == MPV_END_FILE_REASON_ERROR
                         ? QString::fromUtf8(mpv_error_string(end->error))
                         : QStringLiteral("the play broke off");
            setState(Stopped);
        }
    }
}

}  // namespace cantovel
